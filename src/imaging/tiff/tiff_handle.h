// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tiffio.h>

#include "host/files/files.h"
#include "imaging/io/bytes.h"

namespace quillon::imaging {

// Connects libtiff to files and drafts. Messages of libtiff are discarded, since every failed call returns its result.
struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

// What libtiff reads from (bytes) or writes to (draft); exactly one of them is set. Has to outlive the handle.
struct TiffStream {
  std::shared_ptr<Bytes> bytes;
  host::Draft* draft = nullptr;
  std::uint64_t at = 0;  // position of the next read or write
  host::Status failure;  // first error of the draft
};

// Opens the first page without mapping the file and without decoding. Returns nullptr if it is not a TIFF.
// libtiff allocates at most 256 MB at once, so that a forged directory cannot exhaust memory.
TiffHandle OpenTiffReading(TiffStream& stream);
// Starts a new TIFF, or a BigTIFF if big is set. Returns nullptr after an error, which is in stream.failure.
TiffHandle OpenTiffWriting(TiffStream& stream, bool big);

}  // namespace quillon::imaging
