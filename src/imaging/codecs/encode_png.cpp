// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <csetjmp>
#include <cstdint>
#include <string>
#include <vector>

#include <png.h>

#include "base/rounding.h"
#include "imaging/codecs/encode.h"
#include "imaging/faults.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

constexpr double kMetresPerInch = 0.0254;

int ColourTypeOf(const RowFacts& facts) {
  const int colours = facts.layout == RowLayout::Grey ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB;
  return facts.alpha ? colours | PNG_COLOR_MASK_ALPHA : colours;
}

// Writes PNG rows with libpng, which reports errors by longjmp. A jump skips destructors, so everything with one is a
// member and Guard bodies have no locals that need destruction.
class PngWriter {
 public:
  explicit PngWriter(host::Draft& draft) : draft_(draft) {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, OnError, [](png_structp, png_const_charp) {});
    if (png_) info_ = png_create_info_struct(png_);
  }
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  Status Write(RowStream& rows, const PictureTags& tags) {
    if (!info_) return fault::OutOfMemory();
    const RowFacts& facts = rows.Facts();
    exif_ = MinimalExif(tags.orientation, 0);
    if (!Guard([&] { Begin(facts, tags); })) return Failure();
    row_.resize(static_cast<std::size_t>(facts.size.width) * static_cast<unsigned>(facts.PixelBytes()));
    for (int y = 0; y < facts.size.height; ++y) {
      if (Status read = rows.ReadRow(row_.data()); !read) return read;
      if (!Guard([this] { png_write_row(png_, row_.data()); })) return Failure();
    }
    return Guard([this] { png_write_end(png_, info_); }) ? Status::Ok() : Failure();
  }

 private:
  static void OnError(png_structp png, png_const_charp) { png_longjmp(png, 1); }

  static void OnWrite(png_structp png, png_bytep data, std::size_t size) {
    PngWriter& self = *static_cast<PngWriter*>(png_get_io_ptr(png));
    self.result_ = self.draft_.Write(data, size);
    if (!self.result_) png_longjmp(png, 1);
  }

  // Runs work. Returns false if libpng jumped out of it.
  template <class Work>
  bool Guard(Work work) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    work();
    return true;
  }

  void Begin(const RowFacts& facts, const PictureTags& tags) {
    png_set_write_fn(png_, this, OnWrite, [](png_structp) {});
    // libpng then drops a profile that it considers invalid, instead of failing.
    png_set_benign_errors(png_, 1);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(facts.size.width), static_cast<png_uint_32>(facts.size.height),
                 facts.bits, ColourTypeOf(facts), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (tags.dpi > 0) {
      const auto perMetre = static_cast<png_uint_32>(base::R(tags.dpi / kMetresPerInch));
      png_set_pHYs(png_, info_, perMetre, perMetre, PNG_RESOLUTION_METER);
    }
    if (!tags.profile.empty()) {
      png_set_iCCP(png_, info_, "icc", PNG_COMPRESSION_TYPE_BASE,
                   reinterpret_cast<png_const_bytep>(tags.profile.data()),
                   static_cast<png_uint_32>(tags.profile.size()));
    }
    if (!exif_.empty()) {
      png_set_eXIf_1(png_, info_, static_cast<png_uint_32>(exif_.size()), reinterpret_cast<png_bytep>(exif_.data()));
    }
    png_write_info(png_, info_);
    if (facts.bits == 16) png_set_swap(png_);
  }

  Status Failure() const { return result_ ? fault::NotSaved() : result_; }

  host::Draft& draft_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  std::string exif_;
  std::vector<unsigned char> row_;
  Status result_;
};

}  // namespace

Status WritePng(RowStream& rows, const PictureTags& tags, host::Draft& draft) {
  return PngWriter(draft).Write(rows, tags);
}

}  // namespace quillon::imaging
