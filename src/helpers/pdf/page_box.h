// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "host/status.h"

namespace quillon::helpers {

// A rectangle of a PDF page in the units of the page. y points upwards, left < right and bottom < top.
struct PageBox {
  double left = 0;
  double bottom = 0;
  double right = 0;
  double top = 0;

  double Width() const { return right - left; }
  double Height() const { return top - bottom; }
  bool operator==(const PageBox&) const = default;
};

// Returns the box between two opposite corners, given in any order. nullopt if a coordinate is not finite or exceeds
// ten million, or if the area is empty.
std::optional<PageBox> BoxOf(const std::array<double, 4>& corners);

// Returns the intersection of two boxes, nullopt if it is empty.
std::optional<PageBox> Common(const PageBox& a, const PageBox& b);

// Converts a rotation in degrees to clockwise quarter turns, 0 to 3. Angles that are not multiples of 90 give 0.
int QuarterTurns(int degrees);

// Margins to crop, in per cent of the page as displayed.
struct Margins {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

// Parses "left|top|right|bottom". A text that is not a number counts as 0, and so does a negative number.
// Fails if there are not four values, or if two opposite margins add up to 100 or more.
host::Status ParseMargins(std::string_view text, Margins& margins);

// Returns the box without the margins, for a page that is rotated for display by that many clockwise quarter turns.
PageBox Trimmed(const PageBox& box, const Margins& margins, int quarterTurns);

}  // namespace quillon::helpers
