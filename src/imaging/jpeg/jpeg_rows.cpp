// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_rows.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace quillon::imaging {
namespace {

// Columns decoded on either side of the wanted ones, so that smooth chroma upsampling sees the same neighbours there
// as in the whole picture: two samples of the coarsest subsampling, which is 4.
constexpr int kMargin = 8;

}  // namespace

JpegRows::JpegRows(JpegErrors& errors, JpegReader& reader, JpegWriter& writer, base::Rect rect,
                   const std::array<JSAMPLE, 4>& white, const JpegPixels* decoded)
    : errors_(errors),
      reader_(reader),
      writer_(writer),
      rect_(rect),
      whitePixel_(white),
      whole_(decoded),
      columns_(Inside(rect.left, rect.width, reader.Info().image_width)),
      rows_(Inside(rect.top, rect.height, reader.Info().image_height)) {
  if (columns_.size == 0 || rows_.size == 0) columns_.size = rows_.size = 0;
}

// What of [begin, begin + size) lies in a picture of length pixels.
JpegRows::Span JpegRows::Inside(int begin, int size, JDIMENSION length) {
  const std::int64_t from = std::clamp<std::int64_t>(begin, 0, length);
  const std::int64_t to = std::clamp<std::int64_t>(std::int64_t{begin} + size, from, length);
  return {static_cast<int>(from), static_cast<int>(to - from)};
}

void JpegRows::Start() {
  if (whole_) {
    firstColumn_ = columns_.begin;
  } else if (rows_.size > 0) {
    reader_.StartRows();
    const int first = std::max(columns_.begin - kMargin, 0);
    const int width = static_cast<int>(reader_.Info().image_width);
    firstColumn_ = reader_.CropColumns(first, std::min(columns_.begin + columns_.size + kMargin, width) - first);
    reader_.SkipRows(rows_.begin);
  } else if (reader_.SeveralScans()) {
    reader_.StartRows();  // reads the picture to its end, which finds all damage
  }
  writer_.StartRows();
}

void JpegRows::Allocate() {
  components_ = static_cast<std::size_t>(reader_.Info().num_components);
  const std::size_t width = whole_ ? static_cast<std::size_t>(columns_.size) : reader_.Info().output_width;
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
  for (int i = 0; i < count; ++i) writer_.WriteRows(&row, 1);
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
      reader_.ReadRows(decodedRows_.data(), batch);
    }
    for (int i = 0; i < batch; ++i) {
      parts[i] = decodedRows_[i] + skip;
      if (!framed) continue;
      JSAMPROW row = framed_.data() + static_cast<std::size_t>(i) * white_.size();
      std::copy_n(parts[i], used, row + margin);
      parts[i] = row;
    }
    writer_.WriteRows(parts.data(), batch);
    left -= batch;
  }
}

void JpegRows::CopyBatch(int row, int count) {
  if (!Copied(row, count)) errors_.Jump();
}

// A call of its own, so that nothing is left to destroy when the jump is taken.
bool JpegRows::Copied(int row, int count) {
  const std::size_t step = static_cast<std::size_t>(columns_.size) * components_;
  Status copied = whole_->Read({columns_.begin, row, columns_.size, count}, decoded_.data(), step);
  if (copied) return true;
  errors_.SetResult(std::move(copied));
  return false;
}

}  // namespace quillon::imaging
