// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "host/files/files.h"
#include "imaging/image.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

// None, Lzw and PackBits are lossless. Group3 and Group4 store one bit a pixel: grey below 128 becomes black.
// Jpeg is lossy and stores 8 bits.
enum class TiffCompression { None, Lzw, PackBits, Group3, Group4, Jpeg };

// How one page is written.
struct TiffPageOptions {
  TiffCompression compression = TiffCompression::Lzw;
  int quality = 90;  // Jpeg only, 1..100; values outside are clamped
  int dpi = 0;       // 0: resolution of the picture, or 96 if it is unknown
};

// Counts the pages of a TIFF or BigTIFF. If the chain of pages is broken, the pages before the break count.
// Damaged: no page can be found, or the file is empty. Unsupported: the file is not a TIFF.
Status CountTiffPages(const host::Files& files, const std::string& path, int& pages);

// Decodes one page, counted from 0, into memory, with pixels as described at Services.
// Damaged: also if there is no such page.
Status LoadTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits, Image& out);

// Writes one TIFF with several pages into a draft. Pages may differ in size, depth and colour space.
// ICC profile and orientation are kept, and so are 16 bits; transparency is blended with white.
// A few rows are held in memory. A page that fails leaves the pages before it intact.
class TiffPages {
 public:
  // The file becomes a BigTIFF if expectedPages pages of the uncompressed size of the first would exceed 4 GB.
  TiffPages(host::Draft& draft, int expectedPages, const Limits& limits = {});
  ~TiffPages();
  TiffPages(const TiffPages&) = delete;
  TiffPages& operator=(const TiffPages&) = delete;

  // Adds every page of a TIFF, or the picture of any other file. Stops at the first error.
  Status AddFile(const host::Files& files, const std::string& path, const TiffPageOptions& options);
  // Adds a picture in memory.
  Status Add(const Image& image, const TiffPageOptions& options);

  // Returns the number of pages added so far.
  int Count() const;
  // Completes the file and reads it back. Fails unless all pages are found; a file without pages fails with NoImage.
  // Call at most once; no page can be added afterwards.
  Status Finish();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
