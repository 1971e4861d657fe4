// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/lasting_wait.h"

#include <utility>

namespace quillon::tools {
namespace {

// Seconds after which a wait is shown.
constexpr double kLasting = 3;

}  // namespace

LastingWait::LastingWait(Tools& tools, std::string program)
    : tools_(tools), program_(std::move(program)), start_(tools.World().clock.Seconds()) {}

LastingWait::~LastingWait() {
  if (shown_) tools_.ShowWait("");
}

double LastingWait::Seconds() const { return tools_.World().clock.Seconds() - start_; }

void LastingWait::Update() {
  if (shown_ || Seconds() < kLasting) return;
  shown_ = true;
  tools_.ShowWait(program_);
}

}  // namespace quillon::tools
