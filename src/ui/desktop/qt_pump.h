// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/host.h"

namespace quillon::ui {

// Gives the event loop a turn from inside a long run: timers, paints and the stop button live on.
class QtPump : public host::Pump {
 public:
  void Turn() override;

  // Turns that are under way; 0 while no run waits inside its handler.
  int Depth() const { return depth_; }

 private:
  int depth_ = 0;
};

}  // namespace quillon::ui
