// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/desktop/qt_pump.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace quillon::ui {
namespace {

// A flood of events must not keep the run from going on.
constexpr int kLongestTurnMilliseconds = 20;

}  // namespace

void QtPump::Turn() {
  ++depth_;
  QCoreApplication::processEvents(QEventLoop::AllEvents, kLongestTurnMilliseconds);
  --depth_;
}

}  // namespace quillon::ui
