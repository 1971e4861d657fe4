// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/rect.h"
#include "job/windows/preview.h"

namespace quillon::regions {

// The unit of margins: pixels, or percent of the picture's width or height.
enum class Unit { Pixels, Percent };

// A region as its four margins, in the order of a row of the list. Values may be negative and need not be whole.
struct Margins {
  double top = 0;
  double left = 0;
  double right = 0;
  double bottom = 0;
};

// Splits a row at its TABs. Missing fields are "", and everything from a fourth TAB on is dropped.
std::array<std::string, 4> FieldsOf(std::string_view row);
// Returns the fields with TABs between them.
std::string RowText(const std::array<std::string, 4>& fields);
std::string RowText(const Margins& margins);

// Returns the numbers of the fields. A field that does not begin with a number counts as 0.
Margins MarginsOf(const std::array<std::string, 4>& fields);

// Returns the rectangle of a region in pixels. Left, top, width and height are each rounded on their own, ties to even.
// Width and height may be zero or negative, and the rectangle may reach out of the picture; what does becomes white.
base::Rect BoxOf(const Margins& margins, Unit unit, base::Size picture);

// Returns the same rectangle without rounding.
job::PreviewFrame FrameOf(const Margins& margins, Unit unit, base::Size picture);

// Returns the margins of a frame, rounded to whole pixels or to percent with two decimals. The picture must not be
// empty. Position and size are rounded, and the right and lower margin follow from them, so that moving a frame does
// not change its size.
Margins MarginsOfFrame(const job::PreviewFrame& frame, Unit unit, base::Size picture);

}  // namespace quillon::regions
