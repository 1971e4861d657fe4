// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "controls/window.h"

namespace quillon::controls {

// Records what a window reports to its observers, and what handlers note, in order.
class Probe {
 public:
  explicit Probe(Window& window) : window_(window) {
    token_ = window.Observe(
        [this](Control& control, Aspect aspect) {
          notes_.push_back((aspect == Aspect::Value ? "value " : "appearance ") + control.Name());
        },
        [this](Window& changed) { notes_.push_back("window " + changed.Name()); });
  }
  ~Probe() { window_.Forget(token_); }
  Probe(const Probe&) = delete;
  Probe& operator=(const Probe&) = delete;

  void NoteHandlerOf(Control& control) {
    control.SetHandler([this, &control] { notes_.push_back("handler " + control.Name()); });
  }
  void Note(std::string note) { notes_.push_back(std::move(note)); }

  // What was noted since the last call.
  std::vector<std::string> Drain() { return std::exchange(notes_, {}); }

 private:
  Window& window_;
  int token_ = 0;
  std::vector<std::string> notes_;
};

using Notes = std::vector<std::string>;

}  // namespace quillon::controls
