// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

#include "imaging/gif/gif_reader.h"
#include "imaging/gif/lzw_encoder.h"

namespace quillon::imaging {

// Writes an animated GIF block by block. A few blocks are held in memory.
// The functions are called in the order of the file; the first failure of the sink is returned by all later calls.
class GifWriter {
 public:
  explicit GifWriter(ByteSink sink) : sink_(std::move(sink)), encoder_(buffer_) {}

  // Writes the header with another size than that of screen; sides of 1..65535.
  Status WriteScreen(const GifScreen& screen, base::Size size);

  // Copies the current extension of reader to its end.
  Status CopyExtension(GifReader& reader);

  // Write a frame: its head, its rows in the order that frame.interlaced says (see GifRowOrder), and its end.
  Status BeginFrame(const GifFrame& frame);
  Status WriteRow(const unsigned char* indices, int count);
  Status EndFrame();

  // Writes the trailer. Call at most once; the object must not be used afterwards.
  Status Finish();

 private:
  void Number(int value);
  Status Flush(std::size_t atLeast);

  ByteSink sink_;
  std::string buffer_;
  LzwEncoder encoder_;
  Status status_;
};

}  // namespace quillon::imaging
