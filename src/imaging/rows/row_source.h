// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"
#include "host/status.h"

namespace quillon::imaging {

// What the samples of a row mean; the channels are interleaved. Cmyk counts ink, 0 for none.
enum class RowLayout { Grey = 1, Rgb = 3, Cmyk = 4 };

struct RowFacts {
  base::Size size;
  RowLayout layout = RowLayout::Rgb;
  bool ycc = false;    // the channels of Rgb are Y, Cb and Cr instead: for those alone who asked for them
  bool alpha = false;  // one more channel, behind the colours
  int bits = 8;        // a sample: 8, or 16 in the machine's byte order
  int dpi = 0;
  int orientation = 1;  // as EXIF tells it
  std::string profile;  // ICC, "" for none
  std::string exif;     // EXIF as a TIFF structure, "" for none

  int Channels() const { return static_cast<int>(layout) + (alpha ? 1 : 0); }
  int PixelBytes() const { return Channels() * bits / 8; }
};

// A picture that hands out parts of its rows in any order, without being held whole. Safe to call from several threads.
class RowSource {
 public:
  virtual ~RowSource() = default;
  virtual const RowFacts& Facts() const = 0;
  // width pixels of a row from left on, which lie inside the picture. Damaged when the file does not hold them.
  virtual host::Status ReadSpan(int row, int left, int width, unsigned char* out) = 0;
};

// A picture that hands out its rows once, from the top. Used by one thread at a time.
class RowStream {
 public:
  virtual ~RowStream() = default;
  virtual const RowFacts& Facts() const = 0;
  // The next row. With the last one everything behind it is checked too.
  virtual host::Status ReadRow(unsigned char* out) = 0;
  // As reading count rows that nobody wants to see; where a kind of file knows a quicker way, it takes it.
  virtual host::Status SkipRows(int count);
};

}  // namespace quillon::imaging
