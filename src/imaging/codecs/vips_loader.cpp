// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/vips_loader.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "imaging/limits.h"
#include "imaging/metadata/tiff_exif.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/picture.h"
#include "imaging/tiff/tiff_rgba.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;
using vips::VImage;

constexpr double kMillimetres = 25.4;
constexpr std::string_view kExifPrefix = "Exif\0\0"sv;
constexpr int kStrip = 16;  // rows that the loaders decode at a time

// Lets a loader read from an open file. libvips parses options out of file names, so it never gets one.
struct SourceReader {
  std::shared_ptr<Bytes> bytes;
  std::uint64_t at = 0;
};

gint64 OnRead(VipsSourceCustom*, void* buffer, gint64 size, SourceReader* reader) {
  const std::uint64_t left = reader->bytes->Size() - std::min(reader->at, reader->bytes->Size());
  const std::uint64_t count = std::min<std::uint64_t>(left, static_cast<std::uint64_t>(std::max<gint64>(size, 0)));
  if (count == 0) return 0;
  if (!reader->bytes->ReadAt(reader->at, buffer, count)) return -1;
  reader->at += count;
  return static_cast<gint64>(count);
}

gint64 OnSeek(VipsSourceCustom*, gint64 offset, int whence, SourceReader* reader) {
  const auto base = static_cast<gint64>(whence == SEEK_SET   ? 0
                                        : whence == SEEK_CUR ? reader->at
                                                             : reader->bytes->Size());
  if (offset < -base) return -1;
  reader->at = static_cast<std::uint64_t>(base + offset);
  return base + offset;
}

vips::VSource SourceOf(std::shared_ptr<Bytes> bytes) {
  VipsSourceCustom* custom = vips_source_custom_new();
  auto* reader = new SourceReader{std::move(bytes), 0};
  g_object_set_data_full(G_OBJECT(custom), "quillon-bytes", reader,
                         [](gpointer data) { delete static_cast<SourceReader*>(data); });
  g_signal_connect(custom, "read", G_CALLBACK(OnRead), reader);
  g_signal_connect(custom, "seek", G_CALLBACK(OnSeek), reader);
  return vips::VSource(VIPS_SOURCE(custom));
}

VImage LoadWithVips(Format format, std::shared_ptr<Bytes> bytes, int page) {
  const vips::VSource source = SourceOf(std::move(bytes));
  vips::VOption* options = VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_ERROR);
  switch (format) {
    case Format::Png:
      return VImage::pngload_source(source, options);
    case Format::Gif:
      return VImage::gifload_source(source, options);
    default:
      return VImage::tiffload_source(source, options->set("page", page));
  }
}

std::string BlobOf(const VImage& image, const char* field) {
  if (image.get_typeof(field) != VIPS_TYPE_BLOB) return {};
  std::size_t size = 0;
  const void* data = image.get_blob(field, &size);
  return {static_cast<const char*>(data), size};
}

RowFacts FactsOf(const VImage& loaded, const VImage& pixels) {
  RowFacts facts;
  facts.size = {pixels.width(), pixels.height()};
  facts.layout = IsCmyk(pixels) ? RowLayout::Cmyk : IsGrey(pixels) ? RowLayout::Grey : RowLayout::Rgb;
  facts.alpha = HasAlpha(pixels);
  facts.bits = pixels.format() == VIPS_FORMAT_USHORT ? 16 : 8;
  facts.profile = BlobOf(loaded, VIPS_META_ICC_NAME);
  facts.exif = BlobOf(loaded, VIPS_META_EXIF_NAME);
  if (facts.exif.starts_with(kExifPrefix)) facts.exif.erase(0, kExifPrefix.size());
  const int orientation = vips_image_get_orientation(loaded.get_image());
  if (orientation >= 1 && orientation <= 8) facts.orientation = orientation;
  // libvips reports 1 pixel per millimetre if the file has no resolution.
  if (loaded.xres() != 1.0) facts.dpi = static_cast<int>(std::lround(loaded.xres() * kMillimetres));
  return facts;
}

// Frames of a gif lie on a canvas that is held whole, and an interlaced png is decoded at once.
std::int64_t BytesHeld(Format format, Bytes& bytes, const VImage& loaded) {
  constexpr std::uint64_t kInterlace = 28;  // offset of the byte that says so
  constexpr int kCanvasPixel = 4;
  const std::int64_t pixels = std::int64_t{loaded.width()} * loaded.height();
  if (format == Format::Gif) return pixels * kCanvasPixel;
  unsigned char interlace = 0;
  const bool whole = format == Format::Png && bytes.ReadAt(kInterlace, &interlace, 1) && interlace != 0;
  return whole ? pixels * static_cast<std::int64_t>(VIPS_IMAGE_SIZEOF_PEL(loaded.get_image())) : 0;
}

// Reads the loader strip by strip. This is not part of the pipeline that uses the rows, since a pipeline drops its
// caches when it ends, and the loader could not continue for the next one.
class VipsRows : public RowStream {
 public:
  VipsRows(const VImage& loaded, const VImage& pixels) : pixels_(pixels), facts_(FactsOf(loaded, pixels)) {}

  const RowFacts& Facts() const override { return facts_; }
  void SetExif(std::string block) { facts_.exif = std::move(block); }
  void SetHeld(std::int64_t bytes) { facts_.held = bytes; }

  Status ReadRow(unsigned char* out) override {
    const std::size_t size = static_cast<std::size_t>(facts_.size.width) * static_cast<unsigned>(facts_.PixelBytes());
    if (next_ % kStrip == 0) {
      Status status = Guarded(fault::DamagedPicture(), [&] { return ReadStrip(size); });
      if (!status) return status;
    }
    std::memcpy(out, strip_.data() + size * static_cast<unsigned>(next_ % kStrip), size);
    ++next_;
    return Status::Ok();
  }

 private:
  Status ReadStrip(std::size_t size) {
    const int count = std::min(kStrip, facts_.size.height - next_);
    const vips::VRegion region = pixels_.region(0, next_, facts_.size.width, count);
    strip_.resize(size * static_cast<unsigned>(count));
    for (int y = 0; y < count; ++y) {
      std::memcpy(strip_.data() + size * static_cast<unsigned>(y), region.addr(0, next_ + y), size);
    }
    return Status::Ok();
  }

  VImage pixels_;
  RowFacts facts_;
  std::vector<unsigned char> strip_;
  int next_ = 0;
};

Status CheckLength(Format format, Bytes& bytes, base::Size size, int page) {
  const bool holds = page > 0 || CanHold(format, bytes, size);
  return holds && IsComplete(format, bytes) ? Status::Ok() : fault::DamagedPicture();
}

}  // namespace

Status OpenVipsRows(Format format, const std::shared_ptr<Bytes>& bytes, const Limits& limits,
                    std::shared_ptr<RowStream>& out, int page) {
  if (format == Format::Tiff) {
    if (Status status = OpenTiffRgba(bytes, page, limits, out); !status) return status;
    if (out) return CheckLength(format, *bytes, out->Facts().size, page);
  }
  const VImage loaded = LoadWithVips(format, bytes, page);
  const base::Size size{loaded.width(), loaded.height()};
  if (!WithinLimits(size.width, size.height, limits)) return fault::SidesTooLarge();
  if (Status status = CheckLength(format, *bytes, size, page); !status) return status;
  auto rows = std::make_shared<VipsRows>(loaded, StandardPixels(loaded));
  rows->SetHeld(BytesHeld(format, *bytes, loaded));
  if (format == Format::Tiff && page == 0) rows->SetExif(ExifOfTiff(*bytes));
  out = std::move(rows);
  return Status::Ok();
}

}  // namespace quillon::imaging
