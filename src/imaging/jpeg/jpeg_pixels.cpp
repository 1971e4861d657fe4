// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_pixels.h"

#include <new>

#include "imaging/faults.h"
#include "imaging/jpeg/jpeg_reader.h"
#include "imaging/limits.h"

namespace quillon::imaging {
namespace {

Status Decode(RowStream& rows, JpegPixels& out) {
  const std::size_t row = static_cast<std::size_t>(out.size.width) * out.components;
  out.samples.resize(row * static_cast<std::size_t>(out.size.height));
  for (unsigned char* place = out.samples.data(); place != out.samples.data() + out.samples.size(); place += row) {
    if (Status read = rows.ReadRow(place); !read) return read;
  }
  return Status::Ok();
}

}  // namespace

Status DecodeJpeg(const std::string& path, const Limits& limits, JpegPixels& out) {
  std::shared_ptr<RowStream> rows;
  if (Status opened = OpenJpegRows(path, 1, limits, rows, JpegColours::AsStored); !opened) return opened;
  const RowFacts& facts = rows->Facts();
  out.size = facts.size;
  out.components = static_cast<std::size_t>(facts.Channels());
  if (!FitsMemory(facts.size.width, facts.size.height, facts.Channels(), limits)) return fault::OutOfMemory();
  try {
    return Decode(*rows, out);
  } catch (const std::bad_alloc&) {
    return fault::OutOfMemory();
  }
}

}  // namespace quillon::imaging
