// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_planes.h"

#include <algorithm>
#include <cstdint>

namespace quillon::imaging {
namespace {

constexpr double kShareWorthIt = 0.4;  // of the transformed pixels that have to be used

int CeilDiv(int value, int divisor) { return (value + divisor - 1) / divisor; }

// Averages of two are rounded up and down in turn, so that they do not drift.

void AverageColumns(const JSAMPLE* a, JSAMPLE* out, int count) {
  for (int x = 0; x < count; ++x) out[x] = static_cast<JSAMPLE>((a[2 * x] + a[2 * x + 1] + (x & 1)) >> 1);
}

void AverageRows(const JSAMPLE* a, const JSAMPLE* b, JSAMPLE* out, int count) {
  for (int x = 0; x < count; ++x) out[x] = static_cast<JSAMPLE>((a[x] + b[x] + (x & 1)) >> 1);
}

void AverageSquares(const JSAMPLE* a, const JSAMPLE* b, JSAMPLE* out, int count) {
  for (int x = 0; x < count; ++x) {
    out[x] = static_cast<JSAMPLE>((a[2 * x] + a[2 * x + 1] + b[2 * x] + b[2 * x + 1] + 1 + (x & 1)) >> 2);
  }
}

}  // namespace

bool JpegPlanes::Suits(const JpegReader& reader, const JpegWriter& writer, base::Rect rect) {
  const jpeg_decompress_struct& decoder = reader.Info();
  const jpeg_compress_struct& encoder = writer.Info();
  const std::int64_t right = std::int64_t{rect.left} + rect.width;
  const std::int64_t bottom = std::int64_t{rect.top} + rect.height;
  if (rect.left < 0 || rect.top < 0 || right > decoder.image_width || bottom > decoder.image_height) return false;
  const double used = static_cast<double>(rect.width) * rect.height;
  if (used < kShareWorthIt * static_cast<double>(decoder.image_width) * static_cast<double>(bottom)) return false;
  if (decoder.num_components > kComponents) return false;
  const auto fits = [](int mostIn, int factorIn, int mostOut, int factorOut, int begin) {
    if (mostIn % factorIn != 0 || mostOut % factorOut != 0) return false;
    const int pixelsIn = mostIn / factorIn;
    return begin % pixelsIn == 0 && (mostOut / factorOut) % pixelsIn == 0;
  };
  for (int i = 0; i < decoder.num_components; ++i) {
    const jpeg_component_info& in = decoder.comp_info[i];
    const jpeg_component_info& out = encoder.comp_info[i];
    int mostAcross = 1;
    int mostDown = 1;
    for (int k = 0; k < encoder.num_components; ++k) {
      mostAcross = std::max(mostAcross, encoder.comp_info[k].h_samp_factor);
      mostDown = std::max(mostDown, encoder.comp_info[k].v_samp_factor);
    }
    if (!fits(decoder.max_h_samp_factor, in.h_samp_factor, mostAcross, out.h_samp_factor, rect.left) ||
        !fits(decoder.max_v_samp_factor, in.v_samp_factor, mostDown, out.v_samp_factor, rect.top)) {
      return false;
    }
  }
  return true;
}

JpegPlanes::JpegPlanes(JpegReader& reader, JpegWriter& writer, base::Rect rect)
    : reader_(reader), writer_(writer), rect_(rect) {}

void JpegPlanes::Start() {
  reader_.StartPlanes();
  writer_.StartPlanes();
}

void JpegPlanes::MeasurePlane(int index) {
  const jpeg_decompress_struct& decoder = reader_.Info();
  const jpeg_compress_struct& encoder = writer_.Info();
  const jpeg_component_info& in = decoder.comp_info[index];
  const jpeg_component_info& out = encoder.comp_info[index];
  Plane& plane = planes_[static_cast<std::size_t>(index)];
  plane.acrossIn = decoder.max_h_samp_factor / in.h_samp_factor;
  plane.downIn = decoder.max_v_samp_factor / in.v_samp_factor;
  const int acrossOut = encoder.max_h_samp_factor / out.h_samp_factor;
  const int downOut = encoder.max_v_samp_factor / out.v_samp_factor;
  plane.across = acrossOut / plane.acrossIn;
  plane.down = downOut / plane.downIn;
  plane.left = rect_.left / plane.acrossIn;
  plane.top = rect_.top / plane.downIn;
  plane.widthIn = CeilDiv(rect_.width, plane.acrossIn);
  plane.heightIn = CeilDiv(rect_.height, plane.downIn);
  plane.width = CeilDiv(rect_.width, acrossOut);
  plane.height = CeilDiv(rect_.height, downOut);
  plane.paddedWidth = static_cast<int>(out.width_in_blocks) * kBlock;
  // What one row of blocks of the result needs, and the rows of blocks of the source that it begins and ends in.
  plane.ringRows = (encoder.max_v_samp_factor + 2 * decoder.max_v_samp_factor) * kBlock / plane.downIn;
  const std::size_t decodedWidth =
      (static_cast<std::size_t>(in.width_in_blocks) + static_cast<std::size_t>(in.h_samp_factor)) * kBlock;
  plane.stride = std::max(decodedWidth, static_cast<std::size_t>(plane.left + plane.paddedWidth));
  plane.ring.resize(plane.stride * static_cast<std::size_t>(plane.ringRows));
  if (plane.across > 1 || plane.down > 1) {
    plane.averaged.resize(static_cast<std::size_t>(plane.paddedWidth) * kRowsWritten);
  }
}

void JpegPlanes::Allocate() {
  for (int i = 0; i < reader_.Info().num_components; ++i) MeasurePlane(i);
}

// Rows of pixels, from the top of the picture.
void JpegPlanes::DecodeDownTo(int row) {
  const int step = reader_.Info().max_v_samp_factor * kBlock;
  std::array<JSAMPARRAY, kComponents> image{};
  while (decodedRows_ < row) {
    for (int i = 0; i < reader_.Info().num_components; ++i) {
      Plane& plane = planes_[static_cast<std::size_t>(i)];
      const int first = decodedRows_ / plane.downIn;
      for (int k = 0; k < step / plane.downIn; ++k) {
        plane.rowsIn[static_cast<std::size_t>(k)] = plane.RingRow(first + k);
      }
      image[static_cast<std::size_t>(i)] = plane.rowsIn.data();
    }
    reader_.ReadPlanes(image.data(), step);
    decodedRows_ += step;
  }
}

// A row of the result. Its last column is repeated if it has no partner.
void JpegPlanes::Average(Plane& plane, int row, JSAMPROW out) {
  const int first = row * plane.down;
  const int second = std::min(first + plane.down - 1, plane.heightIn - 1);
  const JSAMPLE* a = plane.RingRow(plane.top + first) + plane.left;
  const JSAMPLE* b = plane.RingRow(plane.top + second) + plane.left;
  if (plane.across == 1) {
    AverageRows(a, b, out, plane.width);
    return;
  }
  const int whole = plane.widthIn / 2;
  if (plane.down == 1) {
    AverageColumns(a, out, whole);
  } else {
    AverageSquares(a, b, out, whole);
  }
  if (whole < plane.width) out[whole] = static_cast<JSAMPLE>((a[2 * whole] + b[2 * whole] + 1) / 2);
}

// Points rowsOut at count rows of the result. Beyond its right and lower end the last sample is repeated up to whole
// blocks: what was cut off must not hide in the padding.
void JpegPlanes::LayOut(Plane& plane, int firstRow, int count) {
  for (int k = 0; k < count; ++k) {
    const int row = std::min(firstRow + k, plane.height - 1);
    JSAMPROW samples = nullptr;
    if (plane.averaged.empty()) {
      samples = plane.RingRow(plane.top + row) + plane.left;
    } else {
      samples = plane.averaged.data() + static_cast<std::size_t>(k) * static_cast<std::size_t>(plane.paddedWidth);
      Average(plane, row, samples);
    }
    std::fill(samples + plane.width, samples + plane.paddedWidth, samples[plane.width - 1]);
    plane.rowsOut[static_cast<std::size_t>(k)] = samples;
  }
}

void JpegPlanes::Move() {
  const int step = writer_.Info().max_v_samp_factor * kBlock;
  std::array<JSAMPARRAY, kComponents> image{};
  for (int y = 0; y < rect_.height; y += step) {
    DecodeDownTo(rect_.top + std::min(y + step, rect_.height));
    for (int i = 0; i < writer_.Info().num_components; ++i) {
      Plane& plane = planes_[static_cast<std::size_t>(i)];
      const int count = writer_.Info().comp_info[i].v_samp_factor * kBlock;
      LayOut(plane, y / step * count, count);
      image[static_cast<std::size_t>(i)] = plane.rowsOut.data();
    }
    writer_.WritePlanes(image.data(), step);
  }
}

}  // namespace quillon::imaging
