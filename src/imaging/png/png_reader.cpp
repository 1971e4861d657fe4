// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png/png_reader.h"

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <string>
#include <utility>

#include "imaging/faults.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/png/png_chunks.h"

namespace quillon::imaging {
namespace {

using host::Status;
using vips::VImage;

constexpr std::size_t kBlock = std::size_t{64} << 10;
constexpr int kGreys = 256;
constexpr std::size_t kRgba = 4;  // bytes of a pixel

using Greys = std::array<unsigned char, kGreys>;

// Stores what a screen shows of each grey of a profile. A profile that cannot be used leaves the greys as they are.
void ShowGreys(const std::string& profile, Greys& greys) {
  const Status shown = Guarded(fault::DamagedPicture(), [&] {
    Picture ramp;
    ramp.pixels = VImage::new_from_memory(greys.data(), greys.size(), kGreys, 1, 1, VIPS_FORMAT_UCHAR)
                      .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W));
    ramp.tags.profile = profile;
    const VImage pixels = Displayed(ramp).pixels.copy_memory();
    if (VIPS_IMAGE_SIZEOF_IMAGE(pixels.get_image()) != greys.size()) return fault::DamagedPicture();
    std::memcpy(greys.data(), pixels.data(), greys.size());
    return Status::Ok();
  });
  static_cast<void>(shown);
}

}  // namespace

// libpng reports errors by longjmp. A jump skips destructors, so everything with one is a member, and what Guard runs
// has no locals that need destruction.
PngReader::PngReader(std::shared_ptr<Bytes> bytes, const Limits& limits) : bytes_(std::move(bytes)), limits_(limits) {
  const auto onError = [](png_structp png, png_const_charp) { png_longjmp(png, 1); };
  png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, [](png_structp, png_const_charp) {});
  if (png_) info_ = png_create_info_struct(png_);
  block_.reserve(kBlock);  // nothing may throw through libpng later
}

PngReader::~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }

template <class Work>
bool PngReader::Guard(Work work) {
  if (setjmp(png_jmpbuf(png_)) != 0) return false;
  work();
  return true;
}

void PngReader::OnRead(png_structp png, png_bytep out, std::size_t size) {
  PngReader& self = *static_cast<PngReader*>(png_get_io_ptr(png));
  if (!self.ReadBytes(out, size)) png_longjmp(png, 1);
}

bool PngReader::ReadBytes(png_bytep out, std::size_t size) {
  while (size > 0) {
    if (at_ >= blockAt_ + block_.size()) {
      if (at_ >= bytes_->Size()) return false;
      block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, bytes_->Size() - at_)));
      blockAt_ = at_;
      if (!bytes_->ReadAt(at_, block_.data(), block_.size())) return false;
    }
    const auto from = static_cast<std::size_t>(at_ - blockAt_);
    const std::size_t count = std::min(size, block_.size() - from);
    std::copy_n(block_.begin() + static_cast<std::ptrdiff_t>(from), count, out);
    at_ += count;
    out += count;
    size -= count;
  }
  return true;
}

// Chunks that the result does not need are skipped without storing them, as a file may hold any amount of text. Their
// checksums count all the same.
void PngReader::ReadHead() {
  static constexpr std::array<png_byte, 15> kUsed = {'i', 'C', 'C', 'P', 0,   'p', 'H', 'Y',
                                                     's', 0,   'e', 'X', 'I', 'f', 0};
  png_set_read_fn(png_, this, OnRead);
  png_set_crc_action(png_, PNG_CRC_ERROR_QUIT, PNG_CRC_ERROR_QUIT);
  png_set_user_limits(png_, static_cast<png_uint_32>(limits_.side), static_cast<png_uint_32>(limits_.side));
  png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
  png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_AS_DEFAULT, kUsed.data(), 3);
  png_read_info(png_, info_);
}

// Lets libpng deliver 8 bits a sample, with a key colour as alpha. Indices stay, because libpng accepts those that the
// palette lacks.
void PngReader::ReadColours() {
  if (png_get_color_type(png_, info_) == PNG_COLOR_TYPE_PALETTE) {
    png_set_packing(png_);
  } else {
    png_set_expand(png_);
    png_set_strip_16(png_);
  }
  passes_ = png_set_interlace_handling(png_);
  png_read_update_info(png_, info_);
  switch (png_get_color_type(png_, info_)) {
    case PNG_COLOR_TYPE_PALETTE:
      kind_ = Kind::Palette;
      break;
    case PNG_COLOR_TYPE_GRAY:
      kind_ = Kind::Grey;
      break;
    case PNG_COLOR_TYPE_GRAY_ALPHA:
      kind_ = Kind::GreyAlpha;
      break;
    case PNG_COLOR_TYPE_RGB:
      kind_ = Kind::Rgb;
      break;
    default:
      kind_ = Kind::Rgba;
      break;
  }
  rowBytes_ = png_get_rowbytes(png_, info_);
}

void PngReader::ReadTags() {
  png_colorp colours = nullptr;
  if (kind_ == Kind::Palette && png_get_PLTE(png_, info_, &colours, &colours_) != 0) {
    png_bytep alphas = nullptr;
    int count = 0;
    png_get_tRNS(png_, info_, &alphas, &count, nullptr);
    for (int i = 0; i < colours_; ++i) {
      const unsigned char alpha = i < count ? alphas[i] : 255;
      palette_[static_cast<std::size_t>(i)] = {colours[i].red, colours[i].green, colours[i].blue, alpha};
    }
  }
  int unit = 0;
  if (png_get_pHYs(png_, info_, &density_.across, &density_.down, &unit) != 0) {
    density_.metre = unit == PNG_RESOLUTION_METER;
  }
  png_charp name = nullptr;
  png_bytep profile = nullptr;
  png_uint_32 size = 0;
  int method = 0;
  if (png_get_iCCP(png_, info_, &name, &method, &profile, &size) != 0) {
    facts_.profile.assign(reinterpret_cast<const char*>(profile), size);
  }
  png_bytep exif = nullptr;
  if (png_get_eXIf_1(png_, info_, &size, &exif) != 0) {
    facts_.orientation = ReadExif({reinterpret_cast<const char*>(exif), size}).orientation;
  }
}

// Grey pixels become RGB, for which a profile for grey is of no use.
void PngReader::ApplyProfile() {
  if (kind_ != Kind::Grey && kind_ != Kind::GreyAlpha) {
    if (!ProfileFits(facts_.profile, RowLayout::Rgb)) facts_.profile.clear();
    return;
  }
  for (int i = 0; i < kGreys; ++i) shown_[static_cast<std::size_t>(i)] = static_cast<unsigned char>(i);
  const std::string profile = std::exchange(facts_.profile, {});
  if (ProfileFits(profile, RowLayout::Grey)) ShowGreys(profile, shown_);
}

Status PngReader::Open() {
  if (!info_) return fault::OutOfMemory();
  constexpr std::uint64_t kSides = 16;  // offset of width and height
  std::array<unsigned char, 8> sides{};
  if (!bytes_->ReadAt(kSides, sides.data(), sides.size())) return fault::DamagedPicture();
  const std::int64_t width = png_get_uint_32(sides.data());
  const std::int64_t height = png_get_uint_32(&sides[4]);
  if (width > 0 && height > 0 && !WithinLimits(width, height, limits_)) return fault::SidesTooLarge();
  if (!Guard([this] { ReadHead(); })) return fault::DamagedPicture();
  facts_.size = {static_cast<int>(width), static_cast<int>(height)};
  if (!CanPngHold(*bytes_, facts_.size)) return fault::DamagedPicture();
  // The head of the first IDAT chunk has been read.
  data_ = at_ - 8;
  if (!Guard([this] { ReadColours(); })) return fault::DamagedPicture();
  ReadTags();
  facts_.layout = RowLayout::Rgb;
  facts_.alpha = true;
  ApplyProfile();
  NeedRows(0, facts_.size.height);
  return Status::Ok();
}

void PngReader::NeedRows(int top, int count) {
  firstHeld_ = top;
  held_ = count;
  const bool interlaced = passes_ > 1;
  facts_.held = interlaced ? static_cast<std::int64_t>(rowBytes_) * count : 0;
}

Status PngReader::PrepareRows() {
  const bool interlaced = passes_ > 1;
  const int rows = interlaced ? held_ + 1 : 1;
  if (!FitsMemory(static_cast<std::int64_t>(rowBytes_), rows, 1, limits_)) return fault::OutOfMemory();
  rows_.resize(rowBytes_ * static_cast<std::size_t>(rows));
  if (!interlaced) return Status::Ok();
  // The rows that are not needed share the last one, and spoil one another there.
  const bool read = Guard([this] {
    for (int pass = 0; pass < passes_; ++pass) {
      for (int y = 0; y < facts_.size.height; ++y) png_read_row(png_, HeldRow(y), nullptr);
    }
  });
  return read ? Status::Ok() : fault::DamagedPicture();
}

png_bytep PngReader::HeldRow(int row) {
  const bool held = row >= firstHeld_ && row < firstHeld_ + held_;
  return rows_.data() + rowBytes_ * static_cast<std::size_t>(held ? row - firstHeld_ : held_);
}

Status PngReader::NextRow(const unsigned char*& row) {
  if (rows_.empty()) {
    if (Status prepared = PrepareRows(); !prepared) return prepared;
  }
  const int at = next_++;
  row = passes_ > 1 ? HeldRow(at) : rows_.data();
  if (passes_ > 1) return Status::Ok();
  return Guard([this] { png_read_row(png_, rows_.data(), nullptr); }) ? Status::Ok() : fault::DamagedPicture();
}

Status PngReader::SkipRows(int count) {
  const unsigned char* row = nullptr;
  for (int i = 0; i < count; ++i) {
    if (Status read = NextRow(row); !read) return read;
  }
  return Status::Ok();
}

Status PngReader::ReadPart(int left, int width, unsigned char* out) {
  const unsigned char* row = rows_.data();
  if (Status read = NextRow(row); !read) return read;
  const std::size_t pixelBytes = rowBytes_ / static_cast<std::size_t>(facts_.size.width);
  return Convert(row + static_cast<std::size_t>(left) * pixelBytes, width, out);
}

Status PngReader::Convert(const unsigned char* row, int width, unsigned char* out) const {
  const unsigned char* const end = out + static_cast<std::size_t>(width) * kRgba;
  switch (kind_) {
    case Kind::Palette:
      for (; out < end; out += kRgba) {
        const unsigned index = *row++;
        if (index >= static_cast<unsigned>(colours_)) return fault::DamagedPicture();
        std::memcpy(out, palette_[index].data(), kRgba);
      }
      break;
    case Kind::Grey:
      for (; out < end; out += kRgba) {
        out[0] = out[1] = out[2] = shown_[*row++];
        out[3] = 255;
      }
      break;
    case Kind::GreyAlpha:
      for (; out < end; out += kRgba, row += 2) {
        out[0] = out[1] = out[2] = shown_[row[0]];
        out[3] = row[1];
      }
      break;
    case Kind::Rgb:
      for (; out < end; out += kRgba, row += 3) {
        std::memcpy(out, row, 3);
        out[3] = 255;
      }
      break;
    case Kind::Rgba:
      std::memcpy(out, row, static_cast<std::size_t>(width) * kRgba);
      break;
  }
  return Status::Ok();
}

Status PngReader::CheckRest() { return HasPngChecksums(*bytes_, data_, at_) ? Status::Ok() : fault::DamagedPicture(); }

}  // namespace quillon::imaging
