// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "host/status.h"

namespace quillon::helpers {

// A rectangle of a PDF page in its own units, y upwards; left < right and bottom < top.
struct PageBox {
  double left = 0;
  double bottom = 0;
  double right = 0;
  double top = 0;

  double Width() const { return right - left; }
  double Height() const { return top - bottom; }
  bool operator==(const PageBox&) const = default;
};

// From two opposite corners in any order; nothing where a number is not finite, is beyond ten million, or where no
// area is left.
std::optional<PageBox> BoxOf(const std::array<double, 4>& corners);

// What two boxes have in common; nothing where they do not meet.
std::optional<PageBox> Common(const PageBox& a, const PageBox& b);

// Clockwise quarter turns of a page, 0 to 3; whole turns and the sign are taken off, other angles count as none.
int QuarterTurns(int degrees);

// Parts of the page as it is seen, in per cent, taken off at each side.
struct Margins {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

// "left|top|right|bottom", each a number as it was typed: what is no number counts as 0, and so does what is below.
// Fails where there are not four, or where two opposite ones leave nothing.
host::Status ParseMargins(std::string_view text, Margins& margins);

// The box without its margins, for a page that is shown after so many clockwise quarter turns.
PageBox Trimmed(const PageBox& box, const Margins& margins, int quarterTurns);

}  // namespace quillon::helpers
