// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/tiff_pages.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/codecs/open_picture.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"
#include "imaging/pixels/picture.h"
#include "imaging/tiff/tiff_handle.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr int kDefaultDpi = 96;
constexpr int kBlackLevel = 128;
constexpr std::uint64_t kStripBytes = 256 << 10;
constexpr std::uint64_t kJpegRows = 16;  // a JPEG strip has to consist of whole blocks
constexpr std::uint64_t kBigTiff = 4'000'000'000;

bool IsFax(TiffCompression compression) {
  return compression == TiffCompression::Group3 || compression == TiffCompression::Group4;
}

std::uint16_t TagOf(TiffCompression compression) {
  switch (compression) {
    case TiffCompression::None:
      return COMPRESSION_NONE;
    case TiffCompression::Lzw:
      return COMPRESSION_LZW;
    case TiffCompression::PackBits:
      return COMPRESSION_PACKBITS;
    case TiffCompression::Group3:
      return COMPRESSION_CCITTFAX3;
    case TiffCompression::Group4:
      return COMPRESSION_CCITTFAX4;
    case TiffCompression::Jpeg:
      break;
  }
  return COMPRESSION_JPEG;
}

// Converts a picture to the samples that the compression stores; fax compression gets one band of 0 and 255.
Picture Stored(const Picture& picture, TiffCompression compression) {
  Picture stored = picture;
  if (!IsFax(compression)) {
    stored.pixels = Flattened(picture.pixels, base::kWhite);
    if (compression == TiffCompression::Jpeg) stored.pixels = EightBit(stored.pixels);
    if (!ProfileFits(stored.tags.profile, stored.pixels)) stored.tags.profile.clear();
    return stored;
  }
  stored = GreyPicture(picture);
  stored.pixels = EightBit(Flattened(stored.pixels, base::kWhite)) >= kBlackLevel;
  stored.tags.profile.clear();
  return stored;
}

std::uint64_t RowBytes(const VImage& pixels, bool fax) {
  return fax ? (static_cast<std::uint64_t>(pixels.width()) + 7) / 8 : VIPS_IMAGE_SIZEOF_LINE(pixels.get_image());
}

// Packs eight pixels of 0 or 255 into a byte; a set bit is black.
void PackBlack(const unsigned char* row, int width, unsigned char* out) {
  std::memset(out, 0, (static_cast<std::size_t>(width) + 7) / 8);
  for (int x = 0; x < width; ++x) {
    if (row[x] == 0) out[x / 8] = static_cast<unsigned char>(out[x / 8] | (0x80 >> (x % 8)));
  }
}

// Writes one page strip by strip.
class PageWriter {
 public:
  PageWriter(TIFF* tiff, const Picture& stored, const TiffPageOptions& options)
      : tiff_(tiff),
        stored_(stored),
        options_(options),
        fax_(IsFax(options.compression)),
        rowBytes_(RowBytes(stored.pixels, fax_)) {
    const std::uint64_t rows = std::max<std::uint64_t>(1, kStripBytes / rowBytes_);
    rowsPerStrip_ =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(rows, static_cast<std::uint64_t>(stored.pixels.height())));
    if (IsJpeg()) rowsPerStrip_ = static_cast<std::uint32_t>((rows + kJpegRows - 1) / kJpegRows * kJpegRows);
  }

  // Sets the tags of page number, counted from 0. Returns false if libtiff refuses one.
  bool Describe(int dpi, int number) {
    const VImage& pixels = stored_.pixels;
    const TiffCompression compression = options_.compression;
    const int bits = fax_ ? 1 : pixels.format() == VIPS_FORMAT_USHORT ? 16 : 8;
    bool good = Set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(pixels.width())) &&
                Set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(pixels.height())) &&
                Set(TIFFTAG_COMPRESSION, TagOf(compression)) && Set(TIFFTAG_BITSPERSAMPLE, bits) &&
                Set(TIFFTAG_SAMPLESPERPIXEL, pixels.bands()) && Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
                Set(TIFFTAG_PHOTOMETRIC, Photometric()) && Set(TIFFTAG_ROWSPERSTRIP, rowsPerStrip_) &&
                Set(TIFFTAG_XRESOLUTION, static_cast<double>(dpi)) &&
                Set(TIFFTAG_YRESOLUTION, static_cast<double>(dpi)) && Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
                Set(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE) && Set(TIFFTAG_PAGENUMBER, number, 0) &&
                Set(TIFFTAG_ORIENTATION, stored_.tags.orientation);
    if (compression == TiffCompression::Lzw) good = good && Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
    if (IsJpeg()) {
      good = good && Set(TIFFTAG_JPEGQUALITY, std::clamp(options_.quality, 1, 100)) &&
             Set(TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    }
    if (IsCmyk(pixels)) good = good && Set(TIFFTAG_INKSET, INKSET_CMYK);
    const std::string& profile = stored_.tags.profile;
    if (!profile.empty()) {
      good = good && Set(TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.data());
    }
    return good;
  }

  // Appends rows to the current strip and writes it when it is full.
  Status Rows(const RowBlock& block) {
    for (int y = 0; y < block.count; ++y) {
      const unsigned char* row = block.first + static_cast<std::size_t>(y) * block.step;
      strip_.resize(strip_.size() + rowBytes_);
      unsigned char* to = strip_.data() + strip_.size() - rowBytes_;
      if (fax_) {
        PackBlack(row, stored_.pixels.width(), to);
      } else {
        std::memcpy(to, row, rowBytes_);
      }
      if (strip_.size() == rowsPerStrip_ * rowBytes_ && !Flush()) return fault::NotSaved();
    }
    return Status::Ok();
  }

  // Writes the current strip, which may be shorter than the others if it is the last.
  bool Flush() {
    if (strip_.empty()) return true;
    const bool good = TIFFWriteEncodedStrip(tiff_, next_++, strip_.data(), static_cast<tmsize_t>(strip_.size())) >= 0;
    strip_.clear();
    broken_ = broken_ || !good;
    return good;
  }

  // Returns true after a strip could not be written; libtiff may still hold a part of it.
  bool Broken() const { return broken_; }

 private:
  template <class... Values>
  bool Set(std::uint32_t tag, Values... values) {
    return TIFFSetField(tiff_, tag, values...) == 1;
  }

  bool IsJpeg() const { return options_.compression == TiffCompression::Jpeg; }

  int Photometric() const {
    if (fax_) return PHOTOMETRIC_MINISWHITE;
    if (IsCmyk(stored_.pixels)) return PHOTOMETRIC_SEPARATED;
    if (IsGrey(stored_.pixels)) return PHOTOMETRIC_MINISBLACK;
    return IsJpeg() ? PHOTOMETRIC_YCBCR : PHOTOMETRIC_RGB;
  }

  TIFF* tiff_;
  const Picture& stored_;
  const TiffPageOptions& options_;
  bool fax_;
  std::uint64_t rowBytes_;
  std::uint32_t rowsPerStrip_ = 1;
  std::uint32_t next_ = 0;
  std::vector<unsigned char> strip_;
  bool broken_ = false;
};

Status OpenBytes(const host::Files& files, const std::string& path, TiffStream& stream) {
  const auto facts = files.Stat(path);
  if (facts && facts->kind != host::FileKind::File) return fault::NotAFile();
  std::shared_ptr<FileBytes> bytes;
  Status status = FileBytes::Open(path, bytes);
  stream.bytes = std::move(bytes);
  return status;
}

// Returns the number of pages, or -1 if the stream is not a TIFF.
int CountPages(TiffStream& stream) {
  const TiffHandle tiff = OpenTiffReading(stream);
  if (!tiff) return -1;
  return static_cast<int>(std::min<tdir_t>(TIFFNumberOfDirectories(tiff.get()), INT32_MAX));
}

}  // namespace

Status CountTiffPages(const host::Files& files, const std::string& path, int& pages) {
  TiffStream stream;
  if (Status status = OpenBytes(files, path, stream); !status) return status;
  if (stream.bytes->Size() == 0) return fault::EmptyFile();
  const int found = CountPages(stream);
  if (found < 0) return fault::NotAPicture();
  if (found == 0) return fault::DamagedPicture();
  pages = found;
  return Status::Ok();
}

Status LoadTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits, Image& out) {
  OpenedPicture opened;
  auto data = std::make_unique<ImageData>();
  const Status status = Guarded(fault::DamagedPicture(), [&] {
    if (Status open = OpenTiffPage(files, path, page, limits, opened); !open) return open;
    if (Status read = ReadWhole(opened, data->picture); !read) return read;
    VImage& pixels = data->picture.pixels;
    const auto pixelBytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(pixels.get_image()));
    if (!FitsMemory(pixels.width(), pixels.height(), pixelBytes, limits)) return fault::OutOfMemory();
    pixels = pixels.copy_memory();
    return Status::Ok();
  });
  if (!status) return ReadStatus(opened, status);
  out = Image(std::move(data));
  return status;
}

struct TiffPages::Parts {
  host::Draft& draft;
  int expectedPages;
  Limits limits;
  TiffStream stream = {};
  TiffHandle tiff = {};
  int count = 0;

  // Opens the output when the first page is known, since its size decides about BigTIFF.
  Status Open(const Picture& first, TiffCompression compression);
  Status Add(const Picture& picture, const TiffPageOptions& options);
  Status AddPage(const host::Files& files, const std::string& path, int page, const TiffPageOptions& options);
  Status Failed() const { return stream.failure ? fault::NotSaved() : stream.failure; }
};

Status TiffPages::Parts::Open(const Picture& first, TiffCompression compression) {
  if (tiff) return Status::Ok();
  const std::uint64_t page =
      RowBytes(first.pixels, IsFax(compression)) * static_cast<std::uint64_t>(first.pixels.height());
  stream.draft = &draft;
  tiff = OpenTiffWriting(stream, page > kBigTiff / static_cast<std::uint64_t>(std::max(expectedPages, 1)));
  return tiff ? Status::Ok() : Failed();
}

Status TiffPages::Parts::Add(const Picture& picture, const TiffPageOptions& options) {
  const Picture stored = Stored(picture, options.compression);
  if (Status status = Open(stored, options.compression); !status) return status;
  PageWriter writer(tiff.get(), stored, options);
  const int own = picture.tags.dpi > 0 ? picture.tags.dpi : kDefaultDpi;
  Status status = Status::Ok();
  try {
    if (!writer.Describe(options.dpi > 0 ? options.dpi : own, count)) status = Failed();
    if (status) status = ForEachRows(stored.pixels, [&](const RowBlock& block) { return writer.Rows(block); });
    if (status && !writer.Flush()) status = Failed();
    if (status && TIFFWriteDirectory(tiff.get()) != 1) status = Failed();
  } catch (const vips::VError&) {
    vips_error_clear();
    status = fault::DamagedPicture();
  }
  if (status) {
    ++count;
    return status;
  }
  if (writer.Broken() && stream.failure) stream.failure = fault::NotSaved();
  if (!stream.failure) return stream.failure;
  // The tags set so far must not become a page. Writing the directory and unlinking it releases all of its state;
  // freeing the directory alone would keep the buffers of the compression.
  if (TIFFWriteDirectory(tiff.get()) == 1) TIFFUnlinkDirectory(tiff.get(), static_cast<tdir_t>(count + 1));
  return stream.failure ? status : stream.failure;
}

Status TiffPages::Parts::AddPage(const host::Files& files, const std::string& path, int page,
                                 const TiffPageOptions& options) {
  OpenedPicture opened;
  const Status status = Guarded(fault::DamagedPicture(), [&] {
    Status open =
        page < 0 ? OpenPicture(files, path, limits, {}, opened) : OpenTiffPage(files, path, page, limits, opened);
    if (!open) return open;
    Picture picture;
    if (Status read = ReadWhole(opened, picture); !read) return read;
    return Add(picture, options);
  });
  return ReadStatus(opened, status);
}

TiffPages::TiffPages(host::Draft& draft, int expectedPages, const Limits& limits)
    : parts_(new Parts{draft, expectedPages, limits}) {}

// Closing an unfinished TIFF makes libtiff write, but the draft may no longer exist. So writes are refused from here
// on.
TiffPages::~TiffPages() {
  parts_->stream.draft = nullptr;
  parts_->stream.bytes = std::make_shared<MemoryBytes>("");
}

Status TiffPages::AddFile(const host::Files& files, const std::string& path, const TiffPageOptions& options) {
  int pages = 0;
  if (!CountTiffPages(files, path, pages)) return parts_->AddPage(files, path, -1, options);
  for (int page = 0; page < pages; ++page) {
    if (Status status = parts_->AddPage(files, path, page, options); !status) return status;
  }
  return Status::Ok();
}

Status TiffPages::Add(const Image& image, const TiffPageOptions& options) {
  return OnPicture(image, [&](const Picture& picture) { return parts_->Add(picture, options); });
}

int TiffPages::Count() const { return parts_->count; }

Status TiffPages::Finish() {
  if (parts_->count == 0) return fault::NoImage();
  const bool flushed = TIFFFlush(parts_->tiff.get()) == 1;
  parts_->tiff.reset();
  if (!flushed || !parts_->stream.failure) return parts_->Failed();
  parts_->stream.at = 0;
  return CountPages(parts_->stream) == parts_->count ? Status::Ok() : fault::NotSaved();
}

}  // namespace quillon::imaging
