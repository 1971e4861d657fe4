// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/tiff/tiff_rgba.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "imaging/faults.h"
#include "imaging/metadata/tiff_exif.h"
#include "imaging/tiff/tiff_handle.h"
#include "imaging/tiff/tiff_tags.h"

namespace quillon::imaging {
namespace {

constexpr int kRgbaBytes = 4;
constexpr std::size_t kMessageSize = 1024;  // of libtiff

class RgbaRows : public RowStream {
 public:
  explicit RgbaRows(std::shared_ptr<Bytes> bytes) { stream_.bytes = std::move(bytes); }
  ~RgbaRows() override {
    if (begun_) TIFFRGBAImageEnd(&image_);
  }
  RgbaRows(const RgbaRows&) = delete;
  RgbaRows& operator=(const RgbaRows&) = delete;

  // Returns false if the page need not be converted.
  bool OpenPage(int page) {
    tiff_ = OpenTiffReading(stream_);
    if (!tiff_ || (page > 0 && TIFFSetDirectory(tiff_.get(), static_cast<tdir_t>(page)) != 1)) return false;
    return NeedsConversion();
  }

  Status Begin(const Limits& limits, bool firstPage) {
    TIFF* tiff = tiff_.get();
    const auto width = Tag<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0);
    const auto height = Tag<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0);
    if (!WithinLimits(width, height, limits)) return fault::SidesTooLarge();
    facts_.size = {static_cast<int>(width), static_cast<int>(height)};
    ReadTiffTags(tiff, facts_);
    facts_.profile.clear();  // libtiff converts to RGB without it
    if (firstPage) facts_.exif = ExifOfTiff(*stream_.bytes);
    const auto rows = Tag<std::uint32_t>(tiff, TIFFIsTiled(tiff) ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, 1);
    batch_ = static_cast<int>(std::clamp<std::uint32_t>(rows, 1, height));
    if (!FitsMemory(width, batch_, kRgbaBytes, limits)) return fault::OutOfMemory();
    return BeginConversion();
  }

  const RowFacts& Facts() const override { return facts_; }

  Status ReadRow(unsigned char* out) override {
    if (next_ % batch_ == 0) {
      if (Status status = ReadBatch(); !status) return status;
    }
    const auto width = static_cast<std::size_t>(facts_.size.width);
    const std::uint32_t* row = raster_.data() + static_cast<std::size_t>(next_ % batch_) * width;
    for (std::size_t x = 0; x < width; ++x, out += facts_.Channels()) Convert(row[x], out);
    ++next_;
    return Status::Ok();
  }

 private:
  bool NeedsConversion() const {
    TIFF* tiff = tiff_.get();
    const auto compression = Tag<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    const auto samples = Tag<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    const auto bits = Tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    const bool separate = Tag<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, 1) == PLANARCONFIG_SEPARATE;
    const bool ycc = Tag<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, 0) == PHOTOMETRIC_YCBCR;
    if (bits % 8 != 0) return samples > 1 || bits > 8;
    return compression == COMPRESSION_OJPEG || (ycc && compression != COMPRESSION_JPEG) ||
           (separate && TIFFIsTiled(tiff) != 0);
  }

  Status BeginConversion() {
    std::array<char, kMessageSize> message{};
    TIFF* tiff = tiff_.get();
    begun_ = TIFFRGBAImageOK(tiff, message.data()) == 1 && TIFFRGBAImageBegin(&image_, tiff, 1, message.data()) == 1;
    if (!begun_) {
      const auto bits = std::to_string(Tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1));
      return {host::Problem::Unsupported, "不支持的格式：每个通道 " + bits + " 位的 TIFF"};
    }
    image_.req_orientation = image_.orientation;
    facts_.alpha = image_.alpha != 0;
    facts_.held = static_cast<std::int64_t>(RasterSize()) * kRgbaBytes;
    return Status::Ok();
  }

  std::size_t RasterSize() const { return static_cast<std::size_t>(facts_.size.width) * static_cast<unsigned>(batch_); }

  // Allocates at the first batch: until then the caller checks whether the file can hold the picture at all.

  Status ReadBatch() {
    raster_.resize(RasterSize());
    const int rows = std::min(batch_, facts_.size.height - next_);
    image_.row_offset = next_;
    const bool read = TIFFRGBAImageGet(&image_, raster_.data(), static_cast<std::uint32_t>(facts_.size.width),
                                       static_cast<std::uint32_t>(rows)) == 1;
    return read ? Status::Ok() : fault::DamagedPicture();
  }

  // libtiff multiplies the colours by alpha.
  void Convert(std::uint32_t pixel, unsigned char* out) const {
    const std::uint32_t alpha = TIFFGetA(pixel);
    const auto colour = [&](std::uint32_t value) {
      const bool whole = !facts_.alpha || alpha == 0;
      return static_cast<unsigned char>(whole ? value : std::min(255u, (value * 255 + alpha / 2) / alpha));
    };
    out[0] = colour(TIFFGetR(pixel));
    out[1] = colour(TIFFGetG(pixel));
    out[2] = colour(TIFFGetB(pixel));
    if (facts_.alpha) out[3] = static_cast<unsigned char>(alpha);
  }

  TiffStream stream_;
  TiffHandle tiff_;
  TIFFRGBAImage image_{};
  bool begun_ = false;
  RowFacts facts_;
  int batch_ = 1;  // rows that are converted at once
  int next_ = 0;
  std::vector<std::uint32_t> raster_;
};

}  // namespace

Status OpenTiffRgba(const std::shared_ptr<Bytes>& bytes, int page, const Limits& limits,
                    std::shared_ptr<RowStream>& out) {
  auto rows = std::make_shared<RgbaRows>(bytes);
  if (!rows->OpenPage(page)) return Status::Ok();
  Status status = rows->Begin(limits, page == 0);
  if (status) out = std::move(rows);
  return status;
}

}  // namespace quillon::imaging
