// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_rows.h"

#include <algorithm>
#include <cstdint>

namespace quillon::imaging {
namespace {

// Columns decoded on either side of the wanted ones, so that smooth chroma upsampling sees the same neighbours there
// as in the whole picture: two samples of the coarsest subsampling, which is 4.
constexpr int kMargin = 8;

}  // namespace

JpegRows::JpegRows(jpeg_decompress_struct& decoder, jpeg_compress_struct& encoder, base::Rect rect,
                   const std::array<JSAMPLE, 4>& white, const JpegPixels* decoded)
    : decoder_(decoder),
      encoder_(encoder),
      rect_(rect),
      whitePixel_(white),
      whole_(decoded),
      columns_(Inside(rect.left, rect.width, decoder.image_width)),
      rows_(Inside(rect.top, rect.height, decoder.image_height)) {
  if (columns_.size == 0 || rows_.size == 0) columns_.size = rows_.size = 0;
}

// What of [begin, begin + size) lies in a picture of length pixels.
JpegRows::Span JpegRows::Inside(int begin, int size, JDIMENSION length) {
  const std::int64_t from = std::clamp<std::int64_t>(begin, 0, length);
  const std::int64_t to = std::clamp<std::int64_t>(std::int64_t{begin} + size, from, length);
  return {static_cast<int>(from), static_cast<int>(to - from)};
}

void JpegRows::Start() {
  jpeg_start_compress(&encoder_, TRUE);
  if (whole_) {
    firstColumn_ = columns_.begin;
    return;
  }
  // A picture in several scans is read to its end here, which finds all damage.
  if (rows_.size == 0 && !jpeg_has_multiple_scans(&decoder_)) return;
  jpeg_start_decompress(&decoder_);
  if (rows_.size == 0) return;
  JDIMENSION begin = static_cast<JDIMENSION>(std::max(columns_.begin - kMargin, 0));
  JDIMENSION size = static_cast<JDIMENSION>(columns_.begin + columns_.size + kMargin) - begin;
  size = std::min(size, decoder_.image_width - begin);
  if (size < decoder_.image_width) {
    jpeg_crop_scanline(&decoder_, &begin, &size);
    firstColumn_ = static_cast<int>(begin);
  }
  if (rows_.begin > 0) jpeg_skip_scanlines(&decoder_, static_cast<JDIMENSION>(rows_.begin));
}

void JpegRows::Allocate() {
  components_ = static_cast<std::size_t>(decoder_.num_components);
  const std::size_t width = whole_ ? static_cast<std::size_t>(columns_.size) : decoder_.output_width;
  const std::size_t decoded = rows_.size > 0 ? width * components_ : 0;
  decoded_.resize(decoded * kBatch);
  for (std::size_t i = 0; i < kBatch; ++i) decodedRows_[i] = decoded_.data() + i * decoded;
  if (columns_.size == rect_.width && rows_.size == rect_.height) return;
  white_.resize(static_cast<std::size_t>(rect_.width) * components_);
  for (std::size_t i = 0; i < white_.size(); ++i) white_[i] = whitePixel_[i % components_];
  for (std::size_t i = 0; i < kBatch; ++i) framed_.insert(framed_.end(), white_.begin(), white_.end());
}

void JpegRows::Move() {
  const int above = rows_.size > 0 ? rows_.begin - rect_.top : rect_.height;
  WriteWhite(above);
  WriteDecoded();
  WriteWhite(rect_.height - above - rows_.size);
}

void JpegRows::WriteWhite(int count) {
  JSAMPROW row = white_.data();
  for (int i = 0; i < count; ++i) jpeg_write_scanlines(&encoder_, &row, 1);
}

void JpegRows::WriteDecoded() {
  if (rows_.size == 0) return;
  const std::size_t skip = static_cast<std::size_t>(columns_.begin - firstColumn_) * components_;
  const std::size_t used = static_cast<std::size_t>(columns_.size) * components_;
  const bool framed = columns_.size < rect_.width;
  const std::size_t margin = framed ? static_cast<std::size_t>(columns_.begin - rect_.left) * components_ : 0;
  std::array<JSAMPROW, kBatch> parts{};
  for (int left = rows_.size; left > 0;) {
    const int batch = std::min(left, kBatch);
    if (whole_) {
      CopyBatch(rows_.begin + rows_.size - left, batch);
    } else {
      ReadBatch(batch);
    }
    for (int i = 0; i < batch; ++i) {
      parts[i] = decodedRows_[i] + skip;
      if (!framed) continue;
      JSAMPROW row = framed_.data() + static_cast<std::size_t>(i) * white_.size();
      std::copy_n(parts[i], used, row + margin);
      parts[i] = row;
    }
    jpeg_write_scanlines(&encoder_, parts.data(), static_cast<JDIMENSION>(batch));
    left -= batch;
  }
}

// libjpeg hands out a few rows a call, as the sampling has it.
void JpegRows::ReadBatch(int count) {
  for (int read = 0; read < count;) {
    read += static_cast<int>(
        jpeg_read_scanlines(&decoder_, decodedRows_.data() + read, static_cast<JDIMENSION>(count - read)));
  }
}

void JpegRows::CopyBatch(int row, int count) {
  const std::size_t used = static_cast<std::size_t>(columns_.size) * components_;
  for (int i = 0; i < count; ++i) {
    std::copy_n(whole_->At(columns_.begin, row + i), used, decodedRows_[static_cast<std::size_t>(i)]);
  }
}

}  // namespace quillon::imaging
