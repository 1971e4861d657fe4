// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::helpers {

// A call of FFmpeg, with its output set apart.
struct MediaOrder {
  std::vector<std::string> words;  // all but the output
  std::string output;              // "" where the last word is none: an option, or a device
  std::string aside;               // the name under which it is made in the program folder, of the same kind
};

// Files that are read and written are named so that FFmpeg takes them for nothing else: neither a protocol nor an
// option nor a number pattern.
MediaOrder ReadMediaOrder(const std::vector<std::string>& words);

}  // namespace quillon::helpers
