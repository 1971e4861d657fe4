// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

// What the header of a picture file states.
struct HeaderFacts {
  base::Size size;  // in pixels, before the EXIF orientation is applied; {0, 0} if the header states none
  int dpi = 0;      // horizontal, dots per inch, rounded to nearest; 0 if the header states none
};

// How far a header answers.
enum class HeaderKind {
  Known,  // jpg, png, gif, bmp, tif, BigTIFF or psd: what the header does not state, nothing but the decoder knows
  Other   // another kind of file, or a variant whose size the header alone does not give
};

// Reads the header of a file; the first bytes decide which kind it is. Of several pages or frames the first counts, of
// a gif the canvas. A side that is 0 or above the range of int leaves size {0, 0}.
// The file may be damaged or made to mislead: the number of reads is bounded, and no offset is followed twice.
// Most files need one read of 16 KB.
HeaderKind ReadHeader(Bytes& bytes, HeaderFacts& facts);

}  // namespace quillon::imaging
