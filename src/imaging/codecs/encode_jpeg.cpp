// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string>
#include <vector>

#include "imaging/codecs/encode.h"
#include "imaging/jpeg/jpeg_stream.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kWholeChroma = 90;
constexpr int kLargestSide = 65500;
constexpr int kLargestDensity = 65535;
constexpr std::size_t kSegment = 65519;      // bytes of a profile in one segment
constexpr std::size_t kLargestExif = 65527;  // of the only segment that it may have

// Everything that a jump out of libjpeg could leave behind is a member.
class JpegWriter {
 public:
  explicit JpegWriter(host::Draft& draft)
      : sink_([&draft](const void* data, std::size_t size) { return draft.Write(data, size); }),
        target_(errors_, sink_) {}
  ~JpegWriter() { jpeg_destroy_compress(&encoder_); }
  JpegWriter(const JpegWriter&) = delete;
  JpegWriter& operator=(const JpegWriter&) = delete;

  // What the rows to come are.
  struct Kind {
    base::Size size;
    int bands = 0;
    bool inks = false;
    bool ycc = false;
  };

  Status Begin(const Kind& kind, const PictureTags& tags, int quality, Exif exif) {
    inks_ = kind.inks;
    MakeMarkers(kind.size, tags, exif);
    return Run([&] {
      Start(kind, tags.dpi, std::clamp(quality, 0, 100));
      for (const Marker& marker : markers_) {
        jpeg_write_marker(&encoder_, marker.code, reinterpret_cast<const JOCTET*>(marker.body.data()),
                          static_cast<unsigned>(marker.body.size()));
      }
    });
  }

  Status Rows(const RowBlock& block) {
    const std::size_t size = std::size_t{encoder_.image_width} * static_cast<unsigned>(encoder_.input_components);
    row_.resize(size);
    for (int y = 0; y < block.count; ++y) {
      const unsigned char* from = block.first + block.step * static_cast<unsigned>(y);
      std::transform(from, from + size, row_.begin(),
                     [this](unsigned char v) { return static_cast<unsigned char>(inks_ ? 255 - v : v); });
      rowStart_ = row_.data();
      if (Status status = Run([this] { jpeg_write_scanlines(&encoder_, &rowStart_, 1); }); !status) return status;
    }
    return Status::Ok();
  }

  Status End() {
    return Run([this] { jpeg_finish_compress(&encoder_); });
  }

 private:
  struct Marker {
    int code;
    std::string body;
  };

  template <class Work>
  Status Run(Work work) {
    return errors_.Guard(work) ? Status::Ok() : errors_.Result();
  }

  void MakeMarkers(base::Size size, const PictureTags& tags, Exif exif) {
    std::string block;
    if (exif == Exif::Keep) block = CutExif(tags.exif, size, tags.dpi);
    if (block.empty() || block.size() > kLargestExif) block = MinimalExif(tags.orientation, 0);
    if (!block.empty()) markers_.push_back({JPEG_APP0 + 1, std::string("Exif\0\0", 6) + block});
    const std::size_t count = (tags.profile.size() + kSegment - 1) / kSegment;
    if (count > 255) return;
    for (std::size_t i = 0; i < count; ++i) {
      std::string body("ICC_PROFILE\0", 12);
      body += static_cast<char>(i + 1);
      body += static_cast<char>(count);
      body += tags.profile.substr(i * kSegment, kSegment);
      markers_.push_back({JPEG_APP0 + 2, std::move(body)});
    }
  }

  void Start(const Kind& kind, int dpi, int quality) {
    encoder_.err = errors_.Handle();
    jpeg_create_compress(&encoder_);
    target_.Attach(encoder_);
    encoder_.image_width = static_cast<JDIMENSION>(kind.size.width);
    encoder_.image_height = static_cast<JDIMENSION>(kind.size.height);
    encoder_.input_components = kind.bands;
    encoder_.in_color_space = inks_                            ? JCS_CMYK
                              : encoder_.input_components == 1 ? JCS_GRAYSCALE
                              : kind.ycc                       ? JCS_YCbCr
                                                               : JCS_RGB;
    jpeg_set_defaults(&encoder_);
    jpeg_set_quality(&encoder_, quality, TRUE);
    if (encoder_.jpeg_color_space == JCS_YCbCr) {
      const int across = quality >= kWholeChroma ? 1 : 2;
      encoder_.comp_info[0].h_samp_factor = encoder_.comp_info[0].v_samp_factor = across;
    }
    if (dpi > 0) {
      encoder_.write_JFIF_header = TRUE;
      encoder_.density_unit = 1;
      encoder_.X_density = encoder_.Y_density = static_cast<UINT16>(std::min(dpi, kLargestDensity));
    }
    jpeg_start_compress(&encoder_, TRUE);
  }

  ByteSink sink_;
  JpegErrors errors_;
  JpegTarget target_;
  jpeg_compress_struct encoder_{};
  bool inks_ = false;
  std::vector<Marker> markers_;
  std::vector<unsigned char> row_;
  JSAMPROW rowStart_ = nullptr;
};

}  // namespace

Status WriteJpeg(const Picture& picture, int quality, Exif exif, host::Draft& draft) {
  const VImage& pixels = picture.pixels;
  if (std::max(pixels.width(), pixels.height()) > kLargestSide) return fault::ResultTooLarge();
  JpegWriter writer(draft);
  const JpegWriter::Kind kind{{pixels.width(), pixels.height()}, pixels.bands(), IsCmyk(pixels)};
  if (Status status = writer.Begin(kind, picture.tags, quality, exif); !status) return status;
  Status status = ForEachRows(pixels, [&](const RowBlock& block) { return writer.Rows(block); });
  return status ? writer.End() : status;
}

Status WriteJpeg(RowStream& rows, const PictureTags& tags, int quality, host::Draft& draft) {
  const RowFacts& facts = rows.Facts();
  if (std::max(facts.size.width, facts.size.height) > kLargestSide) return fault::ResultTooLarge();
  JpegWriter writer(draft);
  const JpegWriter::Kind kind{facts.size, facts.Channels(), facts.layout == RowLayout::Cmyk, facts.ycc};
  if (Status status = writer.Begin(kind, tags, quality, Exif::Drop); !status) return status;
  const auto size = static_cast<std::size_t>(facts.size.width) * static_cast<std::size_t>(facts.PixelBytes());
  std::vector<unsigned char> row(size);
  for (int y = 0; y < facts.size.height; ++y) {
    if (Status read = rows.ReadRow(row.data()); !read) return read;
    if (Status written = writer.Rows({y, 1, row.data(), size}); !written) return written;
  }
  return writer.End();
}

}  // namespace quillon::imaging
