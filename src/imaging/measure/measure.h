// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/files/files.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Sizes of pictures without decoding them. Every call may come from any thread.
class Measurer {
 public:
  // Measures by opening the picture; used for paths that hold ".psd", and where MediaInfo reports no size. Fills width,
  // height and dpi. May be called on any thread that calls Measure.
  using Loader = std::function<Status(const std::string& path, ImageFacts& facts)>;

  Measurer(host::Files& files, Loader loader);
  ~Measurer();
  Measurer(const Measurer&) = delete;
  Measurer& operator=(const Measurer&) = delete;

  // Width and height in pixels, as MediaInfo reports them. facts.dpi above 0 on entry asks for the resolution too,
  // which is read from the header (jpg, png, tif, bmp; 0 where the file tells none); with 0 on entry it stays 0,
  // except for psd, where loading gives it anyway. On failure facts keep what they held: Missing, Denied, Unsupported
  // (no picture, or a folder), Damaged.
  //
  // Answers are remembered by path while size, times and inode of the file stay the same: the latest kSizesRemembered
  // or so.
  Status Measure(const std::string& path, ImageFacts& facts);

  // Remembers that many answers from now on; fewer than before are kept only as far as they are the latest.
  void Remember(std::size_t count);

  // True when Measure would answer this from memory, asked with dpi 0.
  bool Knows(const std::string& path) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
