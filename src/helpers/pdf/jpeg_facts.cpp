// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/jpeg_facts.h"

#include "imaging/jpeg/jpeg_head.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::helpers {
namespace {

constexpr std::size_t kProfilePartHead = 14;

host::Status Damaged() { return {host::Problem::Damaged, "图片数据损坏或不完整"}; }

int Byte(std::string_view bytes, std::size_t at) { return static_cast<unsigned char>(bytes[at]); }

int Word(std::string_view bytes, std::size_t at) { return Byte(bytes, at) << 8 | Byte(bytes, at + 1); }

bool IsFrame(int marker) {
  return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

// Returns the offset of the frame segment, after its marker; 0 if there is none before the picture data.
std::size_t FindFrame(std::string_view bytes, int& marker) {
  std::size_t at = 2;
  while (at + 4 <= bytes.size() && Byte(bytes, at) == 0xFF) {
    marker = Byte(bytes, at + 1);
    if (marker == 0xFF) {
      ++at;
      continue;
    }
    if (marker == 0xDA || marker == 0xD9) return 0;
    if (IsFrame(marker)) return at + 2;
    at += 2 + static_cast<std::size_t>(Word(bytes, at + 2));
  }
  return 0;
}

// Returns the parts of the profile in their order; "" if one is missing or the profile does not match the components.
std::string ProfileOf(const imaging::JpegHead& head, int components) {
  std::string profile;
  for (std::size_t number = 1; number <= head.icc.size(); ++number) {
    for (const std::string_view part : head.icc) {
      if (part.size() >= kProfilePartHead && static_cast<unsigned char>(part[12]) == number) {
        profile += part.substr(kProfilePartHead);
        break;
      }
    }
  }
  const char* colours = components == 1 ? "GRAY" : components == 3 ? "RGB " : "CMYK";
  const bool fits =
      profile.size() >= 128 && profile.compare(36, 4, "acsp") == 0 && profile.compare(16, 4, colours) == 0;
  return fits ? profile : "";
}

}  // namespace

host::Status ReadJpegFacts(std::string_view bytes, JpegFacts& facts) {
  imaging::JpegHead head;
  if (imaging::ParseJpegHead(bytes, head) != imaging::HeadState::Complete) return Damaged();
  // Some encoders append a few bytes after the end marker.
  constexpr std::size_t kTail = 4096;
  if (bytes.substr(bytes.size() - std::min(bytes.size(), kTail)).find("\xFF\xD9") == std::string_view::npos) {
    return Damaged();
  }
  int marker = 0;
  const std::size_t frame = FindFrame(bytes, marker);
  if (frame == 0 || frame + 8 > bytes.size()) return Damaged();
  JpegFacts found;
  found.height = Word(bytes, frame + 3);
  found.width = Word(bytes, frame + 5);
  found.components = Byte(bytes, frame + 7);
  if (found.width == 0 || found.height == 0) return Damaged();
  const bool known = found.components == 1 || found.components == 3 || found.components == 4;
  if (marker > 0xC2 || Byte(bytes, frame + 2) != 8 || !known) {
    return {host::Problem::Unsupported, "不支持这种图片的编码方式"};
  }
  found.inverted = found.components == 4 && head.adobe;
  found.dpi = head.Dpi();
  found.orientation = imaging::ReadExif(head.exif).orientation;
  found.profile = ProfileOf(head, found.components);
  facts = std::move(found);
  return host::Status::Ok();
}

}  // namespace quillon::helpers
