// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/gif/gif_math.h"

#include <algorithm>

namespace quillon::formats {
namespace {

std::string Quoted(const std::string& path) { return '"' + path + '"'; }

std::string FilterText(const std::string& name, const base::Rect& rect) {
  return name + "=x=" + std::to_string(rect.left) + ":y=" + std::to_string(rect.top) +
         ":w=" + std::to_string(rect.width) + ":h=" + std::to_string(rect.height);
}

std::string PaletteUseText(const std::string& source, const std::string& palette, const std::string& filter,
                           const std::string& target) {
  return "-i " + Quoted(source) + " -i " + Quoted(palette) + " -filter_complex \"" + filter +
         ",scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse\"  -y -q:v 0 " + Quoted(target);
}

}  // namespace

base::Rect LogoRegion(base::Rect rect, base::Size picture) {
  if (rect.left == 0) rect.left = 1;
  if (rect.top == 0) rect.top = 1;
  rect.width = std::min(rect.width, picture.width - rect.left);
  rect.height = std::min(rect.height, picture.height - rect.top);
  return rect;
}

std::string CropText(const std::string& source, const base::Rect& rect, const std::string& target) {
  return "-i " + Quoted(source) + " -vf " + FilterText("crop", rect) + " -y -q:v 0 " + Quoted(target);
}

std::string PaletteText(const std::string& source, const std::string& palette) {
  return "-i " + Quoted(source) + " -vf \"fps=2,scale=-1:-1::flags=lanczos,palettegen\" -y -q:v 0 " + Quoted(palette);
}

std::string PaletteCropText(const std::string& source, const std::string& palette, const base::Rect& rect,
                            const std::string& target) {
  return PaletteUseText(source, palette, FilterText("crop", rect), target);
}

std::string PaletteLogoText(const std::string& source, const std::string& palette, const base::Rect& rect,
                            const std::string& target) {
  return PaletteUseText(source, palette, FilterText("delogo", rect), target);
}

}  // namespace quillon::formats
