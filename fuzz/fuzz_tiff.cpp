// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as a TIFF file, and as any file that is checked for its end. Opening a part returns a status; if it
// succeeds, each row is read or fails. EXIF that is found is a block that can be cut again. The first bytes choose the
// part.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "fuzz_pictures.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/metadata/tiff_exif.h"
#include "imaging/tiff/tiff_part.h"

namespace imaging = quillon::imaging;
using quillon::fuzz::Require;
using quillon::fuzz::SmallLimits;

namespace {

void ReadPart(const std::shared_ptr<imaging::Bytes>& bytes, const quillon::base::Rect& rect) {
  std::shared_ptr<imaging::RowStream> rows;
  quillon::base::Size original;
  const imaging::Status status = imaging::OpenTiffPart(bytes, rect, SmallLimits(), rows, original);
  Require(static_cast<bool>(status) == (rows != nullptr));
  if (!rows) return;
  const imaging::RowFacts& facts = rows->Facts();
  Require(facts.size.width > 0 && facts.size.height > 0 && facts.size.width <= original.width);
  std::vector<unsigned char> row(static_cast<std::size_t>(facts.size.width) *
                                 static_cast<std::size_t>(facts.PixelBytes()));
  for (int y = 0; y < facts.size.height; ++y) {
    if (!rows->ReadRow(row.data())) return;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kChoice = 4;
  if (size < kChoice) return 0;
  auto bytes = std::make_shared<imaging::MemoryBytes>(
      std::string(reinterpret_cast<const char*>(data) + kChoice, size - kChoice));
  ReadPart(bytes, {data[0] - 64, data[1] - 64, data[2] + 1, data[3] + 1});
  for (const imaging::Format format : {imaging::Format::Png, imaging::Format::Gif, imaging::Format::Tiff}) {
    static_cast<void>(imaging::IsComplete(format, *bytes));
  }
  const std::string block = imaging::ExifOfTiff(*bytes);
  if (block.empty()) return 0;
  Require(!imaging::CutExif(block, {7, 7}, 96).empty());
  // The values of a directory that is not sorted may have another order the second time.
  imaging::MemoryBytes first(block);
  const std::string sorted = imaging::ExifOfTiff(first);
  Require(sorted.size() == block.size());
  imaging::MemoryBytes second(sorted);
  Require(imaging::ExifOfTiff(second) == sorted);
  return 0;
}
