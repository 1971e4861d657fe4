// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/preview/frame_keys.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace quillon::ui {
namespace {

constexpr int kStep = 1;
constexpr int kLongStep = 10;

// Returns true if the user types into the widget.
bool AcceptsText(const QWidget* widget) {
  const auto* list = qobject_cast<const QComboBox*>(widget);
  return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
         qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget) ||
         (list && list->isEditable());
}

}  // namespace

FrameKeys::FrameKeys(QWidget& canvas, regions::CutFrame& frame, std::function<void()> onHelp)
    : QObject(&canvas), canvas_(canvas), frame_(frame), onHelp_(std::move(onHelp)) {
  qApp->installEventFilter(this);
}

FrameKeys::~FrameKeys() { qApp->removeEventFilter(this); }

bool FrameKeys::Listens(const QObject* receiver) const {
  if (QApplication::activeModalWidget() || QApplication::activePopupWidget()) return false;
  if (AcceptsText(QApplication::focusWidget())) return false;
  return frame_.Waiting() || receiver == &canvas_;
}

bool FrameKeys::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      return watched->isWidgetType() && Press(watched, static_cast<QKeyEvent&>(*event));
    case QEvent::KeyRelease:
      return watched->isWidgetType() && Release(watched, static_cast<QKeyEvent&>(*event));
    case QEvent::MouseButtonPress:
    case QEvent::Wheel:
      tapped_ = 0;
      return false;
    default:
      return false;
  }
}

// Qt offers a key that is not handled to every parent of the receiver in turn. Modifiers are therefore handled at the
// first receiver, or they would count as pressed twice.
bool FrameKeys::Press(const QObject* receiver, const QKeyEvent& event) {
  if (!Listens(receiver)) {
    tapped_ = 0;
    return false;
  }
  const bool modifier = event.key() == Qt::Key_Control || event.key() == Qt::Key_Shift;
  if (modifier) {
    if (!event.isAutoRepeat()) tapped_ = tapped_ == 0 ? event.key() : 0;
    return true;
  }
  tapped_ = 0;
  return Move(event) || Steer(event);
}

bool FrameKeys::Release(const QObject* receiver, const QKeyEvent& event) {
  if (event.isAutoRepeat() || event.key() != tapped_) return false;
  tapped_ = 0;
  if (!Listens(receiver)) return false;
  frame_.Timer1_Timer({.Ctrl = event.key() == Qt::Key_Control, .Shift = event.key() == Qt::Key_Shift});
  return frame_.Waiting();
}

bool FrameKeys::Move(const QKeyEvent& event) {
  const int step = event.modifiers() & Qt::ShiftModifier ? kLongStep : kStep;
  int across = 0;
  int down = 0;
  switch (event.key()) {
    case Qt::Key_Left:
      across = -step;
      break;
    case Qt::Key_Right:
      across = step;
      break;
    case Qt::Key_Up:
      down = -step;
      break;
    case Qt::Key_Down:
      down = step;
      break;
    default:
      return false;
  }
  if (event.modifiers() & Qt::AltModifier) {
    frame_.Stretch(across, down);
  } else {
    frame_.Nudge(across, down);
  }
  return true;
}

bool FrameKeys::Steer(const QKeyEvent& event) {
  if (!frame_.Waiting() || event.isAutoRepeat()) return false;
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return false;
  switch (event.key()) {
    case Qt::Key_A:
      frame_.Timer1_Timer({.A = true});
      return true;
    case Qt::Key_Q:
      frame_.Timer1_Timer({.Q = true});
      return true;
    case Qt::Key_Z:
      frame_.Timer1_Timer({.Z = true});
      return true;
    case Qt::Key_F1:
      onHelp_();
      return true;
    case Qt::Key_Space:
      // The space key already clicks a button with the focus.
      if (qobject_cast<QAbstractButton*>(QApplication::focusWidget())) return false;
      frame_.CmdNext_Click();
      return true;
    default:
      return false;
  }
}

}  // namespace quillon::ui
