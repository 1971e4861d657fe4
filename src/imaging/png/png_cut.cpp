// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/png/png_cut.h"

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "imaging/faults.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/geometry.h"
#include "imaging/png/png_reader.h"
#include "imaging/png/png_writer.h"

namespace quillon::imaging {
namespace {

using host::Status;

constexpr std::size_t kPixelBytes = 4;

class Cutter {
 public:
  Cutter(std::shared_ptr<Bytes> bytes, base::Rect rect, const Limits& limits, host::Draft& draft)
      : rect_(rect), reader_(std::move(bytes), limits), writer_(draft) {}

  Status Run() {
    if (Status opened = reader_.Open(); !opened) return opened;
    const base::Size& size = reader_.Facts().size;
    seen_ = Intersection(rect_, {0, 0, size.width, size.height});
    reader_.NeedRows(seen_.top, seen_.height);
    if (Status begun = Begin(); !begun) return begun;
    row_.assign(static_cast<std::size_t>(rect_.width) * kPixelBytes, 0);
    if (Status moved = MoveRows(); !moved) return moved;
    if (Status finished = writer_.Finish(); !finished) return finished;
    return reader_.CheckRest();
  }

 private:
  Status Begin() {
    RowFacts facts = reader_.Facts();
    facts.size = {rect_.width, rect_.height};
    return writer_.Begin(facts, {.profile = facts.profile,
                                 .exif = MinimalExif(facts.orientation, 0),
                                 .density = reader_.Density(),
                                 .compression = reader_.HasPalette() ? PngCompression::Flat : PngCompression::Photo});
  }

  // Rows and columns outside the picture stay as they are in row_, transparent.
  Status MoveRows() {
    const int above = seen_.Empty() ? rect_.height : seen_.top - rect_.top;
    const int below = rect_.height - above - seen_.height;
    if (Status written = WriteEmpty(above); !written) return written;
    if (seen_.Empty()) return Status::Ok();
    if (Status skipped = reader_.SkipRows(seen_.top); !skipped) return skipped;
    unsigned char* const first = row_.data() + static_cast<std::size_t>(seen_.left - rect_.left) * kPixelBytes;
    for (int y = 0; y < seen_.height; ++y) {
      if (Status read = reader_.ReadPart(seen_.left, seen_.width, first); !read) return read;
      if (Status written = writer_.WriteRow(row_.data()); !written) return written;
    }
    std::fill(row_.begin(), row_.end(), 0);
    return WriteEmpty(below);
  }

  Status WriteEmpty(int count) {
    for (int y = 0; y < count; ++y) {
      if (Status written = writer_.WriteRow(row_.data()); !written) return written;
    }
    return Status::Ok();
  }

  const base::Rect rect_;
  PngReader reader_;
  PngWriter writer_;
  base::Rect seen_;  // the part of rect_ that lies in the picture
  std::vector<unsigned char> row_;
};

}  // namespace

Status CutPng(std::shared_ptr<Bytes> bytes, base::Rect rect, const Limits& limits, host::Draft& draft) {
  try {
    return Cutter(std::move(bytes), rect, limits, draft).Run();
  } catch (const std::bad_alloc&) {
    return fault::OutOfMemory();
  }
}

}  // namespace quillon::imaging
