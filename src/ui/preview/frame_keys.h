// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <functional>

#include "regions/frame/cut_frame.h"

class QKeyEvent;
class QWidget;

namespace quillon::ui {

// The user's keys. While a batch waits they steer it, wherever the focus is, as long as that is in no box where
// something is typed and no question stands open; else the arrows move the frame while the canvas has the focus.
//
// Ctrl and Shift count when they are let go without anything else having been pressed, so that they can still be held
// together with other keys.
class FrameKeys : public QObject {
 public:
  FrameKeys(QWidget& canvas, regions::CutFrame& frame, std::function<void()> onHelp);
  ~FrameKeys() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Press(const QObject* receiver, const QKeyEvent& event);
  bool Release(const QObject* receiver, const QKeyEvent& event);
  bool Steer(const QKeyEvent& event);
  bool Move(const QKeyEvent& event);
  bool Listens(const QObject* receiver) const;

  QWidget& canvas_;
  regions::CutFrame& frame_;
  std::function<void()> onHelp_;
  int tapped_ = 0;  // Ctrl or Shift that went down alone
};

}  // namespace quillon::ui
