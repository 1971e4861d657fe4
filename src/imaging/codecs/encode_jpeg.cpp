// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string>
#include <vector>

#include "imaging/codecs/encode.h"
#include "imaging/jpeg/jpeg_writer.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

JpegFormat JpegFormatOf(base::Size size, int channels, bool ycc) {
  JpegFormat format;
  format.size = size;
  format.components = channels;
  if (channels == 4) {
    format.given = format.stored = JCS_CMYK;
  } else if (channels == 1) {
    format.given = format.stored = JCS_GRAYSCALE;
  } else {
    format.given = ycc ? JCS_YCbCr : JCS_RGB;
  }
  return format;
}

// Encodes rows of pixels into a draft. Everything that a jump out of libjpeg could leave behind is a member.
class RowEncoder {
 public:
  explicit RowEncoder(host::Draft& draft)
      : sink_([&draft](const void* data, std::size_t size) { return draft.Write(data, size); }) {}

  Status Begin(JpegFormat format, const PictureTags& tags, int quality, Exif exif) {
    if (std::max(format.size.width, format.size.height) > Limits().jpegSide) return fault::ResultTooLarge();
    rowBytes_ = static_cast<std::size_t>(format.size.width) * static_cast<unsigned>(format.components);
    inks_ = format.stored == JCS_CMYK;
    format.quality = quality;
    if (tags.dpi > 0) format.density = JpegDensity{JpegHead::Unit::Inch, tags.dpi, tags.dpi};
    if (Status status = Run([&] { writer_.SetUp(format); }); !status) return status;
    const std::vector<std::string> profile = ProfileSegments(tags.profile);
    writer_.AddTags({.exif = tags.exif,
                     .keep = exif,
                     .exifDpi = tags.dpi,
                     .orientation = tags.orientation,
                     .dpi = tags.dpi,
                     .icc = {profile.begin(), profile.end()}});
    return Run([this] { writer_.StartRows(); });
  }

  Status Rows(const RowBlock& block) {
    row_.resize(rowBytes_);
    for (int y = 0; y < block.count; ++y) {
      const unsigned char* from = block.first + block.step * static_cast<unsigned>(y);
      if (inks_) {
        std::transform(from, from + rowBytes_, row_.begin(),
                       [](unsigned char ink) { return static_cast<unsigned char>(255 - ink); });
      } else {
        std::copy_n(from, rowBytes_, row_.begin());
      }
      rowStart_ = row_.data();
      if (Status status = Run([this] { writer_.WriteRows(&rowStart_, 1); }); !status) return status;
    }
    return Status::Ok();
  }

  Status End() {
    return Run([this] { writer_.Finish(); });
  }

 private:
  template <class Work>
  Status Run(Work work) {
    return errors_.Guard(work) ? Status::Ok() : errors_.Result();
  }

  ByteSink sink_;
  JpegErrors errors_;
  JpegWriter writer_{errors_, sink_};
  bool inks_ = false;
  std::size_t rowBytes_ = 0;
  std::vector<unsigned char> row_;
  JSAMPROW rowStart_ = nullptr;
};

}  // namespace

Status WriteJpeg(const Picture& picture, int quality, Exif exif, host::Draft& draft) {
  const VImage& pixels = picture.pixels;
  const JpegFormat format = JpegFormatOf({pixels.width(), pixels.height()}, pixels.bands(), false);
  RowEncoder encoder(draft);
  if (Status status = encoder.Begin(format, picture.tags, quality, exif); !status) return status;
  Status status = ForEachRows(pixels, [&](const RowBlock& block) { return encoder.Rows(block); });
  return status ? encoder.End() : status;
}

Status WriteJpeg(RowStream& rows, const PictureTags& tags, int quality, host::Draft& draft) {
  const RowFacts& facts = rows.Facts();
  RowEncoder encoder(draft);
  const JpegFormat format = JpegFormatOf(facts.size, facts.Channels(), facts.ycc);
  if (Status status = encoder.Begin(format, tags, quality, Exif::Drop); !status) return status;
  const auto size = static_cast<std::size_t>(facts.size.width) * static_cast<std::size_t>(facts.PixelBytes());
  std::vector<unsigned char> row(size);
  for (int y = 0; y < facts.size.height; ++y) {
    if (Status read = rows.ReadRow(row.data()); !read) return read;
    if (Status written = encoder.Rows({y, 1, row.data(), size}); !written) return written;
  }
  return encoder.End();
}

}  // namespace quillon::imaging
