// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/exif_block.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <vector>

// A block is edited in place and never rebuilt, since maker notes contain offsets that only their maker understands.
// What has to go is overwritten with zeros; only the end of the block can be cut off.
namespace quillon::imaging {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

enum Tag : std::uint32_t {
  kImageWidth = 0x0100,
  kImageLength = 0x0101,
  kStripOffsets = 0x0111,
  kOrientation = 0x0112,
  kStripByteCounts = 0x0117,
  kXResolution = 0x011A,
  kYResolution = 0x011B,
  kResolutionUnit = 0x0128,
  kSubIfds = 0x014A,
  kThumbnailOffset = 0x0201,
  kThumbnailLength = 0x0202,
  kExifIfd = 0x8769,
  kPixelXDimension = 0xA002,
  kPixelYDimension = 0xA003,
};

enum Type : std::uint32_t { kShort = 3, kLong = 4, kRational = 5 };

constexpr std::size_t kEntrySize = 12;

// One directory entry of 12 bytes: tag, type, count, and the value or its offset.
struct Entry {
  std::size_t at;  // offset of the entry in the block
  std::uint32_t tag;
  std::uint32_t type;
  std::uint32_t count;
};

struct Directory {
  std::vector<Entry> entries;
  std::size_t nextAt = 0;  // position of the offset of the next directory; 0 if the block ends before it
};

// A TIFF structure in memory with access in its byte order. Get and Put need a range that Has() confirmed.
class Block {
 public:
  explicit Block(std::string bytes) : bytes_(std::move(bytes)) {
    if (bytes_.size() < 8) return;
    big_ = View().starts_with("MM\0\x2A"sv);
    valid_ = big_ || View().starts_with("II\x2A\0"sv);
  }

  bool Valid() const { return valid_; }
  std::string Release() { return std::move(bytes_); }
  std::string_view View() const { return bytes_; }

  bool Has(std::uint64_t at, std::uint64_t size) const { return at <= bytes_.size() && size <= bytes_.size() - at; }

  // Returns an unsigned number of size bytes, 1 to 4.
  std::uint32_t Get(std::size_t at, int size) const {
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i) {
      const std::size_t from = at + static_cast<std::size_t>(big_ ? i : size - 1 - i);
      value = value << 8 | static_cast<unsigned char>(bytes_[from]);
    }
    return value;
  }

  void Put(std::size_t at, int size, std::uint32_t value) {
    for (int i = 0; i < size; ++i) {
      const std::size_t to = at + static_cast<std::size_t>(big_ ? size - 1 - i : i);
      bytes_[to] = static_cast<char>(value >> (8 * i) & 0xFF);
    }
  }

  // Overwrites a range with zeros, clipped to the block.
  void Blank(std::uint64_t at, std::uint64_t size) {
    if (at < bytes_.size()) std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), Clip(at, size), '\0');
  }

  void DropFrom(std::size_t at) { bytes_.resize(std::min(bytes_.size(), at)); }

  // Returns the directory at an offset, or nothing if its table does not lie inside the block.
  std::optional<Directory> Read(std::size_t at) const {
    if (at < 8 || !Has(at, 2)) return std::nullopt;
    const std::size_t count = Get(at, 2);
    if (!Has(at + 2, count * kEntrySize)) return std::nullopt;
    Directory directory;
    directory.entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t entry = at + 2 + i * kEntrySize;
      directory.entries.push_back({entry, Get(entry, 2), Get(entry + 2, 2), Get(entry + 4, 4)});
    }
    const std::size_t end = at + 2 + count * kEntrySize;
    if (Has(end, 4)) directory.nextAt = end;
    return directory;
  }

  std::optional<Directory> First() const { return valid_ ? Read(Get(4, 4)) : std::nullopt; }

  // Returns the values of a SHORT or LONG entry; empty for other types or values outside the block.
  std::vector<std::uint32_t> Integers(const Entry& entry) const {
    std::vector<std::uint32_t> values;
    const int size = SizeOf(entry);
    if (size == 0) return values;
    const std::uint64_t total = std::uint64_t{entry.count} * static_cast<std::uint64_t>(size);
    const std::size_t at = total <= 4 ? entry.at + 8 : Get(entry.at + 8, 4);
    if (!Has(at, total)) return values;
    for (std::size_t i = 0; i < entry.count; ++i) values.push_back(Get(at + i * static_cast<std::size_t>(size), size));
    return values;
  }

  // Returns the value of an entry with exactly one SHORT or LONG.
  std::optional<std::uint32_t> Integer(const Entry& entry) const {
    if (entry.count != 1 || SizeOf(entry) == 0) return std::nullopt;
    return Get(entry.at + 8, SizeOf(entry));
  }

  void SetInteger(const Entry& entry, std::uint32_t value) {
    if (entry.count == 1 && SizeOf(entry) > 0) Put(entry.at + 8, SizeOf(entry), value);
  }

  // Returns the offset of the numerator of a RATIONAL; the denominator follows it.
  std::optional<std::size_t> RationalAt(const Entry& entry) const {
    if (entry.type != kRational || entry.count != 1) return std::nullopt;
    const std::size_t at = Get(entry.at + 8, 4);
    if (!Has(at, 8)) return std::nullopt;
    return at;
  }

 private:
  static int SizeOf(const Entry& entry) { return entry.type == kShort ? 2 : entry.type == kLong ? 4 : 0; }

  std::size_t Clip(std::uint64_t at, std::uint64_t size) const {
    return static_cast<std::size_t>(std::min<std::uint64_t>(size, bytes_.size() - at));
  }

  std::string bytes_;
  bool big_ = false;
  bool valid_ = false;
};

struct Range {
  std::uint64_t at;
  std::uint64_t size;
};

// Returns the byte ranges of the pictures of a directory: a JPEG thumbnail or strips.
std::vector<Range> PicturesOf(const Block& block, const Directory& directory) {
  std::vector<std::uint32_t> offsets;
  std::vector<std::uint32_t> sizes;
  std::vector<Range> ranges;
  std::uint32_t thumbnail = 0;
  std::uint32_t length = 0;
  for (const Entry& entry : directory.entries) {
    if (entry.tag == kThumbnailOffset) thumbnail = block.Integer(entry).value_or(0);
    if (entry.tag == kThumbnailLength) length = block.Integer(entry).value_or(0);
    if (entry.tag == kStripOffsets) offsets = block.Integers(entry);
    if (entry.tag == kStripByteCounts) sizes = block.Integers(entry);
  }
  if (thumbnail > 0) ranges.push_back({thumbnail, length});
  for (std::size_t i = 0; i < std::min(offsets.size(), sizes.size()); ++i) ranges.push_back({offsets[i], sizes[i]});
  return ranges;
}

// Blanks a picture. Cuts the end of the block off if only the picture, and at most one byte of padding, is there.
void Remove(Block& block, const Range& range) {
  block.Blank(range.at, range.size);
  const std::string_view view = block.View();
  if (range.at < 8 || range.at >= view.size() || range.size == 0) return;
  const std::size_t end = static_cast<std::size_t>(std::min<std::uint64_t>(range.at + range.size, view.size()));
  if (view.size() - end <= 1) block.DropFrom(static_cast<std::size_t>(range.at));
}

// Removes all directories after the first one: that of the thumbnail and any more that a program added.
// Sub-IFDs are emptied too. The number of directories is limited, since their chain may be circular.
void RemoveThumbnails(Block& block) {
  std::optional<Directory> directory = block.First();
  if (!directory) return;
  std::vector<Range> ranges = PicturesOf(block, *directory);
  const std::size_t firstNext = directory->nextAt;
  std::vector<std::size_t> starts;
  if (firstNext > 0) starts.push_back(block.Get(firstNext, 4));
  for (Entry& entry : directory->entries) {
    if (entry.tag != kSubIfds) continue;
    for (const std::uint32_t at : block.Integers(entry)) starts.push_back(at);
    block.Blank(entry.at + 4, 8);  // no values
  }
  constexpr std::size_t kDirectoriesMax = 16;
  for (std::size_t i = 0; i < starts.size() && i < kDirectoriesMax; ++i) {
    const std::optional<Directory> further = block.Read(starts[i]);
    if (!further) continue;
    for (const Range& range : PicturesOf(block, *further)) ranges.push_back(range);
    if (further->nextAt > 0) starts.push_back(block.Get(further->nextAt, 4));
  }
  if (firstNext > 0) block.Put(firstNext, 4, 0);
  for (const Range& range : ranges) Remove(block, range);
}

// Removes JPEG streams wherever they are. The marker after its start distinguishes a stream from random bytes.
void RemoveEmbeddedJpegs(Block& block) {
  std::size_t from = 8;
  for (;;) {
    const std::string_view view = block.View();
    const std::size_t start = view.find("\xFF\xD8\xFF"sv, from);
    if (start == std::string_view::npos) return;
    from = start + 3;
    if (from >= view.size()) return;
    const int marker = static_cast<unsigned char>(view[from]);
    if (marker < 0xC0 || marker == 0xFF || marker == 0xD8 || marker == 0xD9) continue;
    const std::size_t end = view.find("\xFF\xD9"sv, from);
    const std::size_t stop = end == std::string_view::npos ? view.size() : end + 2;
    Remove(block, {start, stop - start});
  }
}

void SetResolution(Block& block, const Entry& entry, int dpi) {
  const std::optional<std::size_t> at = block.RationalAt(entry);
  if (!at) return;
  block.Put(*at, 4, static_cast<std::uint32_t>(dpi));
  block.Put(*at + 4, 4, 1);
}

// Corrects the tags with size and resolution in one directory.
void FixTags(Block& block, const Directory& directory, base::Size size, int dpi) {
  for (const Entry& entry : directory.entries) {
    switch (entry.tag) {
      case kImageWidth:
      case kPixelXDimension:
        block.SetInteger(entry, static_cast<std::uint32_t>(size.width));
        break;
      case kImageLength:
      case kPixelYDimension:
        block.SetInteger(entry, static_cast<std::uint32_t>(size.height));
        break;
      case kXResolution:
      case kYResolution:
        if (dpi > 0) SetResolution(block, entry, dpi);
        break;
      case kResolutionUnit:
        if (dpi > 0) block.SetInteger(entry, 2);
        break;
      default:
        break;
    }
  }
}

}  // namespace

ExifFacts ReadExif(std::string_view bytes) {
  ExifFacts facts;
  const Block block{std::string(bytes)};
  const std::optional<Directory> directory = block.First();
  if (!directory) return facts;
  double resolution = 0;
  std::uint32_t unit = 2;  // 2 is inches, 3 is centimetres
  for (const Entry& entry : directory->entries) {
    if (entry.tag == kOrientation) {
      const std::uint32_t value = block.Integer(entry).value_or(1);
      if (value >= 1 && value <= 8) facts.orientation = static_cast<int>(value);
    } else if (entry.tag == kXResolution) {
      const std::optional<std::size_t> at = block.RationalAt(entry);
      const double divisor = at ? block.Get(*at + 4, 4) : 0;
      if (divisor > 0) resolution = block.Get(*at, 4) / divisor;
    } else if (entry.tag == kResolutionUnit) {
      unit = block.Integer(entry).value_or(2);
    }
  }
  const double dpi = unit == 2 ? resolution : unit == 3 ? resolution * 2.54 : 0;
  constexpr double kDpiMax = 65535;
  if (dpi >= 0.5 && dpi <= kDpiMax) facts.dpi = static_cast<int>(std::lround(dpi));
  return facts;
}

std::string CutExif(std::string_view bytes, base::Size size, int dpi) {
  Block block{std::string(bytes)};
  if (!block.Valid()) return {};
  RemoveThumbnails(block);
  RemoveEmbeddedJpegs(block);
  const std::optional<Directory> first = block.First();
  if (!first) return {};
  FixTags(block, *first, size, dpi);
  for (const Entry& entry : first->entries) {
    if (entry.tag != kExifIfd) continue;
    const std::optional<Directory> details = block.Read(block.Integer(entry).value_or(0));
    if (details) FixTags(block, *details, size, dpi);
  }
  return block.Release();
}

std::string OrientedExif(std::string_view bytes, int orientation) {
  Block block{std::string(bytes)};
  if (const std::optional<Directory> first = block.First()) {
    for (const Entry& entry : first->entries) {
      if (entry.tag == kOrientation) block.SetInteger(entry, static_cast<std::uint32_t>(orientation));
    }
  }
  return block.Release();
}

std::string MinimalExif(int orientation, int dpi) {
  if (orientation == 1 && dpi == 0) return {};
  struct Field {
    std::uint32_t tag;
    std::uint32_t type;
    std::uint32_t value;
  };
  std::vector<Field> fields;
  if (orientation != 1) fields.push_back({kOrientation, kShort, static_cast<std::uint32_t>(orientation)});
  if (dpi > 0) {
    fields.push_back({kXResolution, kRational, static_cast<std::uint32_t>(dpi)});
    fields.push_back({kYResolution, kRational, static_cast<std::uint32_t>(dpi)});
    fields.push_back({kResolutionUnit, kShort, 2});
  }
  constexpr std::size_t kTable = 8;
  const std::size_t tableEnd = kTable + 2 + fields.size() * kEntrySize + 4;
  const std::size_t rationals = dpi > 0 ? 16 : 0;
  // The order is: header, directory, rationals. Offsets are counted from the header.
  Block block("MM\0\x2A"s + std::string(tableEnd - 4 + rationals, '\0'));
  block.Put(4, 4, kTable);
  block.Put(kTable, 2, static_cast<std::uint32_t>(fields.size()));
  std::size_t at = kTable + 2;
  std::size_t rational = tableEnd;
  for (const Field& field : fields) {
    block.Put(at, 2, field.tag);
    block.Put(at + 2, 2, field.type);
    block.Put(at + 4, 4, 1);
    if (field.type == kRational) {
      block.Put(at + 8, 4, static_cast<std::uint32_t>(rational));
      block.Put(rational, 4, field.value);
      block.Put(rational + 4, 4, 1);
      rational += 8;
    } else {
      block.Put(at + 8, 2, field.value);
    }
    at += kEntrySize;
  }
  return block.Release();
}

}  // namespace quillon::imaging
