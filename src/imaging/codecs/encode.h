// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"
#include "imaging/types.h"

namespace quillon::imaging {

struct EncodeOptions {
  Encoder encoder = Encoder::Jpeg;
  int quality = 80;         // jpeg, 0..100; outside: clamped
  bool blackWhite = false;  // tiff: CCITT group 4
  Exif exif = Exif::Drop;   // jpeg, png and tiff; the orientation is kept either way
};

// Writes picture into draft and checks what was written.
//
// What a format cannot hold is changed: alpha lies on white (jpeg, bmp; gif keeps it as on or off), 16 bits become 8
// (all but png and tiff), CMYK becomes sRGB (all but jpeg and tiff), and gif gets displayed colours, having no profile.
// Chroma of jpeg is stored at half size below quality 90 and whole from there on. Resolution that is not known is left
// untold, except that tiff, which must tell one, says 96. A tiff above 4 GB is written as BigTIFF.
//
// TooLarge: the format has no room for these sides. Draft failures come back as they are.
Status EncodePicture(const Picture& picture, const EncodeOptions& options, host::Draft& draft);

// Whether a finished draft begins and ends as a file of this kind does.
Status CheckOutput(Encoder encoder, host::Draft& draft);

// The parts of EncodePicture that are written here; pixels are 8 bit.
Status WriteJpeg(const Picture& picture, int quality, Exif exif, host::Draft& draft);  // grey, RGB or CMYK
Status WriteBmp(const Picture& rgb, host::Draft& draft);

// Rows as they are read: nothing else is held. EXIF is dropped. Jpeg takes 8 bits without alpha, png no inks.
Status WriteJpeg(RowStream& rows, const PictureTags& tags, int quality, host::Draft& draft);
Status WritePng(RowStream& rows, const PictureTags& tags, host::Draft& draft);
Status WriteTiff(RowStream& rows, const PictureTags& tags, host::Draft& draft);

// What a tiff tells whose resolution is not known.
inline constexpr int kUntoldTiffDpi = 96;

}  // namespace quillon::imaging
