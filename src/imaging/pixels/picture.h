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

// What goes with the pixels of a picture. The pixels' own header carries none of it.
struct PictureTags {
  std::string profile = {};  // ICC; fits the pixels' colours, "" for none
  std::string exif = {};     // EXIF as a TIFF structure, "" for none
  int orientation = 1;       // as EXIF tells it, 1..8
  int dpi = 0;               // 0: not known
};

// Pixels are grey, RGB or CMYK (as ink), each sample 8 or 16 bits; grey and RGB may have an alpha band. They may be
// computed when they are asked for.
struct Picture {
  vips::VImage pixels;
  PictureTags tags;
};

// Pixels of an image handle come from memory alone.
struct ImageData {
  Picture picture;
};

// The first failure of a reader that works inside a pipeline, whose own report would be lost there.
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

// Sets up the library behind the pixels at the first call.
void EnsureVips();

// Runs work, which returns a Status; what the libraries throw becomes one. Failed is for anything but lack of memory.
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

// Runs work on the picture of an image; NoImage without one.
template <class Work>
host::Status OnPicture(const Image& image, Work work) {
  if (image.Empty()) return fault::NoImage();
  return Guarded(fault::DamagedPicture(), [&] { return work(image.Data()->picture); });
}

}  // namespace quillon::imaging
