// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/pixels/picture.h"
#include "imaging/pixels/pixel_space.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

// How a picture is encoded.
struct EncodeOptions {
  Encoder encoder = Encoder::Jpeg;
  int quality = 80;         // jpeg only, 0..100; values outside are clamped
  bool blackWhite = false;  // tiff only: one bit a pixel with CCITT group 4
  Exif exif = Exif::Drop;   // jpeg, png and tiff; the orientation is written in any case
  Orient orient = Orient::Apply;
  // Bits a pixel. bmp: 4, 8, 16, 24, 32, 48 or 64; png: 4 or 8 gives a palette, all others what the pixels have. With 4
  // and 8 the pixels are RGB of no more colours than that (see Quantise).
  int bits = 24;
};

// Encodes picture into draft and checks the output with CheckOutput.
// What a format cannot store is converted:
//   - jpeg and bmp blend alpha with white, unless the bmp has 64 bits a pixel; gif keeps it as fully transparent or
//   opaque;
//   - all but png, tiff and a bmp of 48 or 64 bits a pixel reduce 16 bits to 8;
//   - all but jpeg and tiff convert CMYK to sRGB;
//   - gif has no profile and gets the colours that the screen shows;
//   - gif and bmp have no orientation and get pixels that are turned upright, unless options.orient defers it.
// Jpeg stores chroma at half resolution below quality 90 and at full resolution from 90 on.
// An unknown resolution is not written, except that tiff requires one and gets kDefaultTiffDpi.
// A tiff of more than 4 GB is written as BigTIFF.
// Pixels that are turned upright are held in space meanwhile; see MakeUpright.
// TooLarge: the format cannot store these sides, or there is no room to turn the pixels. Errors of the draft are
// returned unchanged.
Status EncodePicture(const Picture& picture, const EncodeOptions& options, const PixelSpace& space, host::Draft& draft);

// Returns NotSaved unless the draft starts and ends like a complete file of this format.
Status CheckOutput(Encoder encoder, host::Draft& draft);

// The encoders that EncodePicture uses. Pixels have 8 bits, for a bmp of 48 or 64 bits a pixel 16.
Status WriteJpeg(const Picture& picture, int quality, Exif exif, host::Draft& draft);  // grey, RGB or CMYK
Status WriteBmp(const Picture& picture, int bits, host::Draft& draft);                 // RGB; RGBA for 64 bits

// Encode rows while they are read; no more than a row is held. EXIF is dropped.
// WriteJpeg needs 8 bits and no alpha. The output is not checked.
Status WriteJpeg(RowStream& rows, const PictureTags& tags, int quality, host::Draft& draft);
Status WriteTiff(RowStream& rows, const PictureTags& tags, host::Draft& draft);

// Resolution of a tiff whose resolution is unknown, in dots per inch.
inline constexpr int kDefaultTiffDpi = 96;

}  // namespace quillon::imaging
