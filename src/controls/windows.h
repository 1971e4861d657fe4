// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "controls/window.h"

namespace quillon::controls {

// The table through which every control of every window is reached by name. It does not own the windows.
class Windows {
 public:
  void Add(Window& window) { windows_.push_back(&window); }
  const std::vector<Window*>& All() const { return windows_; }

  // Returns the window of that name, ignoring case; nullptr if there is none.
  Window* FindWindow(std::string_view name) const;
  // Returns the control of a full name such as "Form1.TCutValue(0)", ignoring case. A name without a window is looked
  // up in Form1. nullptr if there is none.
  Control* Find(std::string_view name) const;
  // Returns at most count full names that are closest to a mistyped name, the closest first.
  // If name has no point, only the part after the window is compared.
  std::vector<std::string> Nearest(std::string_view name, std::size_t count) const;

 private:
  std::vector<Window*> windows_;
};

}  // namespace quillon::controls
