// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/tiff/tiff_part.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/faults.h"
#include "imaging/limits.h"
#include "imaging/metadata/tiff_exif.h"
#include "imaging/pixels/geometry.h"
#include "imaging/tiff/tiff_handle.h"
#include "imaging/tiff/tiff_tags.h"

namespace quillon::imaging {
namespace {

constexpr std::uint64_t kLargestStrip = std::uint64_t{32} << 20;  // compressed bytes; libtiff holds a strip in memory

std::uint16_t Short(TIFF* tiff, std::uint32_t tag) { return Tag<std::uint16_t>(tiff, tag, 0); }

class TiffPart : public RowStream {
 public:
  explicit TiffPart(std::shared_ptr<Bytes> bytes) { stream_.bytes = std::move(bytes); }

  // Reads the header of the page.
  Status Open(const Limits& limits) {
    tiff_ = OpenTiffReading(stream_);
    if (!tiff_) return fault::DamagedPicture();
    page_ = {static_cast<int>(Tag<std::uint32_t>(tiff_.get(), TIFFTAG_IMAGEWIDTH, 0)),
             static_cast<int>(Tag<std::uint32_t>(tiff_.get(), TIFFTAG_IMAGELENGTH, 0))};
    if (!WithinLimits(page_.width, page_.height, limits)) return fault::SidesTooLarge();
    if (!ReadKind()) return fault::UnreadKind();
    ReadTiffTags(tiff_.get(), facts_);
    facts_.exif = ExifOfTiff(*stream_.bytes);
    if (!TIFFIsTiled(tiff_.get())) return Status::Ok();
    tile_ = {static_cast<int>(Tag<std::uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH, 0)),
             static_cast<int>(Tag<std::uint32_t>(tiff_.get(), TIFFTAG_TILELENGTH, 0))};
    tileBytes_ = TIFFTileSize(tiff_.get());
    return tile_.Empty() || tileBytes_ <= 0 ? fault::DamagedPicture() : Status::Ok();
  }

  // Selects the part and allocates the buffers.
  Status Choose(const std::optional<base::Rect>& rect, const Limits& limits) {
    const base::Rect whole{0, 0, page_.width, page_.height};
    rect_ = rect ? Intersection(*rect, whole) : whole;
    if (rect_.Empty()) return fault::EmptyRectangle();
    facts_.size = {rect_.width, rect_.height};
    pixelBytes_ = static_cast<std::size_t>(facts_.PixelBytes());
    if (tile_.Empty()) {
      // libtiff writes rows of its own size, so that has to match before it gets a buffer.
      const auto size = static_cast<std::size_t>(page_.width) * pixelBytes_;
      if (TIFFScanlineSize(tiff_.get()) != static_cast<tmsize_t>(size)) return fault::UnreadKind();
      const std::uint32_t strip = TIFFComputeStrip(tiff_.get(), static_cast<std::uint32_t>(rect_.top), 0);
      if (TIFFGetStrileByteCount(tiff_.get(), strip) > kLargestStrip) return fault::UnreadKind();
      row_.resize(size);
      return Status::Ok();
    }
    firstTile_ = rect_.left / tile_.width;
    const int lastTile = (rect_.left + rect_.width - 1) / tile_.width;
    const std::size_t across = static_cast<unsigned>(lastTile - firstTile_ + 1);
    const std::size_t size = static_cast<std::size_t>(tile_.width) * static_cast<unsigned>(tile_.height) * pixelBytes_;
    if (tileBytes_ != static_cast<tmsize_t>(size)) return fault::UnreadKind();
    if (static_cast<std::int64_t>(across * size) > limits.memory) return fault::OutOfMemory();
    tiles_.resize(across * size);
    return Status::Ok();
  }

  base::Size Page() const { return page_; }
  const RowFacts& Facts() const override { return facts_; }

  Status ReadRow(unsigned char* out) override {
    const int y = rect_.top + next_;
    ++next_;
    return tile_.Empty() ? ReadFromStrips(y, out) : ReadFromTiles(y, out);
  }

 private:
  // Sets the sample format of the rows. Returns false if the page has an unsupported one.
  bool ReadKind() {
    TIFF* tiff = tiff_.get();
    const std::uint16_t samples = Short(tiff, TIFFTAG_SAMPLESPERPIXEL);
    const std::uint16_t bits = Short(tiff, TIFFTAG_BITSPERSAMPLE);
    const std::uint16_t format = Short(tiff, TIFFTAG_SAMPLEFORMAT);
    const bool together = samples == 1 || Short(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG;
    if ((bits != 8 && bits != 16) || format != SAMPLEFORMAT_UINT || !together) return false;
    facts_.bits = bits;
    switch (Short(tiff, TIFFTAG_PHOTOMETRIC)) {
      case PHOTOMETRIC_MINISBLACK:
        facts_.layout = RowLayout::Grey;
        break;
      case PHOTOMETRIC_RGB:
        facts_.layout = RowLayout::Rgb;
        break;
      case PHOTOMETRIC_SEPARATED:
        if (Short(tiff, TIFFTAG_INKSET) != INKSET_CMYK) return false;
        facts_.layout = RowLayout::Cmyk;
        break;
      case PHOTOMETRIC_YCBCR:
        if (Short(tiff, TIFFTAG_COMPRESSION) != COMPRESSION_JPEG) return false;
        TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        facts_.layout = RowLayout::Rgb;
        break;
      default:
        return false;
    }
    const int more = samples - static_cast<int>(facts_.layout);
    facts_.alpha = more == 1;
    return more == 0 || (more == 1 && facts_.layout != RowLayout::Cmyk);
  }

  // Reads one row. The first row starts at its strip, since most compressions cannot be entered in the middle.
  Status ReadFromStrips(int y, unsigned char* out) {
    const auto strip = static_cast<std::int64_t>(Tag<std::uint32_t>(tiff_.get(), TIFFTAG_ROWSPERSTRIP, 1));
    for (int row = y == rect_.top && strip > 0 ? static_cast<int>(y - y % strip) : y; row <= y; ++row) {
      const auto at = static_cast<std::uint32_t>(row);
      if (TIFFReadScanline(tiff_.get(), row_.data(), at) != 1) return fault::DamagedPicture();
    }
    const std::size_t skip = static_cast<std::size_t>(rect_.left) * pixelBytes_;
    std::memcpy(out, row_.data() + skip, static_cast<std::size_t>(rect_.width) * pixelBytes_);
    return Status::Ok();
  }

  // Copies one row out of the tiles; reads the next row of tiles first when the row enters it.
  Status ReadFromTiles(int y, unsigned char* out) {
    if (y / tile_.height != tileRow_) {
      if (Status status = ReadTileRow(y / tile_.height); !status) return status;
    }
    const auto rowBytes = static_cast<std::size_t>(tile_.width) * pixelBytes_;
    const auto inTile = static_cast<std::size_t>(y % tile_.height) * rowBytes;
    for (int x = rect_.left; x < rect_.left + rect_.width;) {
      const int tile = x / tile_.width;
      const int end = std::min((tile + 1) * tile_.width, rect_.left + rect_.width);
      const unsigned char* from = tiles_.data() + static_cast<std::size_t>(tile - firstTile_) * TileSize() + inTile;
      const std::size_t size = static_cast<std::size_t>(end - x) * pixelBytes_;
      std::memcpy(out, from + static_cast<std::size_t>(x % tile_.width) * pixelBytes_, size);
      out += size;
      x = end;
    }
    return Status::Ok();
  }

  // Decodes the tiles of one row of tiles that the part overlaps.
  Status ReadTileRow(int row) {
    tileRow_ = row;
    for (std::size_t i = 0; i * TileSize() < tiles_.size(); ++i) {
      const auto x = static_cast<std::uint32_t>((firstTile_ + static_cast<int>(i)) * tile_.width);
      const auto y = static_cast<std::uint32_t>(row * tile_.height);
      if (TIFFReadTile(tiff_.get(), tiles_.data() + i * TileSize(), x, y, 0, 0) != tileBytes_) {
        return fault::DamagedPicture();
      }
    }
    return Status::Ok();
  }

  std::size_t TileSize() const { return static_cast<std::size_t>(tileBytes_); }

  TiffStream stream_;
  TiffHandle tiff_;
  RowFacts facts_;
  std::size_t pixelBytes_ = 0;
  base::Size page_;
  base::Rect rect_;
  int next_ = 0;
  std::vector<unsigned char> row_;  // one row of the page, for strips
  base::Size tile_;                 // empty if the page has strips
  tmsize_t tileBytes_ = 0;
  int firstTile_ = 0;  // first tile column of the part
  int tileRow_ = -1;   // row of tiles that tiles_ holds
  std::vector<unsigned char> tiles_;
};

}  // namespace

Status OpenTiffPart(std::shared_ptr<Bytes> bytes, const std::optional<base::Rect>& rect, const Limits& limits,
                    std::shared_ptr<RowStream>& out, base::Size& original) {
  auto part = std::make_shared<TiffPart>(std::move(bytes));
  if (Status status = part->Open(limits); !status) return status;
  original = part->Page();
  if (Status status = part->Choose(rect, limits); !status) return status;
  out = std::move(part);
  return Status::Ok();
}

}  // namespace quillon::imaging
