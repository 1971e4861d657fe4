// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/text_mask.h"

#include <algorithm>
#include <cstring>

#include "base/utf8.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr std::size_t kMostBytes = 1000;

// The text renderer parses markup, so characters with a meaning there are escaped.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    switch (letter) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      default:
        escaped += static_cast<unsigned char>(letter) < ' ' ? ' ' : letter;
        break;
    }
  }
  return escaped;
}

}  // namespace

Status DrawTextMask(const std::string& text, double pixels, TextMask& mask) {
  if (text.empty() || text.size() > kMostBytes) return fault::EmptyRectangle();
  return Guarded(fault::NoImage(), [&] {
    const std::string font = "Sans " + std::to_string(std::clamp(pixels, 4.0, 1000.0));
    // At 72 dpi a point is one pixel.
    const VImage drawn = VImage::text(Escaped(base::DisplayText(text)).c_str(),
                                      VImage::option()->set("font", font.c_str())->set("dpi", 72));
    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&g_free)> bytes(drawn.extract_band(0).write_to_memory(&size), g_free);
    const auto* from = static_cast<const unsigned char*>(bytes.get());
    mask = {{drawn.width(), drawn.height()}, {from, from + size}};
    return Status::Ok();
  });
}

Status ImageOfMask(const TextMask& mask, base::Colour colour, Image& out) {
  if (mask.size.Empty()) return fault::EmptyRectangle();
  return Guarded(fault::OutOfMemory(), [&] {
    auto* bytes = const_cast<unsigned char*>(mask.cover.data());
    const VImage cover =
        VImage::new_from_memory(bytes, mask.cover.size(), mask.size.width, mask.size.height, 1, VIPS_FORMAT_UCHAR);
    const std::vector<double> paint = {static_cast<double>(colour.Red()), static_cast<double>(colour.Green()),
                                       static_cast<double>(colour.Blue())};
    auto data = std::make_unique<ImageData>();
    data->picture.pixels = cover.new_from_image(paint)
                               .bandjoin(cover)
                               .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
                               .copy_memory();
    out = Image(std::move(data));
    return Status::Ok();
  });
}

}  // namespace quillon::imaging
