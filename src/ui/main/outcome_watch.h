// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>
#include <QThreadPool>
#include <QTimer>
#include <atomic>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "job/program.h"
#include "job/windows/foreseen_list.h"

namespace quillon::ui {

// Keeps what is announced about the list true to the settings. It waits until the user has paused, and then counts the
// rows in portions between the events of the window, so that typing never waits for a long list. Pages of files that
// matter are counted on a background thread, and the rows once more after that.
class OutcomeWatch : public QObject {
 public:
  // Called with the number of rows, and of those that give no file.
  using OnCounted = std::function<void(std::size_t rows, std::size_t withoutFile)>;

  OutcomeWatch(job::Program& program, job::ForeseenList& foreseen, QObject* parent = nullptr);
  ~OutcomeWatch() override;

  // Counts again when rows are added or removed. Call once.
  void Follow(const QAbstractItemModel& rows);
  // Calls restarted after the settings were read anew, and counted when a count is complete.
  void SetReceivers(std::function<void()> restarted, OnCounted counted);

 private:
  using PagesByPath = std::unordered_map<std::string, job::PagesOfFile>;

  void Restart();
  void Count();
  // Starts to count the pages of the files that are not known, and ends an earlier count.
  void CountPages();
  // Counts pages on the background thread until another count starts.
  void FindPages(const std::vector<std::string>& paths, int turn);
  // Accepts what the background thread has counted, on the thread of the window.
  void Accept(const PagesByPath& found);

  job::Program& program_;
  job::ForeseenList& foreseen_;
  std::function<void()> restarted_;
  OnCounted counted_;
  QTimer settle_;   // runs while changes may still follow
  QTimer portion_;  // runs while rows remain to be counted
  int token_;
  int optionsToken_;
  std::atomic<int> turn_ = 0;  // of the counts of pages; raised to end the one that runs
  QThreadPool thread_;
};

}  // namespace quillon::ui
