// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure_dpi.h"

#include <cmath>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "imaging/jpeg_head.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t kHeadMax = std::size_t{32} << 20;
constexpr double kMetresPerInch = 0.0254;
constexpr double kCentimetresPerInch = 2.54;
constexpr double kDpiMax = 65535;

int Rounded(double dpi) { return dpi >= 0.5 && dpi <= kDpiMax ? static_cast<int>(std::lround(dpi)) : 0; }

// Numbers at positions of a file. A position that cannot be read ends all further reading: Good tells.
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

  // As many as there are, up to size.
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

// First directory. BigTIFF has wider counts and offsets.
int TiffDpi(Reader& reader, bool bigEndian) {
  constexpr std::uint64_t kXResolution = 282;
  constexpr std::uint64_t kResolutionUnit = 296;
  constexpr std::uint64_t kEntriesMax = 4096;
  reader.SetBigEndian(bigEndian);
  const bool wide = reader.Number(2, 2) == 43;
  const int offsetSize = wide ? 8 : 4;
  const int countSize = wide ? 8 : 2;
  const std::uint64_t entrySize = wide ? 20 : 12;
  const std::uint64_t directory = reader.Number(wide ? 8 : 4, offsetSize);
  const std::uint64_t count = reader.Number(directory, countSize);
  double resolution = 0;
  std::uint64_t unit = 2;
  for (std::uint64_t i = 0; i < count && i < kEntriesMax && reader.Good(); ++i) {
    const std::uint64_t entry = directory + static_cast<std::uint64_t>(countSize) + i * entrySize;
    const std::uint64_t value = entry + (wide ? 12 : 8);
    const std::uint64_t tag = reader.Number(entry, 2);
    if (tag == kResolutionUnit) unit = reader.Number(value, 2);
    if (tag != kXResolution) continue;
    // Eight bytes stand in the entry itself where it has room for them.
    const std::uint64_t at = wide ? value : reader.Number(value, 4);
    const double divisor = static_cast<double>(reader.Number(at + 4, 4));
    if (divisor > 0) resolution = static_cast<double>(reader.Number(at, 4)) / divisor;
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
  if (view.starts_with("II*\0"sv) || view.starts_with("II+\0"sv)) return TiffDpi(reader, false);
  if (view.starts_with("MM\0*"sv) || view.starts_with("MM\0+"sv)) return TiffDpi(reader, true);
  return 0;
}

}  // namespace quillon::imaging
