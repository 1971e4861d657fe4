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

// How far a run has come.
struct RunFigures {
  bool running = false;
  std::size_t planned = 0;  // 0: not known beforehand
  std::size_t done = 0;
  std::size_t failed = 0;
  double rate = 0;         // files a second, 0 while not known
  double secondsLeft = 0;  // 0 while not known
  QString file;            // the last one that was finished
};

// Listens to a run and tells about it often enough for the eye.
class RunMonitor : public QObject, public job::RunObserver {
 public:
  using Told = std::function<void(const RunFigures&)>;
  using Ended = std::function<void(const job::RunTotals&)>;

  RunMonitor(host::Clock& clock, Told told, Ended ended, QObject* parent = nullptr);

  void RunStarted(std::size_t planned) override;
  void RunPlanned(std::size_t planned) override;
  void FileDone(const job::FileResult& file) override;
  void FileLost(const job::FileResult& file, const std::string& output) override;
  void RunEnded(const job::RunTotals& totals) override;

  RunFigures Figures() const;

 private:
  void Later();

  host::Clock& clock_;
  Told told_;
  Ended ended_;
  QTimer timer_;
  RunFigures counted_;
  std::string lastSource_;
  double begun_ = 0;
};

// "已处理 1234" while the number of files is not known; else "".
QString CountText(const RunFigures& figures);
// "128 张/秒", below ten with one decimal; "" for 0.
QString RateText(double rate);
// "剩余 8 秒", "剩余 1 分 05 秒", "剩余 2 小时 03 分"; "" for 0.
QString TimeLeftText(double seconds);
// What is left to say when a run is over.
QString SummaryText(const job::RunTotals& totals);

}  // namespace quillon::ui
