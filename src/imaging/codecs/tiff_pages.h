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

// Lzw, PackBits and None keep the pixels. Group3 and Group4 store black and white: grey below 128 becomes black. Jpeg
// loses a little, and keeps 8 bits.
enum class TiffCompression { None, Lzw, PackBits, Group3, Group4, Jpeg };

struct TiffPageOptions {
  TiffCompression compression = TiffCompression::Lzw;
  int quality = 90;  // of Jpeg, 1 to 100
  int dpi = 0;       // 0: the picture's own, else 96
};

// The number of pages of a TIFF, BigTIFF included. Where the chain of its pages breaks, those before count.
// Damaged: not a single page can be found. Unsupported: no TIFF.
Status CountTiffPages(const host::Files& files, const std::string& path, int& pages);

// One page of a TIFF, counted from 0, in memory, as Services has pictures. Damaged also where there is no
// such page.
Status LoadTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits, Image& out);

// Writes pages into a draft, one behind the other, as one TIFF. Pages may differ in size, depth and colours; their ICC
// profile and orientation go along, 16 bits stay, transparency lies on white. Nothing but some rows is held in memory.
// A page that fails leaves those before it as they are.
class TiffPages {
 public:
  // With expectedPages of the size of the first one that reach 4 GB, the file becomes a BigTIFF.
  TiffPages(host::Draft& draft, int expectedPages, const Limits& limits = {});
  ~TiffPages();
  TiffPages(const TiffPages&) = delete;
  TiffPages& operator=(const TiffPages&) = delete;

  // Every page of a TIFF, or the picture of any other file.
  Status AddFile(const host::Files& files, const std::string& path, const TiffPageOptions& options);
  Status Add(const Image& image, const TiffPageOptions& options);

  int Count() const;
  // Completes the file and reads it back: fails unless all pages are found. A file without pages fails.
  Status Finish();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
