// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSystemTrayIcon>

#include "regions/timed/fcuttime.h"
#include "ui/kit/tool_window.h"

class QVBoxLayout;

namespace quillon::ui {

// FCutTime as a top-level window, since the main window is hidden while the folder is watched.
// In the background it is an icon in the system tray, or minimised if the desktop has no tray.
class TimedWindow : public ToolWindow {
 public:
  TimedWindow(regions::FCutTime& record, Binder::Refusal onRefusal);

 protected:
  void Follow() override;
  void changeEvent(QEvent* event) override;

 private:
  QWidget* MakeOptions();
  QWidget* MakeRegions();
  // Ends the background mode, through the record.
  void ReturnToForeground();

  regions::FCutTime& timed_;
  QSystemTrayIcon tray_;
  bool minimised_ = false;  // by this window, since there is no tray
};

}  // namespace quillon::ui
