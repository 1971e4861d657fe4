// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_cut.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <vector>

#include "imaging/faults.h"
#include "imaging/gif/gif_reader.h"
#include "imaging/gif/gif_writer.h"

namespace quillon::imaging {
namespace {

class GifCutter {
 public:
  GifCutter(GifReader& reader, base::Rect window, const ByteSink& sink)
      : reader_(reader), window_(window), writer_(sink) {}

  Status Run() {
    if (Status written = writer_.WriteScreen(reader_.Screen(), {window_.width, window_.height}); !written) {
      return written;
    }
    for (;;) {
      GifReader::Block block{};
      if (Status next = reader_.Next(block); !next) return next;
      if (block == GifReader::Block::End) return writer_.Finish();
      const Status done = block == GifReader::Block::Frame ? CutFrame() : writer_.CopyExtension(reader_);
      if (!done) return done;
    }
  }

 private:
  Status CutFrame() {
    const GifFrame& frame = reader_.Frame();
    row_.resize(static_cast<std::size_t>(std::max(frame.area.width, 1)));
    const base::Rect visible = Intersection(frame.area, window_);
    if (visible.Empty()) return LeavePlaceholder();
    GifFrame cut = frame;
    cut.interlaced = false;
    cut.area = {visible.left - window_.left, visible.top - window_.top, visible.width, visible.height};
    if (Status begun = writer_.BeginFrame(cut); !begun) return begun;
    const base::Rect part = {visible.left - frame.area.left, visible.top - frame.area.top, visible.width,
                             visible.height};
    if (Status rows = frame.interlaced ? CutInterlaced(part) : CutRows(part); !rows) return rows;
    return writer_.EndFrame();
  }

  // The delay of the frame counts, so it cannot be left out. A disposal to the background would clear the pixel.
  Status LeavePlaceholder() {
    const GifFrame& frame = reader_.Frame();
    for (int y = 0; y < frame.area.height && !frame.area.Empty(); ++y) {
      if (Status read = reader_.ReadRow(row_.data()); !read) return read;
    }
    GifFrame dot = frame;
    dot.interlaced = false;
    dot.area = {0, 0, 1, 1};
    if (!reader_.Screen().table.rgb.empty()) dot.table = {};
    if (!dot.control) dot.control.emplace();
    const unsigned char index = static_cast<unsigned char>(dot.control->Transparent().value_or(0));
    dot.control->SetTransparent(index);
    dot.control->SetDisposal(GifDisposal::Keep);
    dot.codeBits = std::max(dot.table.rgb.empty() ? reader_.Screen().table.Bits() : dot.table.Bits(),
                            static_cast<int>(std::bit_width(unsigned{index})));
    if (Status begun = writer_.BeginFrame(dot); !begun) return begun;
    if (Status written = writer_.WriteRow(&index, 1); !written) return written;
    return writer_.EndFrame();
  }

  Status CutRows(base::Rect part) {
    for (int y = 0; y < reader_.Frame().area.height; ++y) {
      if (Status read = reader_.ReadRow(row_.data()); !read) return read;
      if (y < part.top || y >= part.top + part.height) continue;
      if (Status written = writer_.WriteRow(row_.data() + part.left, part.width); !written) return written;
    }
    return Status::Ok();
  }

  Status CutInterlaced(base::Rect part) {
    if (Status read = reader_.ReadPart(part, pixels_); !read) return read;
    const auto width = static_cast<std::size_t>(part.width);
    for (std::size_t at = 0; at < pixels_.size(); at += width) {
      if (Status written = writer_.WriteRow(&pixels_[at], part.width); !written) return written;
    }
    return Status::Ok();
  }

  GifReader& reader_;
  base::Rect window_;
  GifWriter writer_;
  std::vector<unsigned char> row_;
  std::vector<unsigned char> pixels_;  // of an interlaced frame
};

}  // namespace

Status CutGif(Bytes& bytes, base::Rect window, const Limits& limits, const ByteSink& sink) {
  std::unique_ptr<GifReader> reader;
  if (Status opened = GifReader::Open(bytes, limits, reader); !opened) return opened;
  const base::Size screen = reader->Screen().size;
  const base::Rect visible = Intersection(window, {0, 0, screen.width, screen.height});
  if (visible.Empty()) return fault::EmptyRectangle();
  return GifCutter(*reader, visible, sink).Run();
}

}  // namespace quillon::imaging
