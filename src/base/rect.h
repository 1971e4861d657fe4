// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::base {

// A rectangle in pixels of the picture that it belongs to. The right and bottom edges are exclusive.
// Width and height may be zero or negative as a result of arithmetic; such a rectangle is Empty().
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

// Returns the size as sentences for users show it: "413x626".
std::string SizeText(Size size);

// Returns the overlap of two rectangles, or 0 x 0 if there is none. Computed with 64 bits, so it cannot overflow.
Rect Intersection(Rect a, Rect b);

// Returns the size of the bounding box of a picture rotated by angle, in degrees of either direction.
// Sides are rounded up to whole pixels, are at least 1 and at most 2e9.
Size TurnedSize(Size size, double angle);

}  // namespace quillon::base
