// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <vector>

#include "base/rect.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/jpeg/jpeg_transfer.h"

namespace quillon::imaging {

// Moves whole pixels, row by row: any rectangle, also one that leaves the picture. Rows above the rectangle are not
// transformed, columns beside it neither, rows below not even read. Chroma is upsampled to every pixel, exactly as in
// the whole picture, and reduced again by the encoder.
class JpegRows : public JpegTransfer {
 public:
  // white: a pixel in the colour space of the file. decoded: the picture, where it was decoded before, else nullptr;
  // the decoder then only tells what it read of the header.
  JpegRows(jpeg_decompress_struct& decoder, jpeg_compress_struct& encoder, base::Rect rect,
           const std::array<JSAMPLE, 4>& white, const JpegPixels* decoded);

  void Start() override;
  void Allocate() override;
  void Move() override;

 private:
  static constexpr int kBatch = 16;  // rows moved at a time

  struct Span {
    int begin = 0;
    int size = 0;
  };

  static Span Inside(int begin, int size, JDIMENSION length);
  void WriteWhite(int count);
  void WriteDecoded();
  void ReadBatch(int count);
  void CopyBatch(int row, int count);

  jpeg_decompress_struct& decoder_;
  jpeg_compress_struct& encoder_;
  const base::Rect rect_;
  const std::array<JSAMPLE, 4> whitePixel_;
  const JpegPixels* const whole_;
  Span columns_;  // of the picture that are used
  Span rows_;
  int firstColumn_ = 0;  // of the picture in a decoded row
  std::size_t components_ = 0;
  std::vector<JSAMPLE> decoded_;
  std::array<JSAMPROW, kBatch> decodedRows_{};
  std::vector<JSAMPLE> white_;   // one row, where the picture does not reach everywhere
  std::vector<JSAMPLE> framed_;  // a batch of rows, white on both sides
};

}  // namespace quillon::imaging
