// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemModel>
#include <QTimer>
#include <functional>

#include "job/program.h"
#include "job/windows/foreseen_list.h"

namespace quillon::ui {

// Keeps what is announced about the list true to the settings. It waits until the user has paused, and then counts the
// rows in portions between the events of the window, so that typing never waits for a long list.
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
  void Restart();
  void Count();

  job::Program& program_;
  job::ForeseenList& foreseen_;
  std::function<void()> restarted_;
  OnCounted counted_;
  QTimer settle_;   // runs while changes may still follow
  QTimer portion_;  // runs while rows remain to be counted
  int token_;
  int optionsToken_;
};

}  // namespace quillon::ui
