// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/rect.h"
#include "host/files/files.h"
#include "imaging/io/bytes.h"
#include "imaging/types.h"

namespace quillon::imaging {

// What the header of a picture file states.
struct HeaderFacts {
  base::Size size;  // in pixels, before the EXIF orientation is applied; {0, 0} if the header states none
  int dpi = 0;      // horizontal, dots per inch, rounded to nearest; 0 if the header states none
  Format format = Format::Unknown;
};

// How far a header answers.
enum class HeaderKind {
  Known,  // jpg, png, gif, bmp, tif, BigTIFF or psd: what the header does not state, nothing but the decoder knows
  Other   // another kind of file, or a variant whose size the header alone does not give
};

// Reads the header of a file; the first bytes decide which kind it is. Of several pages or frames the first counts, of
// a gif the canvas. A side that is 0 or above the range of int leaves size {0, 0}.
// The file may be damaged or made to mislead: the number of reads is bounded, and no offset is followed twice.
// Most files need one read of 16 KB.
HeaderKind ReadHeader(Bytes& bytes, HeaderFacts& facts);

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
