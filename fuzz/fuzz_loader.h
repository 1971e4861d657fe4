// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/rect.h"
#include "fuzz_pictures.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/measure/measure.h"
#include "imaging/metadata/picture_format.h"
#include "imaging/pixels/picture.h"

// What the fuzzers of the formats that libvips decodes share.
namespace quillon::fuzz {

// Checks a file of this format as far as the program reads it: its header, whether it is complete and can hold its
// pixels, and, unless that is refused, its rows. Returns 0, or -1 for other bytes, which are not worth keeping.
inline int LoadPicture(imaging::Format format, const std::uint8_t* data, std::size_t size) {
  std::string content(reinterpret_cast<const char*>(data), size);
  if (imaging::FormatOf(content) != format) return -1;
  auto bytes = std::make_shared<imaging::MemoryBytes>(std::move(content));
  imaging::EnsureVips();
  imaging::HeaderFacts facts;
  Require(imaging::ReadHeader(*bytes, facts) == imaging::HeaderKind::Known);
  static_cast<void>(imaging::IsComplete(format, *bytes));
  const imaging::Limits limits = SmallLimits();
  if (facts.size.Empty() || static_cast<std::int64_t>(facts.size.width) * facts.size.height > limits.pixels) return 0;
  if (!imaging::CanHold(format, *bytes, facts.size)) return 0;
  std::shared_ptr<imaging::RowStream> rows;
  try {
    const imaging::Status status = imaging::OpenVipsRows(format, bytes, limits, rows);
    Require(static_cast<bool>(status) == (rows != nullptr));
  } catch (const vips::VError&) {
    return 0;
  }
  if (!rows) return 0;
  const base::Size read = rows->Facts().size;
  // The decoder of gif replaces a screen that is very large or does not hold the first frame.
  Require(format == imaging::Format::Gif ? !read.Empty() : read == facts.size);
  std::vector<unsigned char> row(static_cast<std::size_t>(read.width) *
                                 static_cast<std::size_t>(rows->Facts().PixelBytes()));
  for (int y = 0; y < read.height; ++y) {
    if (!rows->ReadRow(row.data())) return 0;
  }
  return 0;
}

}  // namespace quillon::fuzz
