// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_head.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;

constexpr int kStartOfImage = 0xD8;
constexpr int kTables = 0xDB;
constexpr int kEndOfImage = 0xD9;
constexpr int kStartOfScan = 0xDA;
constexpr int kApp0 = 0xE0;
constexpr int kApp1 = 0xE1;
constexpr int kApp2 = 0xE2;
constexpr int kApp14 = 0xEE;
constexpr std::size_t kIccSegmentsMax = 255;
constexpr std::size_t kIccSegmentHead = 14;  // "ICC_PROFILE", zero, number, count

// The luminance table of the standard, which encoders scale by quality.
constexpr std::array<int, 64> kStandard = {16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,
                                           14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,
                                           18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,
                                           49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};

int Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }
int Word(std::string_view bytes, std::size_t at) { return Byte(bytes, at) << 8 | Byte(bytes, at + 1); }

// Frame markers SOF0 to SOF15, without DHT, JPG and DAC.
bool IsFrame(int marker) {
  constexpr int kHuffmanTables = 0xC4;
  constexpr int kExtensions = 0xC8;
  constexpr int kArithmeticTables = 0xCC;
  return marker >= 0xC0 && marker <= 0xCF && marker != kHuffmanTables && marker != kExtensions &&
         marker != kArithmeticTables;
}

bool StandsAlone(int marker) { return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7); }

void ReadJfif(std::string_view payload, JpegHead& head) {
  if (head.jfif || payload.size() < 14 || !payload.starts_with("JFIF\0"sv)) return;
  head.jfif = true;
  const int unit = Byte(payload, 7);
  head.unit = unit == 1 || unit == 2 ? static_cast<JpegHead::Unit>(unit) : JpegHead::Unit::None;
  head.densityX = Word(payload, 8);
  head.densityY = Word(payload, 10);
}

void ReadFrame(std::string_view payload, JpegHead& head) {
  if (payload.size() >= 6 && head.frame == base::Size{}) head.frame = {Word(payload, 3), Word(payload, 1)};
}

void ReadSegment(int marker, std::string_view payload, JpegHead& head) {
  if (IsFrame(marker)) {
    ReadFrame(payload, head);
  } else if (marker == kApp0) {
    ReadJfif(payload, head);
    if (payload.starts_with("AVI1"sv)) head.avi = true;
  } else if (marker == kApp1) {
    if (head.exif.empty() && payload.starts_with("Exif\0"sv) && payload.size() > 6) head.exif = payload.substr(6);
  } else if (marker == kApp2) {
    if (payload.starts_with("ICC_PROFILE\0"sv) && head.icc.size() < kIccSegmentsMax) head.icc.push_back(payload);
  } else if (marker == kApp14) {
    if (payload.starts_with("Adobe"sv) && payload.size() >= 12) head.adobe = true;
  }
}

// The sum of the table with number 0 in a segment of tables, or 0.
int LuminanceSum(std::string_view tables) {
  while (!tables.empty()) {
    const bool wide = Byte(tables, 0) >> 4 != 0;
    const bool wanted = (Byte(tables, 0) & 15) == 0;
    const std::size_t size = 1 + (wide ? 2 : 1) * kStandard.size();
    if (tables.size() < size) return 0;
    int sum = 0;
    for (std::size_t i = 0; i < kStandard.size(); ++i) {
      sum += wide ? Word(tables, 1 + 2 * i) : Byte(tables, 1 + i);
    }
    if (wanted) return sum;
    tables.remove_prefix(size);
  }
  return 0;
}

// The sum of the table that an encoder uses at that quality.
int SumAt(int quality) {
  const int scale = quality < 50 ? 5000 / quality : 200 - 2 * quality;
  int sum = 0;
  for (const int value : kStandard) sum += std::clamp((value * scale + 50) / 100, 1, 255);
  return sum;
}

int QualityOfSum(int wanted) {
  int best = 1;
  for (int quality = 2; quality <= 100; ++quality) {
    if (std::abs(SumAt(quality) - wanted) <= std::abs(SumAt(best) - wanted)) best = quality;
  }
  return best;
}

}  // namespace

int JpegHead::Dpi() const {
  if (jfif && densityX > 0) {
    if (unit == Unit::Inch) return densityX;
    if (unit == Unit::Centimetre) return static_cast<int>(std::lround(densityX * 2.54));
  }
  return ReadExif(exif).dpi;
}

std::string JpegHead::Profile() const {
  std::string profile;
  for (std::size_t number = 1; number <= icc.size(); ++number) {
    const auto found = std::find_if(icc.begin(), icc.end(), [&](std::string_view segment) {
      return segment.size() >= kIccSegmentHead && static_cast<unsigned char>(segment[12]) == number;
    });
    if (found == icc.end()) return {};
    profile += found->substr(kIccSegmentHead);
  }
  return profile;
}

HeadState ParseJpegHead(std::string_view bytes, JpegHead& head) {
  if (bytes.size() < 3) return HeadState::NotJpeg;
  if (Byte(bytes, 0) != 0xFF || Byte(bytes, 1) != kStartOfImage || Byte(bytes, 2) != 0xFF) return HeadState::NotJpeg;
  head = {};
  std::size_t at = 2;
  for (;;) {
    // Stray bytes between segments and fill bytes are passed over, as decoders do.
    while (at < bytes.size() && Byte(bytes, at) != 0xFF) ++at;
    while (at < bytes.size() && Byte(bytes, at) == 0xFF) ++at;
    if (at >= bytes.size()) return HeadState::More;
    const int marker = Byte(bytes, at++);
    if (marker == 0 || StandsAlone(marker)) continue;
    if (marker == kEndOfImage) return HeadState::Broken;
    if (marker == kStartOfScan) return HeadState::Complete;
    if (bytes.size() - at < 2) return HeadState::More;
    const std::size_t length = static_cast<std::size_t>(Word(bytes, at));
    if (length < 2) return HeadState::Broken;
    if (bytes.size() - at < length) return HeadState::More;
    ReadSegment(marker, bytes.substr(at + 2, length - 2), head);
    at += length;
  }
}

int JpegQuality(std::string_view bytes) {
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && Byte(bytes, at) == 0xFF) {
    const int marker = Byte(bytes, at + 1);
    const std::size_t size = static_cast<std::size_t>(Word(bytes, at + 2));
    if (marker == kStartOfScan || size < 2) return 0;
    if (marker == kTables && at + 2 + size <= bytes.size()) {
      if (const int sum = LuminanceSum(bytes.substr(at + 4, size - 2)); sum > 0) return QualityOfSum(sum);
    }
    at += 2 + size;
  }
  return 0;
}

}  // namespace quillon::imaging
