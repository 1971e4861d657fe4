// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as a PSD file: it opens with a status, and every span of every row that it then hands out reads or fails
// without touching anything else.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "imaging/psd_reader.h"

namespace imaging = quillon::imaging;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

imaging::Limits SmallLimits() {
  imaging::Limits limits;
  limits.pixels = 1'000'000;
  limits.memory = 16 << 20;
  return limits;
}

// Whole rows, then the right half of them, which must be the same pixels.
void ReadRows(imaging::RowSource& rows) {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto bytes = std::make_shared<imaging::MemoryBytes>(std::string(reinterpret_cast<const char*>(data), size));
  std::shared_ptr<imaging::RowSource> rows;
  const imaging::Status status = imaging::OpenPsd(bytes, SmallLimits(), rows);
  Require(static_cast<bool>(status) == (rows != nullptr));
  Require(status.Why().empty() == static_cast<bool>(status));
  if (rows) ReadRows(*rows);
  return 0;
}
