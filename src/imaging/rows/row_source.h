// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

#include "base/rect.h"
#include "host/status.h"

namespace quillon::imaging {

// The colour channels of a row, which are interleaved. Cmyk samples count ink: 0 is no ink.
enum class RowLayout { Grey = 1, Rgb = 3, Cmyk = 4 };

// Describes the rows of a picture: size, sample format and the metadata of the file.
struct RowFacts {
  base::Size size;
  RowLayout layout = RowLayout::Rgb;
  bool ycc = false;       // the channels are Y, Cb and Cr instead of R, G and B; only if the reader asked for them
  bool alpha = false;     // an alpha channel follows the colours
  int bits = 8;           // bits of a sample: 8, or 16 in native byte order
  int dpi = 0;            // dots per inch, 0 if unknown
  int orientation = 1;    // EXIF orientation, 1..8
  std::string profile;    // ICC profile, empty if there is none
  std::string exif;       // EXIF block (a TIFF structure), empty if there is none
  std::int64_t held = 0;  // bytes held while reading a kind of file that cannot be read row by row

  int Channels() const { return static_cast<int>(layout) + (alpha ? 1 : 0); }
  int PixelBytes() const { return Channels() * bits / 8; }
};

// Reads any part of any row of a picture, without holding the whole picture in memory.
// All members may be called from several threads.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual const RowFacts& Facts() const = 0;
  // Writes width pixels of a row, starting at column left, to out. The span lies inside the picture.
  // Returns Damaged if the file does not contain the pixels.
  virtual host::Status ReadSpan(int row, int left, int width, unsigned char* out) = 0;
};

// Reads the rows of a picture once, from top to bottom. Used by one thread at a time.
class RowStream {
 public:
  virtual ~RowStream() = default;
  virtual const RowFacts& Facts() const = 0;
  // Writes the next row to out, which holds size.width * PixelBytes() bytes. Not called after the last row.
  // Reading the last row also checks what follows it in the file, so damage there is reported.
  virtual host::Status ReadRow(unsigned char* out) = 0;
  // Reads past count rows. The default decodes and drops them; a reader that can skip faster overrides it.
  virtual host::Status SkipRows(int count);
};

}  // namespace quillon::imaging
