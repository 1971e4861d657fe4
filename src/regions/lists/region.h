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

// What the margins of a region count: pixels, or percent of the picture's size.
enum class Unit { Pixels, Percent };

// A region as its four margins, in the order in which lists hold them.
struct Margins {
  double top = 0;
  double left = 0;
  double right = 0;
  double bottom = 0;
};

// The four fields of a row: what stands between its first three TABs, the rest of them empty; a fifth field is dropped.
std::array<std::string, 4> FieldsOf(std::string_view row);
// The fields with TABs between them.
std::string RowText(const std::array<std::string, 4>& fields);
std::string RowText(const Margins& margins);

// The numbers of the fields; one that begins with no number counts as 0.
Margins MarginsOf(const std::array<std::string, 4>& fields);

// The box of a region in a picture, each value rounded on its own, ties to even. Width and height may be zero or
// negative, and the box may reach outside.
base::Rect BoxOf(const Margins& margins, Unit unit, base::Size picture);

// The same as a frame in pixels of the picture, not rounded.
job::PreviewFrame FrameOf(const Margins& margins, Unit unit, base::Size picture);

// The margins of a frame in a picture that is not empty: whole pixels, or percent with two decimals. The size of the
// frame stays what it is as far as the rounding lets it.
Margins MarginsOfFrame(const job::PreviewFrame& frame, Unit unit, base::Size picture);

}  // namespace quillon::regions
