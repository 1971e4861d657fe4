// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/types.h"

namespace quillon::imaging {

struct JpegPixels;

// Hooks for cuts that run on other threads, and for several cuts of one picture; the defaults are right for a single
// call that may simply run to its end.
struct JpegCutControl {
  // Stops the cut soon, with Problem::Stopped.
  std::stop_token stop;
  // Called once, before they are allocated, with the bytes that the cut holds at its peak; false ends it with Stopped.
  std::function<bool(std::int64_t bytes)> admit;
  // The file at path as DecodeJpeg gave it, and unchanged since: its rows are copied from there. If the components are
  // moved as they are stored, they are decoded again, so that the result is the same with it and without.
  const JpegPixels* decoded = nullptr;
  // Counts the reads of the file, if set.
  host::DiskCalls* calls = nullptr;
  // The bytes of the file, if they are in memory instead of on disk.
  std::shared_ptr<const std::string> content = {};
};

// Cuts rect out of the JPEG file at path and encodes it as JPEG of quality 0..100 (outside: clamped) into sink, in
// blocks of 64 KB and a shorter last one. A picture is never held whole unless it is stored in several scans
// (progressive). What lies outside the picture is white. rect is in stored pixels.
//
// Colours pass through: YCbCr, grey, RGB, CMYK and YCCK stay what they are. Chroma is stored at half width and height
// (4:2:0) below quality 90, from 90 at the source's own subsampling; grey, RGB and CMYK have none. If rect begins
// at a chroma sample of the source and is a large part of the picture, the components are moved as they are stored;
// otherwise only the needed rows and columns are decoded, with the chroma of each pixel as in the whole picture.
//
// The ICC profile goes with the result. dpi > 0 becomes its resolution, 0 keeps the source's, also if only EXIF
// states it. With Exif::Keep the EXIF block goes with it: thumbnail and embedded previews blanked, pixel dimensions
// and resolution put right. With Exif::Drop a source whose orientation is not 1 gets an EXIF block with just that.
//
// Damage is looked for in all of the file: what is decoded is checked as it is decoded, of the rows below rect only
// that the entropy-coded data runs on to the end-of-image marker (a flipped bit down there goes unseen, a missing end
// does not). Sequential pictures are fed to sink while they are decoded, so a failure may come after some bytes.
//
// Failures of the file: see JpegReader::Open. TooLarge also if a side of rect is above limits. Other: rect is empty.
// Safe to call from several threads at once.
Status CutJpeg(const std::string& path, base::Rect rect, int quality, int dpi, Exif exif, const Limits& limits,
               const ByteSink& sink, const JpegCutControl& control = {});

}  // namespace quillon::imaging
