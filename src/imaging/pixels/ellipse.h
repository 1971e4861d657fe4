// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// The columns from first up to, but not including, end. Empty if both are equal.
struct Span {
  int first = 0;
  int end = 0;
  bool operator==(const Span&) const = default;
};

// Returns the pixels of a row that lie in the ellipse with the radii width / 2 and height / 2 about (width / 2, height
// / 2), where pixel (x, y) is the point (x, y). Pixels on the outline count as inside.
// The result is exact for sizes of up to 2^31 - 1 pixels.
Span EllipseRow(base::Size size, int row);

// Cuts the ellipse that fits into box out of source. The result has the size of box, 8-bit RGB and alpha.
// Pixels outside the ellipse or outside the source are transparent black. The edge is not antialiased.
// Inside, the transparency of the source is kept. Resolution and profile are copied.
// Other: the box is empty. TooLarge: the box has too many pixels.
Status CutEllipse(const Image& source, base::Rect box, const Limits& limits, Image& out);

}  // namespace quillon::imaging
