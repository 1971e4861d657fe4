// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <vector>

#include "base/rect.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/jpeg/jpeg_reader.h"
#include "imaging/jpeg/jpeg_writer.h"

namespace quillon::imaging {

// Moves whole pixels, row by row: any rectangle, also one that leaves the picture. Rows above the rectangle are not
// transformed, columns beside it neither, rows below not even read. Chroma is upsampled to every pixel, exactly as in
// the whole picture, and reduced again by the encoder.
class JpegRows {
 public:
  // reader is open, writer is set up, both with errors. Start and Move run under the Guard of their errors, Allocate
  // between them. white: a pixel in the colour space of the file. decoded: the picture if it was decoded before, else
  // nullptr; if it is given, only the header is used of reader.
  JpegRows(JpegErrors& errors, JpegReader& reader, JpegWriter& writer, base::Rect rect,
           const std::array<JSAMPLE, 4>& white, const JpegPixels* decoded);

  void Start();
  void Allocate();
  // Writes every row of the result.
  void Move();

 private:
  static constexpr int kBatch = 16;  // rows moved at a time

  struct Span {
    int begin = 0;
    int size = 0;
  };

  static Span Inside(int begin, int size, JDIMENSION length);
  void WriteWhite(int count);
  void WriteDecoded();
  void CopyBatch(int row, int count);
  // Returns false if the rows cannot be read; the reason is then in errors_.
  bool Copied(int row, int count);

  JpegErrors& errors_;
  JpegReader& reader_;
  JpegWriter& writer_;
  const base::Rect rect_;
  const std::array<JSAMPLE, 4> whitePixel_;
  const JpegPixels* const whole_;
  Span columns_;  // of the picture that are used
  Span rows_;
  int firstColumn_ = 0;  // of the picture in a decoded row
  std::size_t components_ = 0;
  std::vector<JSAMPLE> decoded_;
  std::array<JSAMPROW, kBatch> decodedRows_{};
  std::vector<JSAMPLE> white_;   // one row, if the picture does not fill the rectangle
  std::vector<JSAMPLE> framed_;  // a batch of rows, white on both sides
};

}  // namespace quillon::imaging
