// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Makes a huge LZW tiff, 8 bit RGB, row by row or tile by tile.
//
// usage: make_tiff strips|tiles|big FILE WIDTH HEIGHT      big: strips of a BigTIFF
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include <tiffio.h>

namespace {

constexpr std::uint32_t kTile = 256;
constexpr std::uint32_t kStrip = 16;

// Flat areas and edges, different everywhere.
void Fill(std::vector<unsigned char>& row, std::uint32_t left, std::uint32_t y) {
  for (std::size_t x = 0; x < row.size() / 3; ++x) {
    const std::uint32_t at = left + static_cast<std::uint32_t>(x);
    row[x * 3] = static_cast<unsigned char>(at / 64);
    row[x * 3 + 1] = static_cast<unsigned char>(y / 64);
    row[x * 3 + 2] = static_cast<unsigned char>((at / 8 ^ y / 8) & 31);
  }
}

void WriteStrips(TIFF* tiff, std::uint32_t width, std::uint32_t height) {
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kStrip);
  std::vector<unsigned char> row(std::size_t{width} * 3);
  for (std::uint32_t y = 0; y < height; ++y) {
    Fill(row, 0, y);
    TIFFWriteScanline(tiff, row.data(), y, 0);
  }
}

void WriteTiles(TIFF* tiff, std::uint32_t width, std::uint32_t height) {
  TIFFSetField(tiff, TIFFTAG_TILEWIDTH, kTile);
  TIFFSetField(tiff, TIFFTAG_TILELENGTH, kTile);
  std::vector<unsigned char> row(std::size_t{kTile} * 3);
  std::vector<unsigned char> tile;
  for (std::uint32_t top = 0; top < height; top += kTile) {
    for (std::uint32_t left = 0; left < width; left += kTile) {
      tile.clear();
      for (std::uint32_t y = top; y < top + kTile; ++y) {
        Fill(row, left, y);
        tile.insert(tile.end(), row.begin(), row.end());
      }
      TIFFWriteTile(tiff, tile.data(), left, top, 0, 0);
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: make_tiff strips|tiles|big FILE WIDTH HEIGHT\n");
    return 2;
  }
  const std::string kind = argv[1];
  const auto width = static_cast<std::uint32_t>(std::atoi(argv[3]));
  const auto height = static_cast<std::uint32_t>(std::atoi(argv[4]));
  TIFF* tiff = TIFFOpen(argv[2], kind == "big" ? "w8" : "w");
  if (!tiff) return 2;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  kind == "tiles" ? WriteTiles(tiff, width, height) : WriteStrips(tiff, width, height);
  TIFFClose(tiff);
  return 0;
}
