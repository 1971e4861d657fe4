// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "base/rect.h"

namespace quillon::imaging {

// The pixels and tags of an image, defined in pixels/picture.h.
struct ImageData;

// Owns a picture in memory, or is empty. It can be moved but not copied: Services::CloneImage makes a copy.
// The declaration hides the pixel library, so that callers compile without its headers.
class Image {
 public:
  Image();  // empty
  explicit Image(std::unique_ptr<ImageData> data);
  ~Image();
  Image(Image&&) noexcept;
  Image& operator=(Image&&) noexcept;

  bool Empty() const { return !data_; }
  explicit operator bool() const { return !Empty(); }
  // Returns nullptr if the image is empty.
  ImageData* Data() const { return data_.get(); }

 private:
  std::unique_ptr<ImageData> data_;
};

}  // namespace quillon::imaging
