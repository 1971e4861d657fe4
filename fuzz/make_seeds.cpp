// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Writes the first inputs of fuzz_measure: one small file of each kind.
//
// usage: make_seeds FOLDER
#include <cstdio>
#include <fstream>
#include <string>

#include "imaging/little_files.h"

int main(int count, char** arguments) {
  using namespace quillon::imaging::testing;
  if (count != 2) {
    std::fprintf(stderr, "usage: make_seeds FOLDER\n");
    return 2;
  }
  const std::string frame = std::string("\xFF\xC0\0\x0B\x08\0\x2B\0\x3D\1\1\x11\0", 13);
  const std::string jfif = std::string("\xFF\xE0\0\x10JFIF\0\1\1\1\0\x48\0\x48\0\0", 18);
  const std::string seeds[] = {
      "\xFF\xD8" + jfif + frame + "\xFF\xDA",
      "\xFF\xD8" +
          std::string("\xFF\xE1\0\x28"
                      "Exif\0\0",
                      10) +
          Tiff(true, 1, 1, 240, 2).substr(0, 32) + frame,
      Png(61, 43, Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + Big(1, 1))),
      PngOfChunks(20, 61, 43),
      Gif(61, 43),
      Bmp(6, 4, 2835),
      Tiff(false, 6, 4, 300, 2),
      Tiff(true, 6, 4, 118, 3),
      BigTiff(false, 300),
      BigTiff(true, 300),
      CyclicTiff(6, 4),
      TiffOfPages(3, 61, 43),
      "8BPS" + Big(1, 2) + std::string(6, '\0') + Big(3, 2) + Big(43, 4) + Big(61, 4) + Big(8, 2) + Big(3, 2)};
  int number = 0;
  for (const std::string& seed : seeds) {
    std::ofstream(std::string(arguments[1]) + "/seed" + std::to_string(number++), std::ios::binary) << seed;
  }
  return 0;
}
