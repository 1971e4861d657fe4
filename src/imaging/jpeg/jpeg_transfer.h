// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>

#include <jpeglib.h>

namespace quillon::imaging {

// Moves the samples of a cut from a decoder, whose header was read, to an encoder, whose parameters are set. Start and
// Move call libjpeg and run under JpegErrors::Guard; Allocate runs between them, outside.
class JpegTransfer {
 public:
  virtual ~JpegTransfer() = default;
  // Starts decoder and encoder.
  virtual void Start() = 0;
  virtual void Allocate() = 0;
  // Writes every row of the result.
  virtual void Move() = 0;
};

}  // namespace quillon::imaging
