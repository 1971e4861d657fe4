// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Columns first up to, and not including, end; none where both are equal.
struct Span {
  int first = 0;
  int end = 0;
  bool operator==(const Span&) const = default;
};

// The pixels of a row that lie in the ellipse with the radii width / 2 and height / 2 about (width / 2, height / 2).
// Pixels on its line count as inside; exact. size has at most 2^31 - 1 pixels.
Span EllipseRow(base::Size size, int row);

// The ellipse that fits into box, as a picture of the size of box with 8-bit RGB and alpha: what is outside the
// ellipse, or outside the source, is transparent and black; inside the source's own transparency stays. The edge is
// hard. Resolution and profile go along. Other: the box is empty. TooLarge: the box has too many pixels.
Status CutEllipse(const Image& source, base::Rect box, const Limits& limits, Image& out);

}  // namespace quillon::imaging
