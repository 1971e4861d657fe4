// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_head.h"

#include <cmath>

#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;

constexpr int kStartOfImage = 0xD8;
constexpr int kEndOfImage = 0xD9;
constexpr int kStartOfScan = 0xDA;
constexpr int kApp0 = 0xE0;
constexpr int kApp1 = 0xE1;
constexpr int kApp2 = 0xE2;
constexpr int kApp14 = 0xEE;
constexpr std::size_t kIccSegmentsMax = 255;

int Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }
int Word(std::string_view bytes, std::size_t at) { return Byte(bytes, at) << 8 | Byte(bytes, at + 1); }

bool StandsAlone(int marker) { return marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7); }

void ReadJfif(std::string_view payload, JpegHead& head) {
  if (head.jfif || payload.size() < 14 || !payload.starts_with("JFIF\0"sv)) return;
  head.jfif = true;
  const int unit = Byte(payload, 7);
  head.unit = unit == 1 || unit == 2 ? static_cast<JpegHead::Unit>(unit) : JpegHead::Unit::None;
  head.densityX = Word(payload, 8);
  head.densityY = Word(payload, 10);
}

void ReadSegment(int marker, std::string_view payload, JpegHead& head) {
  if (marker == kApp0) {
    ReadJfif(payload, head);
  } else if (marker == kApp1) {
    if (head.exif.empty() && payload.starts_with("Exif\0"sv) && payload.size() > 6) head.exif = payload.substr(6);
  } else if (marker == kApp2) {
    if (payload.starts_with("ICC_PROFILE\0"sv) && head.icc.size() < kIccSegmentsMax) head.icc.push_back(payload);
  } else if (marker == kApp14) {
    if (payload.starts_with("Adobe"sv) && payload.size() >= 12) head.adobe = true;
  }
}

}  // namespace

int JpegHead::Dpi() const {
  if (jfif && densityX > 0) {
    if (unit == Unit::Inch) return densityX;
    if (unit == Unit::Centimetre) return static_cast<int>(std::lround(densityX * 2.54));
  }
  return ReadExif(exif).dpi;
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

}  // namespace quillon::imaging
