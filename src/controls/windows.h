// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "controls/window.h"

namespace quillon::controls {

// The one table through which every control of every window is reached by name.
class Windows {
 public:
  void Add(Window& window) { windows_.push_back(&window); }
  const std::vector<Window*>& All() const { return windows_; }

  // Case does not matter; nullptr if there is none.
  Window* FindWindow(std::string_view name) const;
  // "Form1.TCutValue(0)"; "Form1." may be left out. nullptr if there is none.
  Control* Find(std::string_view name) const;
  // Up to count full names closest to a mistyped one, nearest first.
  std::vector<std::string> Nearest(std::string_view name, std::size_t count) const;

 private:
  std::vector<Window*> windows_;
};

}  // namespace quillon::controls
