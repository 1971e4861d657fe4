// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <vector>

#include "imaging/codecs/encode.h"
#include "imaging/faults.h"
#include "imaging/tiff/tiff_handle.h"

namespace quillon::imaging {
namespace {

constexpr std::uint64_t kStripBytes = 256 << 10;
constexpr std::uint64_t kBigTiff = 4'000'000'000;

int PhotometricOf(RowLayout layout) {
  switch (layout) {
    case RowLayout::Grey:
      return PHOTOMETRIC_MINISBLACK;
    case RowLayout::Rgb:
      return PHOTOMETRIC_RGB;
    case RowLayout::Cmyk:
      break;
  }
  return PHOTOMETRIC_SEPARATED;
}

// Writes one page with LZW, strip by strip. The output may become a BigTIFF by its uncompressed size.
class TiffWriter {
 public:
  TiffWriter(host::Draft& draft, const RowFacts& facts) : facts_(facts), row_(RowBytes()) {
    stream_.draft = &draft;
    tiff_ = OpenTiffWriting(stream_, RowBytes() * static_cast<unsigned>(facts.size.height) > kBigTiff);
  }

  Status Write(RowStream& rows, const PictureTags& tags) {
    if (!tiff_ || !Describe(tags)) return Failure();
    for (int y = 0; y < facts_.size.height; ++y) {
      if (Status read = rows.ReadRow(row_.data()); !read) return read;
      if (TIFFWriteScanline(tiff_.get(), row_.data(), static_cast<std::uint32_t>(y)) != 1) return Failure();
    }
    return TIFFWriteDirectory(tiff_.get()) == 1 && stream_.failure ? Status::Ok() : Failure();
  }

 private:
  std::size_t RowBytes() const {
    return static_cast<std::size_t>(facts_.size.width) * static_cast<unsigned>(facts_.PixelBytes());
  }

  // Sets the tags of the page. Returns false if libtiff refuses one.
  bool Describe(const PictureTags& tags) {
    const double dpi = tags.dpi > 0 ? tags.dpi : kDefaultTiffDpi;
    const std::uint64_t rowsPerStrip =
        std::clamp<std::uint64_t>(kStripBytes / RowBytes(), 1, static_cast<std::uint64_t>(facts_.size.height));
    bool good = Set(TIFFTAG_IMAGEWIDTH, facts_.size.width) && Set(TIFFTAG_IMAGELENGTH, facts_.size.height) &&
                Set(TIFFTAG_COMPRESSION, COMPRESSION_LZW) && Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
                Set(TIFFTAG_BITSPERSAMPLE, facts_.bits) && Set(TIFFTAG_SAMPLESPERPIXEL, facts_.Channels()) &&
                Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
                Set(TIFFTAG_PHOTOMETRIC, PhotometricOf(facts_.layout)) &&
                Set(TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rowsPerStrip)) && Set(TIFFTAG_XRESOLUTION, dpi) &&
                Set(TIFFTAG_YRESOLUTION, dpi) && Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    if (tags.orientation != 1) good = good && Set(TIFFTAG_ORIENTATION, tags.orientation);
    if (facts_.layout == RowLayout::Cmyk) good = good && Set(TIFFTAG_INKSET, INKSET_CMYK);
    if (facts_.alpha) {
      const std::uint16_t kind = EXTRASAMPLE_UNASSALPHA;
      good = good && Set(TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    if (!tags.profile.empty()) {
      good = good && Set(TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(tags.profile.size()), tags.profile.data());
    }
    return good;
  }

  template <class... Values>
  bool Set(std::uint32_t tag, Values... values) {
    return TIFFSetField(tiff_.get(), tag, values...) == 1;
  }

  // Returns the error of the draft if it caused the failure, else NotSaved.
  Status Failure() const { return stream_.failure ? fault::NotSaved() : stream_.failure; }

  const RowFacts facts_;
  std::vector<unsigned char> row_;
  TiffStream stream_;
  TiffHandle tiff_;
};

}  // namespace

Status WriteTiff(RowStream& rows, const PictureTags& tags, host::Draft& draft) {
  return TiffWriter(draft, rows.Facts()).Write(rows, tags);
}

}  // namespace quillon::imaging
