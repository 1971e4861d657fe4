// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers {

// A file under another name in the program folder.
struct Aside {
  std::string path;
  std::string name;
};

// A call of FFmpeg that reads and writes nothing but files with plain names, since FFmpeg takes others for addresses or
// for patterns of numbers.
struct MediaOrder {
  std::vector<std::string> words;  // with the plain names
  std::vector<Aside> inputs;       // to be put there before
  Aside output;                    // to be taken from there afterwards; path is "" where the last word is no file
  std::string stray;               // a word that would lead FFmpeg to a file elsewhere; "" where there is none
};

MediaOrder ReadMediaOrder(const std::vector<std::string>& words);

}  // namespace quillon::helpers
