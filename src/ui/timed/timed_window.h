// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSystemTrayIcon>

#include "regions/timed/fcuttime.h"
#include "ui/kit/tool_window.h"

class QVBoxLayout;

namespace quillon::ui {

// FCutTime, a window of its own, since the main one is hidden while it watches. In the background it is an entry of the
// tray, or of the task bar where there is no tray.
class TimedWindow : public ToolWindow {
 public:
  TimedWindow(regions::FCutTime& record, Binder::Refusal onRefusal);

 protected:
  void Follow() override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeOptions();
  QWidget* MakeRegions();
  void ComeBack();

  regions::FCutTime& timed_;
  QSystemTrayIcon tray_;
  bool minimised_ = false;  // by this window, for want of a tray
};

}  // namespace quillon::ui
