// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_writer.h"

#include <algorithm>

#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

constexpr int kFullChromaQuality = 90;
constexpr int kDensityMax = 65535;
constexpr std::size_t kProfileBytes = 65519;  // of a profile in one segment
constexpr std::size_t kProfileSegmentsMax = 255;
constexpr std::size_t kExifMax = 65527;  // bytes of a block, which has one segment
constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;

}  // namespace

void JpegWriter::SetUp(const JpegFormat& format) {
  encoder_.err = errors_.Handle();
  jpeg_create_compress(&encoder_);
  target_.Attach(encoder_);
  encoder_.image_width = static_cast<JDIMENSION>(format.size.width);
  encoder_.image_height = static_cast<JDIMENSION>(format.size.height);
  encoder_.input_components = format.components;
  encoder_.in_color_space = format.given;
  jpeg_set_defaults(&encoder_);
  jpeg_set_colorspace(&encoder_, format.stored);
  jpeg_set_quality(&encoder_, std::clamp(format.quality, 0, 100), TRUE);
  SetSampling(format);
  if (format.density) SetDensity(*format.density);
  if (format.stored == JCS_CMYK) encoder_.write_Adobe_marker = format.invertedInks ? TRUE : FALSE;
}

void JpegWriter::SetSampling(const JpegFormat& format) {
  if (format.stored != JCS_YCbCr && format.stored != JCS_YCCK) return;
  const JpegChroma chroma = format.quality >= kFullChromaQuality ? format.chroma : JpegChroma{2, 2};
  for (int i = 0; i < encoder_.num_components; ++i) {
    const bool isChroma = i == 1 || i == 2;
    encoder_.comp_info[i].h_samp_factor = isChroma ? 1 : chroma.across;
    encoder_.comp_info[i].v_samp_factor = isChroma ? 1 : chroma.down;
  }
}

void JpegWriter::SetDensity(const JpegDensity& density) {
  // A JFIF marker would make decoders take RGB for YCbCr.
  encoder_.write_JFIF_header = encoder_.jpeg_color_space == JCS_RGB ? FALSE : TRUE;
  encoder_.density_unit = static_cast<UINT8>(density.unit);
  encoder_.X_density = static_cast<UINT16>(std::clamp(density.x, 1, kDensityMax));
  encoder_.Y_density = static_cast<UINT16>(std::clamp(density.y, 1, kDensityMax));
}

void JpegWriter::AddTags(const JpegTags& tags) {
  const base::Size size{static_cast<int>(encoder_.image_width), static_cast<int>(encoder_.image_height)};
  if (tags.keep == Exif::Keep) exif_ = CutExif(tags.exif, size, tags.exifDpi);
  if (exif_.empty() || exif_.size() > kExifMax) {
    exif_ = MinimalExif(tags.orientation, encoder_.write_JFIF_header == TRUE ? 0 : tags.dpi);
  }
  if (!exif_.empty()) exif_.insert(0, "Exif\0\0", 6);
  icc_ = tags.icc;
}

void JpegWriter::WriteTags() {
  if (!exif_.empty()) WriteSegment(kExifMarker, exif_);
  for (const std::string_view payload : icc_) WriteSegment(kProfileMarker, payload);
}

void JpegWriter::WriteSegment(int marker, std::string_view payload) {
  jpeg_write_marker(&encoder_, marker, reinterpret_cast<const JOCTET*>(payload.data()),
                    static_cast<unsigned>(payload.size()));
}

void JpegWriter::StartRows() {
  jpeg_start_compress(&encoder_, TRUE);
  WriteTags();
}

void JpegWriter::WriteRows(JSAMPARRAY rows, int count) {
  jpeg_write_scanlines(&encoder_, rows, static_cast<JDIMENSION>(count));
}

void JpegWriter::StartPlanes() {
  encoder_.raw_data_in = TRUE;
  StartRows();
}

void JpegWriter::WritePlanes(JSAMPIMAGE planes, int rows) {
  jpeg_write_raw_data(&encoder_, planes, static_cast<JDIMENSION>(rows));
}

void JpegWriter::Finish() { jpeg_finish_compress(&encoder_); }

std::vector<std::string> ProfileSegments(std::string_view profile) {
  const std::size_t count = (profile.size() + kProfileBytes - 1) / kProfileBytes;
  std::vector<std::string> segments;
  if (count > kProfileSegmentsMax) return segments;
  for (std::size_t i = 0; i < count; ++i) {
    std::string payload("ICC_PROFILE\0", 12);
    payload += static_cast<char>(i + 1);
    payload += static_cast<char>(count);
    payload += profile.substr(i * kProfileBytes, kProfileBytes);
    segments.push_back(std::move(payload));
  }
  return segments;
}

}  // namespace quillon::imaging
