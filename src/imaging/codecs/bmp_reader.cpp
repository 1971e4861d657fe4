// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/readers.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "imaging/codecs/bmp_light.h"
#include "imaging/faults.h"
#include "imaging/limits.h"
#include "imaging/metadata/bmp_head.h"

namespace quillon::imaging {
namespace {

using host::Status;

constexpr std::uint32_t kFileHeader = BmpHead::kFileHeader;
constexpr std::uint32_t kCoreHeader = BmpHead::kCoreHeader;
constexpr std::uint32_t kInfoHeader = BmpHead::kInfoHeader;
constexpr std::uint32_t kOs2Header = 64;
constexpr std::uint32_t kV5Header = 124;
constexpr std::uint32_t kEmbeddedProfile = 0x4D424544;  // "MBED"
constexpr std::uint32_t kLargestProfile = 16u << 20;
// A valid RLE picture may be blank and consist of its end code only. Above this number of pixels that is refused, since
// a small file could otherwise allocate the memory limit.
constexpr std::int64_t kFreeRlePixels = std::int64_t{64} << 20;
constexpr std::int64_t kMostPixelsPerRleByte = 128;

enum class Packing : std::uint32_t { None = 0, Rle8 = 1, Rle4 = 2, BitFields = 3, AlphaBitFields = 6 };

std::uint32_t Get16(const unsigned char* at) { return at[0] | static_cast<std::uint32_t>(at[1]) << 8; }
std::uint32_t Get32(const unsigned char* at) { return Get16(at) | Get16(at + 2) << 16; }

// The bits of one colour in a pixel, expanded to 8 bits with rounding.
struct BitField {
  std::uint32_t mask = 0;
  int shift = 0;
  std::uint64_t most = 0;

  explicit BitField(std::uint32_t bits = 0)
      : mask(bits), shift(bits ? std::countr_zero(bits) : 0), most(bits ? bits >> shift : 0) {}
  unsigned char Of(std::uint32_t pixel) const {
    if (most == 0) return 0;
    const std::uint64_t value = (pixel & mask) >> shift;
    return static_cast<unsigned char>((value * 255 + most / 2) / most);
  }
};

struct BmpLayout {
  std::uint32_t headerSize = 0;
  std::uint32_t bits = 0;
  Packing packing = Packing::None;
  bool topDown = false;
  std::uint64_t pixels = 0;  // file offset of the pixel data
  std::uint64_t stride = 0;  // bytes of a row, a multiple of 4
  BitField red, green, blue;
  std::array<std::array<unsigned char, 3>, 256> palette{};
};

// Reads spans of rows: from the unpacked indices of an RLE picture, or from the file.
class BmpSource : public RowSource {
 public:
  BmpSource(std::shared_ptr<Bytes> bytes, RowFacts facts, const BmpLayout& layout, std::vector<unsigned char> indices)
      : bytes_(std::move(bytes)), facts_(std::move(facts)), layout_(layout), indices_(std::move(indices)) {}

  const RowFacts& Facts() const override { return facts_; }

  Status ReadSpan(int row, int left, int width, unsigned char* out) override {
    if (!indices_.empty()) {
      const int unpacked = layout_.topDown ? facts_.size.height - 1 - row : row;
      const unsigned char* from = indices_.data() + std::int64_t{unpacked} * facts_.size.width + left;
      for (int x = 0; x < width; ++x, out += 3) Colour(from[x], out);
      return Status::Ok();
    }
    const int stored = layout_.topDown ? row : facts_.size.height - 1 - row;
    const std::uint64_t firstBit = std::uint64_t{layout_.bits} * static_cast<unsigned>(left);
    const std::uint64_t endBit = firstBit + std::uint64_t{layout_.bits} * static_cast<unsigned>(width);
    std::vector<unsigned char> span((endBit + 7) / 8 - firstBit / 8);
    const std::uint64_t offset = layout_.pixels + layout_.stride * static_cast<unsigned>(stored) + firstBit / 8;
    if (!bytes_->ReadAt(offset, span.data(), span.size())) return fault::DamagedPicture();
    Unpack(span.data(), static_cast<unsigned>(firstBit % 8), width, out);
    return Status::Ok();
  }

 private:
  void Colour(unsigned index, unsigned char* out) const { std::memcpy(out, layout_.palette[index].data(), 3); }

  void Unpack(const unsigned char* from, unsigned bit, int width, unsigned char* out) const {
    if (layout_.bits <= 8) {
      const unsigned mask = (1u << layout_.bits) - 1;
      for (int x = 0; x < width; ++x, out += 3, bit += layout_.bits) {
        Colour(from[bit / 8] >> (8 - layout_.bits - bit % 8) & mask, out);
      }
    } else if (layout_.bits >= 48) {
      UnpackLight(from, width, out);
    } else if (layout_.bits == 24) {
      for (int x = 0; x < width; ++x, out += 3, from += 3) {
        out[0] = from[2];
        out[1] = from[1];
        out[2] = from[0];
      }
    } else {
      const bool wide = layout_.bits == 32;
      for (int x = 0; x < width; ++x, out += 3, from += wide ? 4 : 2) {
        const std::uint32_t pixel = wide ? Get32(from) : Get16(from);
        out[0] = layout_.red.Of(pixel);
        out[1] = layout_.green.Of(pixel);
        out[2] = layout_.blue.Of(pixel);
      }
    }
  }

  // Samples of 16 bits; with 64 bits a pixel alpha follows the colours.
  void UnpackLight(const unsigned char* from, int width, unsigned char* out) const {
    const auto sample = [&](int i) { return static_cast<std::int16_t>(Get16(from + 2 * i)); };
    const bool alpha = layout_.bits == 64;
    for (int x = 0; x < width; ++x, out += alpha ? 4 : 3, from += alpha ? 8 : 6) {
      out[0] = ValueOfBmpLight(sample(2));
      out[1] = ValueOfBmpLight(sample(1));
      out[2] = ValueOfBmpLight(sample(0));
      if (alpha) out[3] = ValueOfBmpAlpha(sample(3));
    }
  }

  std::shared_ptr<Bytes> bytes_;
  RowFacts facts_;
  BmpLayout layout_;
  std::vector<unsigned char> indices_;  // palette indices of an RLE picture, last stored row first; else empty
};

// Unpacks RLE data to palette indices, top row first. Pixels beyond the end of a row are dropped, as other readers do.
// Rows beyond the picture and missing data are damage.
class RleUnpacker {
 public:
  RleUnpacker(Bytes& bytes, std::uint64_t offset, bool nibbles, base::Size size, std::vector<unsigned char>& out)
      : bytes_(bytes), offset_(offset), nibbles_(nibbles), size_(size), out_(out) {}

  // Executes the codes: runs, end of line, end of picture, moves and literals.
  Status Run() {
    while (true) {
      unsigned char code[2];
      if (!Next(code, 2)) return End();
      if (code[0] > 0) {
        if (y_ >= size_.height) return fault::DamagedPicture();
        for (int i = 0; i < code[0]; ++i) Put(nibbles_ ? (i % 2 ? code[1] & 15 : code[1] >> 4) : code[1]);
      } else if (code[1] == 0) {
        x_ = 0;
        ++y_;
      } else if (code[1] == 1) {
        return Status::Ok();
      } else if (code[1] == 2) {
        unsigned char move[2];
        if (!Next(move, 2)) return fault::DamagedPicture();
        x_ = std::min(x_ + move[0], size_.width);
        y_ += move[1];
      } else if (!Literal(code[1])) {
        return fault::DamagedPicture();
      }
      if (y_ > size_.height) return fault::DamagedPicture();
    }
  }

 private:
  // Accepts data without its end code if the last row is complete.
  Status End() const {
    const bool whole = y_ >= size_.height || (y_ == size_.height - 1 && x_ >= size_.width);
    return whole ? Status::Ok() : fault::DamagedPicture();
  }

  // Reads count indices that are stored plainly and padded to 16 bits.
  bool Literal(int count) {
    unsigned char data[256];
    const std::size_t used = static_cast<std::size_t>(nibbles_ ? (count + 1) / 2 : count);
    if (y_ >= size_.height || !Next(data, used + used % 2)) return false;
    for (int i = 0; i < count; ++i) Put(nibbles_ ? (i % 2 ? data[i / 2] & 15 : data[i / 2] >> 4) : data[i]);
    return true;
  }

  void Put(int index) {
    if (x_ >= size_.width) return;
    const int row = size_.height - 1 - y_;
    out_[static_cast<std::size_t>(std::int64_t{row} * size_.width + x_)] = static_cast<unsigned char>(index);
    ++x_;
  }

  // Copies the next bytes of the data. Returns false at the end of the file.
  bool Next(unsigned char* out, std::size_t size) {
    if (at_ + size > block_.size() && !Refill()) return false;
    if (at_ + size > block_.size()) return false;
    std::memcpy(out, block_.data() + at_, size);
    at_ += size;
    return true;
  }

  bool Refill() {
    offset_ += at_;
    at_ = 0;
    const std::uint64_t left = offset_ < bytes_.Size() ? bytes_.Size() - offset_ : 0;
    block_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(left, 1u << 16)));
    return !block_.empty() && bytes_.ReadAt(offset_, block_.data(), block_.size());
  }

  Bytes& bytes_;
  std::uint64_t offset_;
  bool nibbles_;
  base::Size size_;
  std::vector<unsigned char>& out_;
  std::vector<unsigned char> block_;
  std::size_t at_ = 0;
  int x_ = 0;
  int y_ = 0;
};

// The info header of the file, padded with zeros to the length of the longest known header.
using Header = std::array<unsigned char, kV5Header>;

Status ReadHeader(Bytes& bytes, BmpHead& head, Header& header) {
  const std::optional<BmpHead> read = ReadBmpHead(bytes);
  if (!read || read->size > kV5Header) return fault::DamagedPicture();
  head = *read;
  header.fill(0);
  return bytes.ReadAt(kFileHeader, header.data(), head.size) ? Status::Ok() : fault::DamagedPicture();
}

Status ReadSides(const BmpHead& head, const Limits& limits, BmpLayout& layout, base::Size& size) {
  layout.headerSize = head.size;
  layout.pixels = head.pixels;
  layout.bits = head.bits;
  layout.topDown = head.height < 0;
  if (head.width <= 0 || head.height == 0) return fault::DamagedPicture();
  if (!WithinLimits(head.width, std::abs(head.height), limits)) return fault::SidesTooLarge();
  size = {static_cast<int>(head.width), static_cast<int>(std::abs(head.height))};
  layout.stride = (static_cast<std::uint64_t>(head.width) * layout.bits + 31) / 32 * 4;
  return Status::Ok();
}

bool IsOneOf(std::uint32_t value, std::initializer_list<std::uint32_t> known) {
  return std::find(known.begin(), known.end(), value) != known.end();
}

Status ReadPacking(const Header& header, BmpLayout& layout) {
  const std::uint32_t packing = layout.headerSize == kCoreHeader ? 0 : Get32(&header[16]);
  const bool os2 = layout.headerSize < kInfoHeader || layout.headerSize == kOs2Header;
  if (os2 && packing > 2) return fault::UnreadKind();
  if (IsOneOf(packing, {4, 5})) return fault::UnreadKind();
  layout.packing = static_cast<Packing>(packing);
  switch (layout.packing) {
    case Packing::None:
      return IsOneOf(layout.bits, {1, 2, 4, 8, 16, 24, 32, 48, 64}) ? Status::Ok() : fault::DamagedPicture();
    case Packing::Rle8:
      return layout.bits == 8 ? Status::Ok() : fault::DamagedPicture();
    case Packing::Rle4:
      return layout.bits == 4 ? Status::Ok() : fault::DamagedPicture();
    case Packing::BitFields:
    case Packing::AlphaBitFields:
      return IsOneOf(layout.bits, {16, 32}) ? Status::Ok() : fault::DamagedPicture();
  }
  return fault::DamagedPicture();
}

// Reads masks and palette. headerEnd receives the offset of the first byte after them.
Status ReadColours(Bytes& bytes, const Header& header, BmpLayout& layout, std::uint64_t& headerEnd) {
  headerEnd = kFileHeader + layout.headerSize;
  const bool masked = layout.packing == Packing::BitFields || layout.packing == Packing::AlphaBitFields;
  if (masked) {
    std::array<unsigned char, 12> masks{};
    if (!bytes.ReadAt(kFileHeader + kInfoHeader, masks.data(), masks.size())) return fault::DamagedPicture();
    if (layout.headerSize == kInfoHeader) headerEnd += layout.packing == Packing::BitFields ? 12 : 16;
    layout.red = BitField(Get32(&masks[0]));
    layout.green = BitField(Get32(&masks[4]));
    layout.blue = BitField(Get32(&masks[8]));
  } else if (layout.bits == 16) {
    layout.red = BitField(0x7C00);
    layout.green = BitField(0x03E0);
    layout.blue = BitField(0x001F);
  } else if (layout.bits == 32) {
    layout.red = BitField(0xFF0000);
    layout.green = BitField(0x00FF00);
    layout.blue = BitField(0x0000FF);
  }
  if (layout.bits > 8) return Status::Ok();
  const std::uint32_t entryBytes = layout.headerSize == kCoreHeader ? 3 : 4;
  const std::uint32_t declared = layout.headerSize >= kInfoHeader ? Get32(&header[32]) : 0;
  std::uint64_t count = std::uint64_t{1} << layout.bits;
  if (declared > 0) count = std::min<std::uint64_t>(count, declared);
  // Some writers declare more palette entries than there is room for before the pixels.
  if (layout.pixels > headerEnd) count = std::min(count, (layout.pixels - headerEnd) / entryBytes);
  std::vector<unsigned char> entries(count * entryBytes);
  if (!bytes.ReadAt(headerEnd, entries.data(), entries.size())) return fault::DamagedPicture();
  for (std::uint64_t i = 0; i < count; ++i) {
    const unsigned char* entry = entries.data() + i * entryBytes;
    layout.palette[i] = {entry[2], entry[1], entry[0]};
  }
  headerEnd += entries.size();
  return Status::Ok();
}

// Reads resolution and ICC profile. Both are optional, so errors are ignored.
void ReadExtras(Bytes& bytes, const Header& header, const BmpHead& head, RowFacts& facts) {
  const auto perMetre = static_cast<double>(head.perMetre);
  if (perMetre > 0 && perMetre < 40'000'000) facts.dpi = static_cast<int>(std::lround(perMetre * 0.0254));
  if (head.size < kV5Header || Get32(&header[56]) != kEmbeddedProfile) return;
  const std::uint32_t offset = Get32(&header[112]);
  const std::uint32_t size = Get32(&header[116]);
  if (size > kLargestProfile) return;
  std::string profile(size, '\0');
  if (bytes.ReadAt(std::uint64_t{kFileHeader} + offset, profile.data(), size)) facts.profile = std::move(profile);
}

Status UnpackRle(Bytes& bytes, const BmpLayout& layout, base::Size size, const Limits& limits,
                 std::vector<unsigned char>& indices) {
  if (!FitsMemory(size.width, size.height, 1, limits)) return fault::OutOfMemory();
  const std::int64_t pixels = std::int64_t{size.width} * size.height;
  const std::int64_t data = static_cast<std::int64_t>(bytes.Size() - layout.pixels);
  if (pixels > kFreeRlePixels && pixels / kMostPixelsPerRleByte > data) return fault::DamagedPicture();
  indices.assign(static_cast<std::size_t>(pixels), 0);
  return RleUnpacker(bytes, layout.pixels, layout.packing == Packing::Rle4, size, indices).Run();
}

}  // namespace

Status OpenBmp(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out) {
  BmpLayout layout;
  BmpHead head;
  Header header{};
  RowFacts facts;
  std::uint64_t headerEnd = 0;
  if (Status status = ReadHeader(*bytes, head, header); !status) return status;
  if (Status status = ReadSides(head, limits, layout, facts.size); !status) return status;
  if (Status status = ReadPacking(header, layout); !status) return status;
  if (Status status = ReadColours(*bytes, header, layout, headerEnd); !status) return status;
  ReadExtras(*bytes, header, head, facts);
  facts.alpha = layout.bits == 64;

  if (layout.pixels == 0) layout.pixels = headerEnd;
  if (layout.pixels < kFileHeader + layout.headerSize || layout.pixels > bytes->Size()) return fault::DamagedPicture();
  std::vector<unsigned char> indices;
  if (layout.packing == Packing::Rle8 || layout.packing == Packing::Rle4) {
    if (Status status = UnpackRle(*bytes, layout, facts.size, limits, indices); !status) return status;
  } else {
    // Some writers omit the padding of the last row.
    const std::uint64_t lastRow = (static_cast<std::uint64_t>(facts.size.width) * layout.bits + 7) / 8;
    const std::uint64_t needed = layout.stride * static_cast<unsigned>(facts.size.height - 1) + lastRow;
    if (needed > bytes->Size() - layout.pixels) return fault::DamagedPicture();
  }
  out = std::make_shared<BmpSource>(std::move(bytes), std::move(facts), layout, std::move(indices));
  return Status::Ok();
}

}  // namespace quillon::imaging
