// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/rect.h"

// PNG files of every kind, written by libpng.
namespace quillon::imaging::testing {

struct PngKind {
  base::Size size{61, 43};
  int type = 2;  // 0 grey, 2 RGB, 3 palette, 4 grey and alpha, 6 RGBA
  int bits = 8;
  bool interlaced = false;
  int colours = 0;            // entries of the palette; 0 for as many as there are indices
  std::vector<int> alphas{};  // tRNS of the palette
  std::vector<int> key{};     // tRNS of grey or RGB: one value, or three
};

// Returns a file with samples that differ from pixel to pixel. Of every third pixel the samples are those of the key,
// if there is one, and of every fifth only nearly so.
std::string MakePng(const PngKind& kind);

// Returns a chunk with its checksum.
std::string PngChunkOf(const std::string& type, const std::string& data);
// Returns the file with more chunks before the first one of that type.
std::string WithChunks(const std::string& png, const std::string& before, const std::string& chunks);
// Returns the offset of the first chunk of that type; npos if there is none.
std::size_t ChunkAt(const std::string& png, const std::string& type);
// Returns the file with a wrong checksum of its first chunk of that type.
std::string WithWrongChecksum(std::string png, const std::string& type);
// Returns the file with the checksums of all its chunks put right, as far as they lie inside the file.
std::string WithRightChecksums(std::string png);
// Returns a file of one IDAT chunk whose deflated rows are those, filter bytes included.
std::string PngOfRows(base::Size size, int bits, int type, const std::string& chunks, const std::string& rows);

}  // namespace quillon::imaging::testing
