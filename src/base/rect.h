// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::base {

// A rectangle in whole pixels of the picture it belongs to. Width and height may be zero or negative where arithmetic
// led there; Empty() tells. The right and bottom edges are exclusive.
struct Rect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  bool Empty() const { return width <= 0 || height <= 0; }
  bool operator==(const Rect&) const = default;
};

// Width and height of a picture in pixels.
struct Size {
  int width = 0;
  int height = 0;

  bool Empty() const { return width <= 0 || height <= 0; }
  bool operator==(const Size&) const = default;
};

}  // namespace quillon::base
