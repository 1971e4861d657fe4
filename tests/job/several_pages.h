// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "imaging/little_files.h"

// Pictures of several pages or frames.
namespace quillon::job {

// A grey tiff of two pages that show the same strip.
inline std::string TwoPages(int width, int height) {
  std::string tiff = imaging::testing::Tiff(false, width, height, 300, 2);
  const std::size_t directory = 8 + static_cast<std::size_t>(width * height) + 8;
  const std::string second = tiff.substr(directory);
  return tiff.replace(tiff.size() - 4, 4, imaging::testing::Little(tiff.size(), 4)) + second;
}

// Repeats the only frame of a gif, so that it has count frames.
inline std::string RepeatedFrame(const std::string& gif, int count) {
  const auto packed = static_cast<unsigned char>(gif.at(10));
  const std::size_t head = 13 + (packed & 0x80 ? std::size_t{6} << (packed & 7) : 0);
  std::string film = gif.substr(0, head);
  for (int i = 0; i < count; ++i) film += gif.substr(head, gif.size() - head - 1);
  return film + ";";
}

// Marks a png as an animation of count frames; the others are missing.
inline std::string Animated(const std::string& png, int count) {
  constexpr std::size_t kHeader = 8 + 25;  // signature and IHDR
  using imaging::testing::Big;
  return png.substr(0, kHeader) +
         imaging::testing::Chunk("acTL", Big(static_cast<unsigned long>(count), 4) + Big(0, 4)) + png.substr(kHeader);
}

}  // namespace quillon::job
