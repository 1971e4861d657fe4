// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tiffio.h>

#include "host/files/files.h"
#include "imaging/io/bytes.h"

// The parts that connect libtiff to files and drafts. Its messages go nowhere: a call that fails says so.
namespace quillon::imaging {

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

// What libtiff reads and writes through; outlives the handle. bytes or draft is set.
struct TiffStream {
  std::shared_ptr<Bytes> bytes;
  host::Draft* draft = nullptr;
  std::uint64_t at = 0;
  host::Status failure;  // the first one of the draft
};

// Empty where it is no TIFF. No single allocation for a directory or a strip goes above a quarter of a gigabyte.
TiffHandle OpenTiffReading(TiffStream& stream);
TiffHandle OpenTiffWriting(TiffStream& stream, bool big);

}  // namespace quillon::imaging
