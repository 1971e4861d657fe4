// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <functional>

#include "regions/frame/cut_frame.h"

class QKeyEvent;
class QWidget;

namespace quillon::ui {

// Handles the keys of the manual frame, for the whole application.
// While a batch waits, they control it wherever the focus is, unless it is in a field for text, or a box, dialog or
// popup is open. At other times the arrow keys move the frame while the canvas has the focus.
// Ctrl and Shift act when they are released without another key in between, so they still work as modifiers.
class FrameKeys : public QObject {
 public:
  // The canvas becomes the owner. onHelp is called for F1.
  FrameKeys(QWidget& canvas, regions::CutFrame& frame, std::function<void()> onHelp);
  ~FrameKeys() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  // These return true if the key was handled and must not reach the receiver.
  bool Press(const QObject* receiver, const QKeyEvent& event);
  bool Release(const QObject* receiver, const QKeyEvent& event);
  // Handles the keys that control a waiting batch.
  bool Steer(const QKeyEvent& event);
  // Handles the arrow keys: one pixel, or ten with Shift; with Alt they resize.
  bool Move(const QKeyEvent& event);
  // Returns true if a key for receiver belongs to the frame.
  bool Listens(const QObject* receiver) const;

  QWidget& canvas_;
  regions::CutFrame& frame_;
  std::function<void()> onHelp_;
  int tapped_ = 0;  // Ctrl or Shift that was pressed alone; 0 for none
};

}  // namespace quillon::ui
