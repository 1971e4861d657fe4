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
  // Called every few milliseconds while another process is waited for; false ends the wait. May be empty.
  using KeepWaiting = std::function<bool()>;
  // Opens the picture and fills width, height and dpi. Called for a path that holds ".psd", and if nothing else finds a
  // size; on any thread that calls Measure.
  using Loader = std::function<Status(const std::string& path, ImageFacts& facts)>;
  // Stores the size of a file that is none of the formats whose headers are read here; Unsupported if it finds none.
  // Called on any thread that calls Measure.
  using OtherKinds = std::function<Status(const std::string& path, const KeepWaiting& keepWaiting, base::Size& size)>;

  // Without otherKinds the loader is asked in its place.
  Measurer(host::Files& files, Loader loader, OtherKinds otherKinds = {});
  ~Measurer();
  Measurer(const Measurer&) = delete;
  Measurer& operator=(const Measurer&) = delete;

  // Stores width and height as the header states them, and with Want::SizeAndDpi the resolution (jpg, png, tif, bmp; 0
  // if the file states none). With Want::Size dpi becomes 0, except for a psd.
  // Fails with Missing, Denied, Unsupported (no picture, or a folder), Damaged or Stopped (keepWaiting returned false),
  // or as the system does; facts are then unchanged.
  // The latest answers, about kSizesRemembered, are remembered by path as long as size, times and inode of the file
  // stay the same.
  Status Measure(const std::string& path, ImageFacts& facts, Want want = Want::Size,
                 const KeepWaiting& keepWaiting = {});

  // Remembers about count answers from now on, and forgets the oldest beyond them.
  void Remember(std::size_t count);

  // Answers from memory, as Measure would; the only access to the disk is one stat. Returns false, with facts
  // unchanged, if nothing is remembered.
  bool Recall(const std::string& path, ImageFacts& facts, Want want = Want::Size) const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace quillon::imaging
