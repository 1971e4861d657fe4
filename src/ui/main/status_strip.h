// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStatusBar>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"
#include "ui/main/run_monitor.h"

class QLabel;
class QProgressBar;

namespace quillon::ui {

class ElidedLabel;

// Counts and maxima of the list; during a run the file, the progress, the rate and the time left; else the last word.
class StatusStrip : public QStatusBar {
 public:
  StatusStrip(job::Form1& form, Binder& binder, QWidget* parent = nullptr);

  void ShowRun(const RunFigures& figures);
  void ShowSummary(const job::RunTotals& totals);
  // The program is busy without a count: a listing. Empty when that is over.
  void ShowActivity(const QString& text);
  // One sentence that stays for a while.
  void ShowSentence(const QString& text);

 private:
  ElidedLabel* word_;
  QProgressBar* progress_;
  QLabel* rate_;
  QLabel* left_;
  bool running_ = false;
  bool active_ = false;
};

}  // namespace quillon::ui
