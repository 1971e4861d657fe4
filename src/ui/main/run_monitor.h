// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

#include "host/host.h"
#include "job/settings/run_report.h"

namespace quillon::ui {

// The progress of a run.
struct RunFigures {
  bool running = false;
  std::size_t planned = 0;  // number of files; 0 while it is unknown
  std::size_t done = 0;     // files finished, including failed ones; without those that a stopped run did not reach
  std::size_t failed = 0;
  double rate = 0;         // files per second; 0 while it is unknown
  double secondsLeft = 0;  // 0 while it is unknown
  QString file;            // name of the file that was finished last
};

// Observes a run and reports its figures at most ten times a second, so that fast runs do not spend their time
// painting.
class RunMonitor : public QObject, public job::RunObserver {
 public:
  using OnProgress = std::function<void(const RunFigures&)>;
  // Called once at the end of a run, after the last progress report.
  using OnEnded = std::function<void(const job::RunTotals&)>;

  RunMonitor(host::Clock& clock, OnProgress onProgress, OnEnded onEnded, QObject* parent = nullptr);

  void RunStarted(std::size_t planned) override;
  void RunPlanned(std::size_t planned) override;
  void FileDone(const job::FileResult& file) override;
  void FileLost(const job::FileResult& file, const std::string& output) override;
  void RunEnded(const job::RunTotals& totals) override;

  // Returns the figures as of now.
  RunFigures Figures() const;

 private:
  void ScheduleReport();

  host::Clock& clock_;
  OnProgress onProgress_;
  OnEnded onEnded_;
  QTimer timer_;
  RunFigures counted_;
  std::string lastSource_;
  double begun_ = 0;  // seconds of the clock when the run started
};

// Returns "已处理 1234" while the number of files is unknown, else "".
QString CountText(const RunFigures& figures);
// Returns "128 张/秒", below ten with one decimal; "" for 0.
QString RateText(double rate);
// Returns "剩余 8 秒", "剩余 1 分 05 秒" or "剩余 2 小时 03 分", rounded up to seconds; "" for 0.
QString TimeLeftText(double seconds);
// Returns the text that stays in the status bar after a run.
QString SummaryText(const job::RunTotals& totals);

}  // namespace quillon::ui
