// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Writes the first inputs of the fuzzers: FOLDER/<name of the fuzzer>/<number>.
//
// usage: make_seeds FOLDER
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "host/posix/sqlite_journals.h"
#include "host/posix/sqlite_settings.h"
#include "imaging/little_files.h"
#include "imaging/png_maker.h"

namespace {

namespace fs = std::filesystem;
using namespace quillon::imaging::testing;

struct Seeds {
  const char* fuzzer;
  std::vector<std::string> files;
};

void Write(const fs::path& folder, const Seeds& seeds) {
  fs::create_directories(folder / seeds.fuzzer);
  int number = 0;
  for (const std::string& seed : seeds.files) {
    std::ofstream(folder / seeds.fuzzer / std::to_string(number++), std::ios::binary) << seed;
  }
}

std::string Content(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The head of a frame of that size; bits are its flags: 0x40 for interlaced.
std::string GifHead(unsigned long width, unsigned long height, unsigned long bits) {
  return "," + Little(0, 4) + Little(width, 2) + Little(height, 2) + Little(bits, 1);
}

// Two frames of 3 x 2 and 2 x 2 pixels with a table of two colours, a comment and the number of repetitions.
std::string Animation() {
  using std::literals::string_literals::operator""s;
  return "GIF89a\3\0\2\0\x80\0\0"s + "\1\2\3\xF1\xF2\xF3" + "!\xFF\x0BNETSCAPE2.0\3\1\3\0\0"s + "!\xFE\2hi\0"s +
         "!\xF9\4\x08\5\0\0\0"s + GifHead(3, 2, 0) + "\2\4\x44\x88\x30\x28\0"s + "!\xF9\4\x0D\5\0\1\0"s +
         GifHead(2, 2, 0) + "\2\3\x4C\x88\x14\0;"s;
}

// One small file of each kind.
std::vector<Seeds> Pictures() {
  const std::string frame = std::string("\xFF\xC0\0\x0B\x08\0\x2B\0\x3D\1\1\x11\0", 13);
  const std::string jfif = std::string("\xFF\xE0\0\x10JFIF\0\1\1\1\0\x48\0\x48\0\0", 18);
  const std::string exif = std::string(
                               "\xFF\xE1\0\x28"
                               "Exif\0\0",
                               10) +
                           Tiff(true, 1, 1, 240, 2).substr(0, 32);
  return {
      {"fuzz_jpeg", {"\xFF\xD8" + jfif + frame + "\xFF\xDA", "\xFF\xD8" + exif + frame}},
      {"fuzz_png", {Png(61, 43, Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + Big(1, 1))), PngOfChunks(20, 61, 43)}},
      {"fuzz_gif", {Gif(61, 43)}},
      {"fuzz_gif_frames", {Animation(), Animation().replace(Animation().find(','), 10, GifHead(6, 5, 0x40))}},
      {"fuzz_bmp", {Bmp(6, 4, 2835)}},
      {"fuzz_tiff",
       {Tiff(false, 6, 4, 300, 2), Tiff(true, 6, 4, 118, 3), BigTiff(false, 300), BigTiff(true, 300), CyclicTiff(6, 4),
        TiffOfPages(3, 61, 43)}},
      {"fuzz_psd",
       {"8BPS" + Big(1, 2) + std::string(6, '\0') + Big(3, 2) + Big(43, 4) + Big(61, 4) + Big(8, 2) + Big(3, 2)}}};
}

// A small file of each colour type and depth, after the place of a rectangle.
Seeds PngRows() {
  const std::string place = {'\x03', '\xFE', '\x10', '\x0C'};
  Seeds seeds{"fuzz_png_rows", {}};
  for (const auto& [type, bits] : {std::pair(0, 1),
                                   {0, 2},
                                   {0, 4},
                                   {0, 8},
                                   {0, 16},
                                   {2, 8},
                                   {2, 16},
                                   {3, 1},
                                   {3, 2},
                                   {3, 4},
                                   {3, 8},
                                   {4, 8},
                                   {4, 16},
                                   {6, 8},
                                   {6, 16}}) {
    for (const bool interlaced : {false, true}) {
      PngKind kind{.size = {11, 9}, .type = type, .bits = bits, .interlaced = interlaced};
      if (type == 3) kind.alphas = {0, 100};
      if (type == 0) kind.key = {1};
      seeds.files.push_back(place + MakePng(kind));
    }
  }
  return seeds;
}

// The databases as the program writes them. folder is emptied.
std::vector<Seeds> Databases(const fs::path& folder) {
  using namespace quillon::host;
  fs::remove_all(folder);
  Seeds journals{"fuzz_journal", {}};
  {
    const auto journal = posix::SqliteJournals(folder.native()).Open({"job"});
    journal->Set("a", "k", "value");
    journal->Set("b", "k", std::string(3000, 'v'));
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    journals.files.push_back(Content(entry.path()));
  }
  fs::remove_all(folder);
  posix::SqliteSettings(folder.native()).Set("Quillon", "Default", "LOutDir", "/out");
  Seeds settings{"fuzz_settings", {Content(folder / "settings.db")}};
  fs::remove_all(folder);
  return {journals, settings};
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: make_seeds FOLDER\n");
    return 2;
  }
  const fs::path folder = fs::absolute(arguments[1]);
  Seeds headers{"fuzz_measure", {}};
  for (const Seeds& seeds : Pictures()) {
    headers.files.insert(headers.files.end(), seeds.files.begin(), seeds.files.end());
    // fuzz_jpeg, fuzz_tiff and fuzz_gif_frames read a choice before the file.
    const std::string name = seeds.fuzzer;
    const std::string choice(name == "fuzz_jpeg" ? 6 : name == "fuzz_tiff" || name == "fuzz_gif_frames" ? 4 : 0, '@');
    Seeds own{seeds.fuzzer, {}};
    for (const std::string& file : seeds.files) own.files.push_back(choice + file);
    Write(folder, own);
  }
  Write(folder, headers);
  Write(folder, PngRows());
  Write(folder, {"fuzz_names", {"x/folder/照片.JPG", "x../a//b/./c.psd"}});
  for (const Seeds& seeds : Databases(folder / "databases")) Write(folder, seeds);
  return 0;
}
