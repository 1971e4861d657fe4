// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

// Small files made byte by byte, with the headers of pictures. Those of compressed formats have no valid pixels.
namespace quillon::imaging::testing {

// Numbers, least significant byte first and most significant byte first.
inline std::string Little(unsigned long value, int size) {
  std::string out;
  for (int i = 0; i < size; ++i) out.push_back(static_cast<char>(value >> (8 * i) & 0xFF));
  return out;
}
inline std::string Big(unsigned long value, int size) {
  const std::string little = Little(value, size);
  return {little.rbegin(), little.rend()};
}

inline std::string Bmp(int width, int height, unsigned perMetre) {
  const std::string pixels(static_cast<std::size_t>((width * 3 + 3) / 4 * 4 * height), '\x55');
  return "BM" + Little(54 + pixels.size(), 4) + Little(0, 4) + Little(54, 4) + Little(40, 4) +
         Little(static_cast<unsigned long>(width), 4) + Little(static_cast<unsigned long>(height), 4) + Little(1, 2) +
         Little(24, 2) + Little(0, 4) + Little(pixels.size(), 4) + Little(perMetre, 4) + Little(perMetre, 4) +
         Little(0, 8) + pixels;
}

inline std::string Chunk(const std::string& type, const std::string& data) {
  return Big(data.size(), 4) + type + data + Big(0, 4);
}

inline std::string Png(int width, int height, const std::string& more) {
  return "\x89PNG\r\n\x1A\n" +
         Chunk("IHDR", Big(static_cast<unsigned long>(width), 4) + Big(static_cast<unsigned long>(height), 4) +
                           std::string("\x08\x02\0\0\0", 5)) +
         more + Chunk("IDAT", "") + Chunk("IEND", "");
}

// A TIFF with one directory after the pixels, as many writers place it.
inline std::string Tiff(bool big, int width, int height, unsigned dpi, unsigned unit) {
  const auto number = [&](unsigned long value, int size) { return big ? Big(value, size) : Little(value, size); };
  const auto entry = [&](unsigned tag, unsigned type, unsigned long value) {
    const std::string shown = type == 3 ? number(value, 2) + number(0, 2) : number(value, 4);
    return number(tag, 2) + number(type, 2) + number(1, 4) + shown;
  };
  const std::string pixels(static_cast<std::size_t>(width * height), '\x55');
  const unsigned long rational = 8 + pixels.size();
  return (big ? std::string("MM\0*", 4) : std::string("II*\0", 4)) + number(rational + 8, 4) + pixels + number(dpi, 4) +
         number(1, 4) + number(10, 2) + entry(256, 4, static_cast<unsigned long>(width)) +
         entry(257, 4, static_cast<unsigned long>(height)) + entry(258, 3, 8) + entry(259, 3, 1) + entry(262, 3, 1) +
         entry(273, 4, 8) + entry(277, 3, 1) + entry(279, 4, pixels.size()) + entry(282, 5, rational) +
         entry(296, 3, unit) + number(0, 4);
}

inline std::string BigTiff(bool big, unsigned dpi) {
  const auto number = [&](unsigned long value, int size) { return big ? Big(value, size) : Little(value, size); };
  return (big ? "MM" : "II") + number(43, 2) + number(8, 2) + number(0, 2) + number(16, 8) + number(2, 8) +
         number(282, 2) + number(5, 2) + number(1, 8) + number(dpi, 4) + number(1, 4) + number(296, 2) + number(3, 2) +
         number(1, 8) + number(2, 2) + std::string(6, '\0') + number(0, 8);
}

inline std::string Gif(int width, int height) {
  const std::string size = Little(static_cast<unsigned long>(width), 2) + Little(static_cast<unsigned long>(height), 2);
  return "GIF89a" + size + std::string("\0\0\0", 3) + "," + Little(0, 4) + size + std::string("\0\x02\x01\x44\0;", 6);
}

// A directory whose next one is itself.
inline std::string CyclicTiff(int width, int height) {
  std::string tiff = Tiff(false, width, height, 72, 2);
  return tiff.replace(tiff.size() - 4, 4, tiff.substr(4, 4));
}

// Classic little-endian TIFF of empty pages, all of that size.
inline std::string TiffOfPages(int count, int width, int height) {
  std::string tiff("II*\0\x08\0\0\0", 8);
  const auto entry = [](unsigned tag, unsigned long value) {
    return Little(tag, 2) + Little(4, 2) + Little(1, 4) + Little(value, 4);
  };
  for (int page = 1; page <= count; ++page) {
    tiff += Little(3, 2) + entry(256, static_cast<unsigned long>(width)) +
            entry(257, static_cast<unsigned long>(height)) + entry(262, 1);
    tiff += Little(page < count ? tiff.size() + 4 : 0, 4);
  }
  return tiff;
}

// PNG with that many empty chunks before the pixels.
inline std::string PngOfChunks(int count, int width, int height) {
  std::string chunks;
  for (int i = 0; i < count; ++i) chunks += Chunk("quLn", "");
  return Png(width, height, chunks);
}

// Uncompressed TGA, a format that only MediaInfo measures.
inline std::string Tga(int width, int height) {
  return std::string("\0\0\2\0\0\0\0\0\0\0\0\0", 12) + Little(static_cast<unsigned long>(width), 2) +
         Little(static_cast<unsigned long>(height), 2) + std::string("\x18\0", 2) +
         std::string(static_cast<std::size_t>(width * height * 3), '\x55');
}

}  // namespace quillon::imaging::testing
