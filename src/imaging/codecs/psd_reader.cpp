// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/readers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "imaging/faults.h"
#include "imaging/limits.h"

namespace quillon::imaging {
namespace {

using host::Status;

constexpr std::uint64_t kHeader = 26;
constexpr unsigned kMostChannels = 56;
constexpr std::uint32_t kLargestProfile = 16u << 20;
constexpr std::uint32_t kResolutionResource = 1005;
constexpr std::uint32_t kProfileResource = 1039;

enum class Mode { Bitmap = 0, Grey = 1, Indexed = 2, Rgb = 3, Cmyk = 4, Duotone = 8 };

std::uint32_t Get16(const unsigned char* at) { return static_cast<std::uint32_t>(at[0]) << 8 | at[1]; }
std::uint32_t Get32(const unsigned char* at) { return Get16(at) << 16 | Get16(at + 2); }
std::uint64_t Get64(const unsigned char* at) { return static_cast<std::uint64_t>(Get32(at)) << 32 | Get32(at + 4); }

// Reads big-endian numbers one after another. After a failed read every further read fails and returns 0.
class Cursor {
 public:
  Cursor(Bytes& bytes, std::uint64_t at) : bytes_(bytes), at_(at) {}
  std::uint64_t Number(std::size_t size) {
    std::array<unsigned char, 8> raw{};
    good_ = good_ && bytes_.ReadAt(at_, raw.data() + 8 - size, size);
    at_ += size;
    return good_ ? Get64(raw.data()) : 0;
  }
  void Skip(std::uint64_t size) {
    good_ = good_ && size <= bytes_.Size() && at_ <= bytes_.Size() - size;
    at_ += size;
  }
  std::uint64_t At() const { return at_; }
  bool Good() const { return good_; }

 private:
  Bytes& bytes_;
  std::uint64_t at_;
  bool good_ = true;
};

struct PsdLayout {
  Mode mode = Mode::Rgb;
  unsigned bits = 8;
  unsigned stored = 0;         // channels in the file, including those that are dropped
  bool large = false;          // PSB, with longer length fields
  bool packed = false;         // RLE
  std::uint64_t pixels = 0;    // offset of the first row of the first channel, after the table of row lengths
  std::uint64_t rowBytes = 0;  // unpacked row of one channel
  std::vector<unsigned char> palette;
  std::vector<std::uint64_t> rows;  // RLE: offset of each row of the used channels, and the end of the last

  // Returns the number of channels that are read.
  unsigned Used() const { return mode == Mode::Rgb ? 3 : mode == Mode::Cmyk ? 4 : 1; }
};

// Unpacks one PackBits row. Returns false unless it fills the row exactly.
bool Unpack(const std::vector<unsigned char>& from, unsigned char* out, std::size_t size) {
  std::size_t at = 0;
  std::size_t done = 0;
  while (at < from.size()) {
    const unsigned code = from[at++];
    if (code == 128) continue;
    const std::size_t count = code < 128 ? code + 1 : 257 - code;
    const std::size_t used = code < 128 ? count : 1;
    if (count > size - done || used > from.size() - at) return false;
    if (code < 128) {
      std::memcpy(out + done, from.data() + at, count);
    } else {
      std::memset(out + done, from[at], count);
    }
    at += used;
    done += count;
  }
  return done == size;
}

class PsdSource : public RowSource {
 public:
  PsdSource(std::shared_ptr<Bytes> bytes, RowFacts facts, PsdLayout layout)
      : bytes_(std::move(bytes)), facts_(std::move(facts)), layout_(std::move(layout)) {}

  const RowFacts& Facts() const override { return facts_; }

  Status ReadSpan(int row, int left, int width, unsigned char* out) override {
    std::vector<unsigned char> line(layout_.rowBytes);
    for (unsigned channel = 0; channel < layout_.Used(); ++channel) {
      if (!ReadLine(channel, row, line)) return fault::DamagedPicture();
      Interleave(line, channel, left, width, out);
    }
    return Status::Ok();
  }

 private:
  // Reads one row of one channel, unpacked.
  bool ReadLine(unsigned channel, int row, std::vector<unsigned char>& line) const {
    const std::uint64_t index = std::uint64_t{channel} * static_cast<unsigned>(facts_.size.height) + unsigned(row);
    if (!layout_.packed) return bytes_->ReadAt(layout_.pixels + index * layout_.rowBytes, line.data(), line.size());
    std::vector<unsigned char> packed(layout_.rows[index + 1] - layout_.rows[index]);
    return bytes_->ReadAt(layout_.rows[index], packed.data(), packed.size()) &&
           Unpack(packed, line.data(), line.size());
  }

  // Writes the samples of one channel to their places among the interleaved samples.
  void Interleave(const std::vector<unsigned char>& line, unsigned channel, int left, int width,
                  unsigned char* out) const {
    const int first = left;
    switch (layout_.mode) {
      case Mode::Bitmap:
        for (int x = first; x < first + width; ++x) *out++ = line[unsigned(x) / 8] >> (7 - x % 8) & 1 ? 0 : 255;
        return;
      case Mode::Indexed:
        for (int x = first; x < first + width; ++x, out += 3) {
          for (unsigned i = 0; i < 3; ++i) out[i] = layout_.palette[i * 256 + line[unsigned(x)]];
        }
        return;
      default:
        break;
    }
    const unsigned step = layout_.Used();
    // The file stores inverted ink: 0 is full ink.
    const unsigned flip = layout_.mode == Mode::Cmyk ? 0xFFFF : 0;
    if (layout_.bits == 8) {
      for (int x = 0; x < width; ++x) {
        out[unsigned(x) * step + channel] = static_cast<unsigned char>(line[unsigned(first + x)] ^ (flip & 0xFF));
      }
      return;
    }
    for (int x = 0; x < width; ++x) {
      const auto sample = static_cast<std::uint16_t>(Get16(&line[std::size_t(first + x) * 2]) ^ flip);
      std::memcpy(out + (std::size_t(x) * step + channel) * 2, &sample, 2);
    }
  }

  std::shared_ptr<Bytes> bytes_;
  RowFacts facts_;
  PsdLayout layout_;
};

Status ReadHeader(Bytes& bytes, const Limits& limits, PsdLayout& layout, RowFacts& facts) {
  std::array<unsigned char, kHeader> head{};
  if (!bytes.ReadAt(0, head.data(), head.size())) return fault::DamagedPicture();
  if (std::memcmp(head.data(), "8BPS", 4) != 0) return fault::NotAPicture();
  const std::uint32_t version = Get16(&head[4]);
  if (version != 1 && version != 2) return fault::DamagedPicture();
  layout.large = version == 2;
  layout.stored = Get16(&head[12]);
  const std::uint32_t height = Get32(&head[14]);
  const std::uint32_t width = Get32(&head[18]);
  layout.bits = Get16(&head[22]);
  const std::uint32_t mode = Get16(&head[24]);
  if (width == 0 || height == 0) return fault::DamagedPicture();
  if (!WithinLimits(width, height, limits)) return fault::SidesTooLarge();
  if (layout.stored == 0 || layout.stored > kMostChannels) return fault::DamagedPicture();
  if (mode > 4 && mode != 8) return mode == 7 || mode == 9 ? fault::UnreadKind() : fault::DamagedPicture();
  layout.mode = static_cast<Mode>(mode);
  if (layout.bits == 32) return fault::UnreadKind();
  const bool fits = layout.mode == Mode::Bitmap    ? layout.bits == 1
                    : layout.mode == Mode::Indexed ? layout.bits == 8
                                                   : layout.bits == 8 || layout.bits == 16;
  if (!fits || layout.stored < layout.Used()) return fault::DamagedPicture();

  layout.rowBytes = (std::uint64_t{width} * layout.bits + 7) / 8;
  facts.size = {static_cast<int>(width), static_cast<int>(height)};
  facts.bits = layout.bits == 16 ? 16 : 8;
  facts.layout = layout.mode == Mode::Cmyk                                  ? RowLayout::Cmyk
                 : layout.mode == Mode::Rgb || layout.mode == Mode::Indexed ? RowLayout::Rgb
                                                                            : RowLayout::Grey;
  return Status::Ok();
}

// Reads resolution and profile. A malformed resource ends the search, since nothing else depends on it.
void ReadResources(Bytes& bytes, std::uint64_t at, std::uint64_t end, RowFacts& facts) {
  while (at < end) {
    Cursor cursor(bytes, at);
    if (cursor.Number(4) != 0x3842494D) return;  // "8BIM"
    const std::uint64_t id = cursor.Number(2);
    const std::uint64_t name = cursor.Number(1);
    cursor.Skip(name + (name + 1) % 2);
    const std::uint64_t size = cursor.Number(4);
    if (!cursor.Good() || cursor.At() > end || size > end - cursor.At()) return;
    if (id == kResolutionResource && size >= 4) {
      facts.dpi = static_cast<int>(std::lround(static_cast<double>(Cursor(bytes, cursor.At()).Number(4)) / 65536));
    } else if (id == kProfileResource && size <= kLargestProfile) {
      std::string profile(size, '\0');
      if (bytes.ReadAt(cursor.At(), profile.data(), size)) facts.profile = std::move(profile);
    }
    at = cursor.At() + size + size % 2;
  }
}

// Converts the table of row lengths to file offsets.
Status ReadRowTable(Bytes& bytes, std::uint64_t table, int height, PsdLayout& layout) {
  const std::size_t entry = layout.large ? 4 : 2;
  const std::uint64_t used = std::uint64_t{layout.Used()} * static_cast<unsigned>(height);
  const std::uint64_t tableBytes = std::uint64_t{layout.stored} * static_cast<unsigned>(height) * entry;
  if (tableBytes > bytes.Size() || table > bytes.Size() - tableBytes) return fault::DamagedPicture();
  std::vector<unsigned char> lengths(used * entry);
  if (!bytes.ReadAt(table, lengths.data(), lengths.size())) return fault::DamagedPicture();
  layout.pixels = table + tableBytes;
  layout.rows.reserve(used + 1);
  std::uint64_t at = layout.pixels;
  // PackBits needs at most one extra byte for 128 bytes. A row of twice its size is damage, not poor compression.
  const std::uint64_t longest = layout.rowBytes * 2 + 256;
  for (std::uint64_t i = 0; i < used; ++i) {
    layout.rows.push_back(at);
    const std::uint64_t length = entry == 4 ? Get32(&lengths[i * 4]) : Get16(&lengths[i * 2]);
    if (length > longest) return fault::DamagedPicture();
    at += length;
  }
  layout.rows.push_back(at);
  return at <= bytes.Size() ? Status::Ok() : fault::DamagedPicture();
}

}  // namespace

Status OpenPsd(std::shared_ptr<Bytes> bytes, const Limits& limits, std::shared_ptr<RowSource>& out) {
  PsdLayout layout;
  RowFacts facts;
  if (Status status = ReadHeader(*bytes, limits, layout, facts); !status) return status;

  Cursor cursor(*bytes, kHeader);
  const std::uint64_t colourBytes = cursor.Number(4);
  if (layout.mode == Mode::Indexed) {
    layout.palette.resize(768);
    if (colourBytes < 768 || !bytes->ReadAt(cursor.At(), layout.palette.data(), 768)) return fault::DamagedPicture();
  }
  cursor.Skip(colourBytes);
  const std::uint64_t resourceBytes = cursor.Number(4);
  const std::uint64_t resources = cursor.At();
  cursor.Skip(resourceBytes);
  if (!cursor.Good()) return fault::DamagedPicture();
  ReadResources(*bytes, resources, resources + resourceBytes, facts);
  cursor.Skip(cursor.Number(layout.large ? 8 : 4));  // layers
  const std::uint64_t packing = cursor.Number(2);
  if (!cursor.Good()) return fault::DamagedPicture();
  if (packing > 3) return fault::DamagedPicture();
  if (packing > 1) return fault::UnreadKind();

  layout.packed = packing == 1;
  layout.pixels = cursor.At();
  if (layout.packed) {
    if (Status status = ReadRowTable(*bytes, cursor.At(), facts.size.height, layout); !status) return status;
  } else {
    const std::uint64_t rows = std::uint64_t{layout.Used()} * static_cast<unsigned>(facts.size.height);
    if (rows * layout.rowBytes > bytes->Size() - layout.pixels) return fault::DamagedPicture();
  }
  out = std::make_shared<PsdSource>(std::move(bytes), std::move(facts), std::move(layout));
  return Status::Ok();
}

}  // namespace quillon::imaging
