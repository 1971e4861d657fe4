// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "imaging/rows/row_source.h"
#include "imaging/services.h"

// Functions that the fuzzers of picture formats share.
namespace quillon::fuzz {

// Ends the fuzzer with a crash report unless the condition holds.
inline void Require(bool holds, int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "The condition in line %d does not hold.\n", line);
  std::abort();
}

// Limits that are small enough for many pictures a second.
inline imaging::Limits SmallLimits() {
  imaging::Limits limits;
  limits.pixels = 1'000'000;
  limits.memory = 16 << 20;
  return limits;
}

// Reads each row as a whole and then its right half, which must have the same pixels.
inline void ReadRows(imaging::RowSource& rows) {
  const imaging::RowFacts& facts = rows.Facts();
  Require(facts.size.width > 0 && facts.size.height > 0);
  const auto pixel = static_cast<std::size_t>(facts.PixelBytes());
  const int half = facts.size.width / 2;
  std::vector<unsigned char> whole(static_cast<std::size_t>(facts.size.width) * pixel);
  std::vector<unsigned char> part(static_cast<std::size_t>(facts.size.width - half) * pixel);
  for (int y = 0; y < facts.size.height; ++y) {
    const bool read = static_cast<bool>(rows.ReadSpan(y, 0, facts.size.width, whole.data()));
    Require(static_cast<bool>(rows.ReadSpan(y, half, facts.size.width - half, part.data())) == read);
    if (!read) return;
    Require(std::equal(part.begin(), part.end(),
                       whole.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(half) * pixel)));
  }
}

}  // namespace quillon::fuzz
