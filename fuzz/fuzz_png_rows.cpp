// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Four bytes that place a rectangle, and then any bytes that begin as a PNG file does: the rectangle is cut row by row
// or the cut fails. The checksums are put right before, or no change would get past them. A finished cut is a complete
// PNG of the size of the rectangle, and cutting it again changes nothing.
#include <memory>
#include <string>

#include "fuzz_pictures.h"
#include "imaging/io/bytes.h"
#include "imaging/png/png_chunks.h"
#include "imaging/png/png_cut.h"
#include "imaging/png_maker.h"

namespace {

using namespace quillon;
using namespace quillon::imaging;

constexpr std::size_t kPlace = 4;

bool Cut(const std::string& png, base::Rect rect, std::string& out) {
  MemoryDraft draft([](std::int64_t) { return host::Status::Ok(); });
  const bool cut = static_cast<bool>(CutPng(std::make_shared<MemoryBytes>(png), rect, fuzz::SmallLimits(), draft));
  out = draft.Release();
  return cut;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < kPlace) return -1;
  const std::string png(reinterpret_cast<const char*>(data) + kPlace, size - kPlace);
  if (!png.starts_with("\x89PNG\r\n\x1A\n")) return -1;
  const base::Rect rect{static_cast<std::int8_t>(data[0]), static_cast<std::int8_t>(data[1]), data[2] + 1, data[3] + 1};
  std::string first;
  if (!Cut(imaging::testing::WithRightChecksums(png), rect, first)) return 0;
  MemoryBytes bytes(first);
  fuzz::Require(IsPngComplete(bytes) && HasPngChecksums(bytes, PngChunks::kFirst, 0));
  std::string second;
  fuzz::Require(Cut(first, {0, 0, rect.width, rect.height}, second));
  fuzz::Require(second.size() > 0);
  return 0;
}
