// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "base/rect.h"

// Animated GIFs for tests: made byte by byte without a library, and read back and drawn by a plain player that uses
// giflib alone. Neither shares code with what is tested.
namespace quillon::imaging::testing {

struct FilmFrame {
  base::Rect area;
  std::vector<unsigned char> indices;  // row by row from top to bottom
  bool interlaced = false;
  int tableBits = 0;  // of the local table; 0 for none
  int codeBits = 8;
  bool control = true;
  int disposal = 0;
  int delay = 0;         // hundredths of a second
  int transparent = -1;  // -1 for none
};

struct Film {
  base::Size screen;
  int tableBits = 0;  // of the table of the screen; 0 for none
  int background = 0;
  std::string extensions;  // between the table and the first frame
  std::vector<FilmFrame> frames;
  std::string end = ";";
};

// Returns the colours of a table of 2^bits entries, 3 bytes each; tables of different numbers differ.
std::string FilmTable(int bits, int number);
// Returns a frame that is filled with one index.
FilmFrame PlainFrame(base::Rect area, unsigned char index, int delay = 10);
// Returns an application extension with these parts.
std::string Application(const std::string& name, const std::string& part);
std::string Comment(const std::string& text);

std::string FilmBytes(const Film& film);
std::string FilmBytes(const FilmFrame& frame, int number);

// Returns a film of up to 6 frames with every kind of disposal, with and without transparency, interlacing, local
// tables and frames that lie partly or wholly outside the screen.
Film RandomFilm(std::mt19937& random);

// What a player shows.
struct Shown {
  std::vector<std::uint32_t> pixels;  // of the whole screen; red, green and blue from the lowest byte on, alpha highest
  int delay = 0;
  int disposal = 0;
};
struct Played {
  base::Size screen;
  std::vector<Shown> frames;
  std::vector<std::string> comments;
  std::vector<std::string> applications;  // names
};

// Returns nothing if giflib cannot read the bytes.
std::optional<Played> Play(const std::string& bytes);

}  // namespace quillon::imaging::testing
