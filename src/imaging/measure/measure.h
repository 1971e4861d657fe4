// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "host/files/files.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Measures pictures without decoding them, and remembers what it found. Every function may be called from any thread.
class Measurer {
 public:
  // Opens the picture and fills width, height and dpi. Called for a path that holds ".psd", and if MediaInfo reports no
  // size; on any thread that calls Measure.
  using Loader = std::function<Status(const std::string& path, ImageFacts& facts)>;

  Measurer(host::Files& files, Loader loader);
  ~Measurer();
  Measurer(const Measurer&) = delete;
  Measurer& operator=(const Measurer&) = delete;

  // Stores width and height as MediaInfo reports them, and with Want::SizeAndDpi the resolution from the header (jpg,
  // png, tif, bmp; 0 if the file states none). With Want::Size dpi becomes 0, except for a psd, which is loaded anyway.
  // Fails with Missing, Denied, Unsupported (no picture, or a folder) or Damaged, or as the system does; facts are then
  // unchanged.
  // The latest answers, about kSizesRemembered, are remembered by path as long as size, times and inode of the file
  // stay the same.
  Status Measure(const std::string& path, ImageFacts& facts, Want want = Want::Size);

  // Remembers about count answers from now on, and forgets the oldest beyond them.
  void Remember(std::size_t count);

  // Returns whether Measure would answer Want::Size from memory.
  bool Knows(const std::string& path) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

// Returns the horizontal resolution in dots per inch, rounded to the nearest integer, from the header of a jpg, png,
// tif (also BigTIFF) or bmp file. The first bytes decide which it is. Returns 0 if the file states none, is of another
// kind or has a header that cannot be followed.
int ReadDpi(const std::string& path);

}  // namespace quillon::imaging
