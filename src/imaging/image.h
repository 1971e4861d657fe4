// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include "base/rect.h"

namespace quillon::imaging {

struct ImageData;

// A picture in memory, or no picture. Copying is explicit (Services::CloneImage); an image is disposed with its handle.
class Image {
 public:
  Image();
  explicit Image(std::unique_ptr<ImageData> data);
  ~Image();
  Image(Image&&) noexcept;
  Image& operator=(Image&&) noexcept;

  bool Empty() const { return !data_; }
  explicit operator bool() const { return !Empty(); }
  ImageData* Data() const { return data_.get(); }

 private:
  std::unique_ptr<ImageData> data_;
};

}  // namespace quillon::imaging
