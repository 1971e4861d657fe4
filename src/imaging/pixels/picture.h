// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include <vips/vips8>

#include "host/status.h"
#include "imaging/faults.h"
#include "imaging/image.h"

namespace quillon::imaging {

// The metadata of a picture. The libvips header of its pixels carries none of it.
struct PictureTags {
  std::string profile = {};  // ICC profile for the colour space of the pixels, empty for none
  std::string exif = {};     // EXIF block (a TIFF structure), empty for none
  int orientation = 1;       // EXIF orientation, 1..8
  int dpi = 0;               // dots per inch, 0 if unknown
};

// Pixels with their metadata. The pixels are grey, RGB or CMYK (samples count ink), with 8 or 16 bits a sample; grey
// and RGB may have an alpha band. They may be computed lazily, when an operation asks for them.
struct Picture {
  vips::VImage pixels;
  PictureTags tags;
};

// What an Image handle owns. Its pixels are always computed and held in memory.
struct ImageData {
  Picture picture;
};

// Keeps the first error of a reader that runs inside a libvips pipeline, which would report only that it failed.
// May be called from several threads.
class ReadFault {
 public:
  void Set(host::Status status) {
    const std::lock_guard lock(mutex_);
    if (status_) status_ = std::move(status);
  }
  host::Status Get() const {
    const std::lock_guard lock(mutex_);
    return status_;
  }

 private:
  mutable std::mutex mutex_;
  host::Status status_;
};

// Initialises libvips. Throws VError if that fails.
void StartVips();
// Calls StartVips unless an earlier call was successful.
inline void EnsureVips() {
  static std::once_flag once;
  std::call_once(once, StartVips);
}

// Runs work, which returns a Status, and converts exceptions of the libraries to one.
// Lack of memory becomes OutOfMemory, every other exception becomes failed.
template <class Work>
host::Status Guarded(const host::Status& failed, Work work) {
  try {
    EnsureVips();
    return work();
  } catch (const vips::VError& error) {
    const bool memory = std::string(error.what()).find("out of memory") != std::string::npos;
    vips_error_clear();
    return memory ? fault::OutOfMemory() : failed;
  } catch (const std::bad_alloc&) {
    return fault::OutOfMemory();
  }
}

// Runs work on the picture of an image. Returns NoImage if the image is empty.
template <class Work>
host::Status OnPicture(const Image& image, Work work) {
  if (image.Empty()) return fault::NoImage();
  return Guarded(fault::DamagedPicture(), [&] { return work(image.Data()->picture); });
}

}  // namespace quillon::imaging
