// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <cmath>
#include <cstdint>
#include <fstream>
#include <memory>
#include <optional>
#include <string_view>

#include "imaging/io/bytes.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/measure/measure.h"
#include "imaging/metadata/tiff_tags.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kHeadMax = std::size_t{32} << 20;
constexpr double kMetresPerInch = 0.0254;
constexpr double kCentimetresPerInch = 2.54;
constexpr double kDpiMax = 65535;

int Rounded(double dpi) { return dpi >= 0.5 && dpi <= kDpiMax ? static_cast<int>(std::lround(dpi)) : 0; }

// Reads numbers at positions of a file. Once a position cannot be read, Good returns false and all further numbers are
// 0.
class Reader {
 public:
  explicit Reader(const std::string& path) : file_(path, std::ios::binary) {}

  bool Good() const { return file_.good(); }
  void SetBigEndian(bool big) { big_ = big; }

  std::string Bytes(std::uint64_t at, std::size_t size) {
    std::string bytes(size, '\0');
    file_.seekg(static_cast<std::streamoff>(at));
    file_.read(bytes.data(), static_cast<std::streamsize>(size));
    return bytes;
  }

  // Returns the first size bytes, or the whole file if it is shorter.
  std::string Begin(std::size_t size) {
    std::string bytes = Bytes(0, size);
    bytes.resize(static_cast<std::size_t>(file_.gcount()));
    file_.clear();
    return bytes;
  }

  std::uint64_t Number(std::uint64_t at, int size) {
    const std::string bytes = Bytes(at, static_cast<std::size_t>(size));
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
      const std::size_t from = static_cast<std::size_t>(big_ ? i : size - 1 - i);
      value = value << 8 | static_cast<unsigned char>(bytes[from]);
    }
    return Good() ? value : 0;
  }

 private:
  std::ifstream file_;
  bool big_ = true;
};

int JpegDpi(Reader& reader) {
  for (std::size_t size = std::size_t{64} * 1024; size <= kHeadMax; size *= 4) {
    const std::string bytes = reader.Begin(size);
    JpegHead head;
    const HeadState state = ParseJpegHead(bytes, head);
    if (state == HeadState::Complete) return head.Dpi();
    if (state != HeadState::More || bytes.size() < size) return 0;
  }
  return 0;
}

int PngDpi(Reader& reader) {
  std::uint64_t at = 8;
  constexpr int kChunksMax = 10000;
  for (int i = 0; i < kChunksMax; ++i) {
    const std::uint64_t length = reader.Number(at, 4);
    const std::string type = reader.Bytes(at + 4, 4);
    if (!reader.Good() || type == "IDAT") return 0;
    if (type == "pHYs") {
      const double perMetre = static_cast<double>(reader.Number(at + 8, 4));
      const bool metres = reader.Number(at + 16, 1) == 1;
      return metres ? Rounded(perMetre * kMetresPerInch) : 0;
    }
    at += 12 + length;
  }
  return 0;
}

int BmpDpi(Reader& reader) {
  reader.SetBigEndian(false);
  constexpr std::uint64_t kInfoHeader = 40;
  if (reader.Number(14, 4) < kInfoHeader) return 0;
  return Rounded(static_cast<double>(reader.Number(38, 4)) * kMetresPerInch);
}

// Reads the first directory.
int TiffDpi(const std::string& path) {
  constexpr std::uint32_t kXResolution = 282;
  constexpr std::uint32_t kResolutionUnit = 296;
  std::shared_ptr<FileBytes> bytes;
  if (!FileBytes::Open(path, bytes)) return 0;
  const std::optional<TiffTags> tags = TiffTags::Open(*bytes);
  const auto directory = tags ? tags->Directory(tags->First()) : std::nullopt;
  if (!directory) return 0;
  double resolution = 0;
  std::uint64_t unit = 2;
  for (const TiffEntry& entry : *directory) {
    if (entry.tag == kResolutionUnit) unit = tags->Integer(entry).value_or(2);
    if (entry.tag == kXResolution) resolution = tags->Rational(entry).value_or(0);
  }
  if (unit == 3) return Rounded(resolution * kCentimetresPerInch);
  return unit == 2 ? Rounded(resolution) : 0;
}

}  // namespace

int ReadDpi(const std::string& path) {
  Reader reader(path);
  if (!reader.Good()) return 0;
  const std::string begin = reader.Begin(8);
  const std::string_view view = begin;
  if (view.starts_with("\xFF\xD8\xFF"sv)) return JpegDpi(reader);
  if (view.starts_with("\x89PNG\r\n\x1A\n"sv)) return PngDpi(reader);
  if (view.starts_with("BM"sv)) return BmpDpi(reader);
  for (const std::string_view head : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (view.starts_with(head)) return TiffDpi(path);
  }
  return 0;
}

}  // namespace quillon::imaging
