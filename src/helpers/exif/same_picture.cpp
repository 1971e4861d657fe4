// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/same_picture.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "helpers/exif/tiff_data.h"

namespace quillon::helpers {
namespace {

using namespace std::string_view_literals;

unsigned Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

// Adds a length in front of each part, so that parts cannot flow into each other.
void Add(std::string& all, std::string_view part) {
  all += std::to_string(part.size()) + ':';
  all += part;
}

// Application data and comments say nothing of the samples, but for the marker that tells how colours are coded.
bool IsDescription(unsigned marker) { return (marker >= 0xE0 && marker <= 0xED) || marker == 0xEF || marker == 0xFE; }

bool JpegPicture(std::string_view bytes, std::string& all) {
  constexpr unsigned kScan = 0xDA;
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && Byte(bytes, at) == 0xFF) {
    const unsigned marker = Byte(bytes, at + 1);
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    if (marker == kScan) {
      Add(all, bytes.substr(at));
      return true;
    }
    const std::size_t size = 2 + (Byte(bytes, at + 2) << 8 | Byte(bytes, at + 3));
    if (size < 4 || at + size > bytes.size()) return false;
    if (!IsDescription(marker)) Add(all, bytes.substr(at, size));
    at += size;
  }
  return false;
}

bool PngPicture(std::string_view bytes, std::string& all) {
  static constexpr std::array kParts = {"IHDR"sv, "PLTE"sv, "tRNS"sv, "IDAT"sv};
  for (std::size_t at = 8; at + 12 <= bytes.size();) {
    const std::size_t size =
        std::size_t{Byte(bytes, at)} << 24 | Byte(bytes, at + 1) << 16 | Byte(bytes, at + 2) << 8 | Byte(bytes, at + 3);
    if (size > bytes.size() - at - 12) return false;
    const std::string_view name = bytes.substr(at + 4, 4);
    if (name == "IEND") return true;
    for (const std::string_view part : kParts) {
      if (name == part) Add(all, bytes.substr(at, size + 12));
    }
    at += size + 12;
  }
  return false;
}

bool PictureOf(std::string_view bytes, std::string& all) {
  if (bytes.starts_with("\xFF\xD8")) return JpegPicture(bytes, all);
  if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return PngPicture(bytes, all);
  if (bytes.starts_with("II") || bytes.starts_with("MM")) return TiffPictures(bytes, all);
  return false;
}

}  // namespace

bool SamePicture(std::string_view before, std::string_view after) {
  std::string a;
  std::string b;
  return PictureOf(before, a) && PictureOf(after, b) && a == b;
}

}  // namespace quillon::helpers
