// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStatusBar>
#include <QTimer>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"
#include "ui/main/run_monitor.h"

class QLabel;
class QProgressBar;

namespace quillon::ui {

class ElidedLabel;

// The status bar. It shows the counts and maxima of the list, and beside them one message: during a run the current
// file with progress, rate and time left; otherwise the summary of the last run or the activity of the program. News
// stands beside them for a moment and hides neither.
class StatusStrip : public QStatusBar {
 public:
  StatusStrip(job::Form1& form, Binder& binder, QWidget* parent = nullptr);

  // Shows the progress of a run, or ends that display if figures.running is false.
  void ShowRun(const RunFigures& figures);
  // Shows the summary of a finished run until something else is shown. The bar of a stopped run stays where it was.
  void ShowSummary(const job::RunTotals& totals);
  // Shows that the program is busy with something that has no count, such as listing a folder. Empty ends the display.
  // Ignored during a run.
  void ShowActivity(const QString& text);
  // Shows a sentence for eight seconds, or until the next one.
  void ShowNotice(const QString& text);

 private:
  ElidedLabel* message_;
  ElidedLabel* notice_;
  QTimer noticeEnds_;
  QProgressBar* progress_;
  QLabel* rate_;
  QLabel* timeLeft_;
  bool running_ = false;
  bool active_ = false;
};

}  // namespace quillon::ui
