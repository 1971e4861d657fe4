// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/measure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/limits.h"
#include "imaging/metadata/bmp_head.h"
#include "imaging/metadata/picture_format.h"
#include "imaging/metadata/tiff_tags.h"

namespace quillon::imaging {
namespace {

using host::FileFacts;
using host::FileKind;
using host::Problem;

// --- The headers of files.

// The longest head of a JPEG that is read. Extended XMP and profiles make heads of some megabytes.
constexpr std::size_t kJpegHeadMax = std::size_t{32} << 20;
// How many blocks of a PNG are searched for its resolution.
constexpr int kPngBlocksMax = 16;
constexpr double kMetresPerInch = 0.0254;
constexpr double kCentimetresPerInch = 2.54;
constexpr double kDpiMax = 65535;

int Rounded(double dpi) { return dpi >= 0.5 && dpi <= kDpiMax ? static_cast<int>(std::lround(dpi)) : 0; }

// Returns {0, 0} if a side is 0 or no int.
base::Size SizeOf(std::uint64_t width, std::uint64_t height) {
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  if (width == 0 || height == 0 || width > kMost || height > kMost) return {};
  return {static_cast<int>(width), static_cast<int>(height)};
}

// Returns a number of count bytes, most significant first; nothing beyond the end of the file.
std::optional<std::uint64_t> BigEndian(Bytes& bytes, std::uint64_t at, std::size_t count) {
  std::array<unsigned char, 8> read{};
  if (!bytes.ReadAt(at, read.data(), count)) return std::nullopt;
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < count; ++i) value = value << 8 | read[i];
  return value;
}

// Reads more and more of the beginning until the picture data begins.
HeaderKind ReadJpeg(Bytes& bytes, HeaderFacts& facts) {
  std::string begin;
  for (std::size_t length = BlockBytes::kBlock; length <= kJpegHeadMax; length *= 4) {
    const std::size_t known = begin.size();
    begin.resize(static_cast<std::size_t>(std::min<std::uint64_t>(length, bytes.Size())));
    if (!bytes.ReadAt(known, begin.data() + known, begin.size() - known)) break;
    JpegHead head;
    const HeadState state = ParseJpegHead(begin, head);
    if (head.avi) return HeaderKind::Other;
    if (!head.frame.Empty()) facts.size = head.frame;
    if (state == HeadState::Complete) facts.dpi = head.Dpi();
    if (state != HeadState::More || begin.size() < length) break;
  }
  return HeaderKind::Known;
}

// Returns the horizontal resolution of a PNG, which stands before the picture data; 0 if it does not stand in the
// blocks that are searched. Each chunk has 12 bytes or more, so that the number of chunks is bounded too.
int PngDpi(Bytes& bytes) {
  constexpr std::uint64_t kRead = 17;   // bytes of a chunk that are read at most
  constexpr std::uint64_t kFrame = 12;  // bytes of a chunk besides its content
  std::uint64_t at = 8;
  std::uint64_t blockEnd = BlockBytes::kBlock;
  for (int blocks = 1; blocks <= kPngBlocksMax;) {
    if (at + kRead > blockEnd) {
      blockEnd = at + BlockBytes::kBlock;
      ++blocks;
    }
    const std::optional<std::uint64_t> length = BigEndian(bytes, at, 4);
    std::array<char, 4> name{};
    if (!length || !bytes.ReadAt(at + 4, name.data(), name.size())) return 0;
    const std::string_view type(name.data(), name.size());
    if (type == "IDAT") return 0;
    if (type == "pHYs") {
      const double perMetre = static_cast<double>(BigEndian(bytes, at + 8, 4).value_or(0));
      const bool metres = BigEndian(bytes, at + 16, 1).value_or(0) == 1;
      return metres ? Rounded(perMetre * kMetresPerInch) : 0;
    }
    at += kFrame + *length;
  }
  return 0;
}

void ReadPng(Bytes& bytes, HeaderFacts& facts) {
  std::array<char, 4> name{};
  if (!bytes.ReadAt(12, name.data(), name.size()) || std::string_view(name.data(), name.size()) != "IHDR") return;
  facts.size = SizeOf(BigEndian(bytes, 16, 4).value_or(0), BigEndian(bytes, 20, 4).value_or(0));
  facts.dpi = PngDpi(bytes);
}

void ReadGif(Bytes& bytes, HeaderFacts& facts) {
  std::array<unsigned char, 4> sides{};
  if (bytes.ReadAt(6, sides.data(), sides.size()))
    facts.size = SizeOf(sides[0] | sides[1] << 8, sides[2] | sides[3] << 8);
}

void ReadBmp(Bytes& bytes, HeaderFacts& facts) {
  const std::optional<BmpHead> head = ReadBmpHead(bytes);
  if (!head) return;
  if (head->width > 0) facts.size = SizeOf(head->width, static_cast<std::uint64_t>(std::abs(head->height)));
  if (head->perMetre > 0) facts.dpi = Rounded(static_cast<double>(head->perMetre) * kMetresPerInch);
}

// Reads the first directory alone, so that it does not matter where the chain of directories leads.
void ReadTiff(Bytes& bytes, HeaderFacts& facts) {
  constexpr std::uint32_t kWidth = 256;
  constexpr std::uint32_t kLength = 257;
  constexpr std::uint32_t kXResolution = 282;
  constexpr std::uint32_t kResolutionUnit = 296;
  const std::optional<TiffTags> tags = TiffTags::Open(bytes);
  const auto directory = tags ? tags->Directory(tags->First()) : std::nullopt;
  if (!directory) return;
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  double resolution = 0;
  std::uint64_t unit = 2;
  for (const TiffEntry& entry : *directory) {
    if (entry.tag == kWidth) width = tags->Integer(entry).value_or(0);
    if (entry.tag == kLength) height = tags->Integer(entry).value_or(0);
    if (entry.tag == kXResolution) resolution = tags->Rational(entry).value_or(0);
    if (entry.tag == kResolutionUnit) unit = tags->Integer(entry).value_or(2);
  }
  facts.size = SizeOf(width, height);
  facts.dpi = unit == 3 ? Rounded(resolution * kCentimetresPerInch) : unit == 2 ? Rounded(resolution) : 0;
}

void ReadPsd(Bytes& bytes, HeaderFacts& facts) {
  facts.size = SizeOf(BigEndian(bytes, 18, 4).value_or(0), BigEndian(bytes, 14, 4).value_or(0));
}

}  // namespace

HeaderKind ReadHeader(Bytes& file, HeaderFacts& facts) {
  facts = {};
  BlockBytes bytes(file);
  std::array<char, 16> start{};
  const std::size_t known = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.Size(), start.size()));
  if (!bytes.ReadAt(0, start.data(), known)) return HeaderKind::Known;
  facts.format = FormatOf({start.data(), known});
  switch (facts.format) {
    case Format::Jpeg:
      return ReadJpeg(bytes, facts);
    case Format::Png:
      ReadPng(bytes, facts);
      break;
    case Format::Gif:
      ReadGif(bytes, facts);
      break;
    case Format::Tiff:
      ReadTiff(bytes, facts);
      break;
    case Format::Bmp:
      ReadBmp(bytes, facts);
      break;
    case Format::Psd:
      ReadPsd(bytes, facts);
      break;
    case Format::Unknown:
      return HeaderKind::Other;
  }
  return HeaderKind::Known;
}

namespace {

// --- The memory of what was measured.

struct Answer {
  host::FileStamp stamp;
  int width = 0;
  int height = 0;
  int dpi = 0;
  Format format = Format::Unknown;
};

// Remembers answers by path. Of the path only a hash is kept, so the stamp of the file has to agree as well. When the
// younger half is full, the older one is dropped.
class Memory {
 public:
  std::optional<Answer> Find(const std::string& path, const FileFacts& file) {
    const std::uint64_t key = KeyOf(path, file);
    const std::lock_guard lock(mutex_);
    for (Half* half : {&young_, &old_}) {
      const auto found = half->find(key);
      if (found != half->end() && Unchanged(found->second.stamp, StampOf(file))) return found->second;
    }
    return std::nullopt;
  }

  void Keep(const std::string& path, const FileFacts& file, const Answer& answer) {
    const std::uint64_t key = KeyOf(path, file);
    const std::lock_guard lock(mutex_);
    MakeRoom();
    young_[key] = answer;
  }

  void Limit(std::size_t count) {
    const std::lock_guard lock(mutex_);
    half_ = count / 2;
    if (old_.size() > half_) old_ = {};
    MakeRoom();
  }

 private:
  using Half = std::unordered_map<std::uint64_t, Answer>;

  void MakeRoom() {
    if (young_.size() < half_) return;
    old_ = std::move(young_);
    young_ = {};
  }

  static std::uint64_t KeyOf(const std::string& path, const FileFacts& file) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;
    return std::hash<std::string_view>{}(path) ^ (file.device * kSpread);
  }

  std::mutex mutex_;
  std::size_t half_ = kSizesRemembered / 2;
  Half young_;
  Half old_;
};

// Their resolution is the loader's too.
bool IsPsd(const std::string& path) { return base::ToLowerAscii(path).find(".psd") != std::string::npos; }

ImageFacts FactsOf(const std::string& path, const Answer& answer, Want want) {
  return {answer.width, answer.height, want == Want::SizeAndDpi || IsPsd(path) ? answer.dpi : 0, answer.format};
}

// Reads the header of the file at path.
Status ReadHeaderOf(const std::string& path, HeaderKind& kind, HeaderFacts& facts) {
  std::shared_ptr<FileBytes> bytes;
  if (Status status = FileBytes::Open(path, bytes); !status) return status;
  if (bytes->Size() == 0) return {Problem::Damaged, "图片文件是空的"};
  kind = ReadHeader(*bytes, facts);
  return Status::Ok();
}

}  // namespace

struct Measurer::Parts {
  host::Files& files;
  Loader loader;
  OtherKinds otherKinds;
  Memory memory;

  Parts(host::Files& f, Loader byOpening, OtherKinds others)
      : files(f), loader(std::move(byOpening)), otherKinds(std::move(others)) {}

  Status MeasureFile(const std::string& path, const KeepWaiting& keepWaiting, Answer& answer) {
    if (IsPsd(path)) return MeasureByLoading(path, answer);
    HeaderKind kind = HeaderKind::Other;
    HeaderFacts facts;
    if (Status status = ReadHeaderOf(path, kind, facts); !status) return status;
    answer.format = facts.format;
    if (kind == HeaderKind::Other && otherKinds) {
      const Status status = otherKinds(path, keepWaiting, facts.size);
      if (!status && status.GetProblem() != Problem::Unsupported) return status;
    }
    if (facts.size.Empty()) return MeasureByLoading(path, answer);
    answer.width = facts.size.width;
    answer.height = facts.size.height;
    answer.dpi = facts.dpi;
    return Status::Ok();
  }

  Status MeasureByLoading(const std::string& path, Answer& answer) {
    ImageFacts facts;
    const Status status = loader(path, facts);
    answer.width = facts.width;
    answer.height = facts.height;
    answer.dpi = facts.dpi;
    return status;
  }
};

Measurer::Measurer(host::Files& files, Loader loader, OtherKinds otherKinds)
    : parts_(std::make_unique<Parts>(files, std::move(loader), std::move(otherKinds))) {}

Measurer::~Measurer() = default;

Status Measurer::Measure(const std::string& path, ImageFacts& facts, Want want, const KeepWaiting& keepWaiting) {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  if (!file) return {Problem::Missing, "找不到图片文件"};
  if (file->kind != FileKind::File) return {Problem::Unsupported, "不是图片文件"};

  const std::optional<Answer> known = parts_->memory.Find(path, *file);
  Answer answer = known.value_or(Answer{.stamp = StampOf(*file)});
  if (!known) {
    if (Status status = parts_->MeasureFile(path, keepWaiting, answer); !status) return status;
    const std::optional<FileFacts> after = parts_->files.Stat(path);
    if (after && Unchanged(*file, *after)) parts_->memory.Keep(path, *file, answer);
  }
  facts = FactsOf(path, answer, want);
  return Status::Ok();
}

void Measurer::Remember(std::size_t count) { parts_->memory.Limit(count); }

bool Measurer::Recall(const std::string& path, ImageFacts& facts, Want want) const {
  const std::optional<FileFacts> file = parts_->files.Stat(path);
  if (!file || file->kind != FileKind::File) return false;
  const std::optional<Answer> known = parts_->memory.Find(path, *file);
  if (!known) return false;
  facts = FactsOf(path, *known, want);
  return true;
}

}  // namespace quillon::imaging
