// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <vector>

#include "base/rect.h"
#include "imaging/jpeg/jpeg_reader.h"
#include "imaging/jpeg/jpeg_writer.h"

namespace quillon::imaging {

// Moves the components of a cut each for itself, at the resolution they are stored in. Subsampled chroma is not
// upsampled and reduced again, so nothing is lost there, and a tenth of the time is saved. Chroma that is stored finer
// than the result has it is averaged.
//
// How it works. The decoder hands out rows of blocks instead of rows of pixels. One step decodes one row of minimum
// coded units (MCUs), which is 8 to 32 rows of each component, every component into a ring of its own. The encoder
// accepts one row of its own MCUs a step, and these do not lie on the same rows: the rectangle may begin inside an MCU
// of the source, and the result may be sampled otherwise. So Move asks for rows of the result, DecodeDownTo decodes
// until the lowest row needed is in the ring, and LayOut points the encoder at the rows. If a component is stored as
// the result has it, these are the rows in the ring, shifted to the left edge of the rectangle; no sample is copied.
// Otherwise they are averaged into a buffer first. A ring holds the rows of one step of the result and those of the
// source MCUs that it begins and ends in, so no row is overwritten before it is used.
class JpegPlanes {
 public:
  // Whether a cut can be made so: rect lies inside the picture, begins at a chroma sample of the source, and no
  // component is stored coarser than the result has it. Also whether it should: all columns of all rows down to the
  // lower end of rect are transformed, which is a waste for a small part of a large picture.
  static bool Suits(const JpegReader& reader, const JpegWriter& writer, base::Rect rect);

  // reader is open, writer is set up. Start and Move run under the Guard of their errors, Allocate between them.
  JpegPlanes(JpegReader& reader, JpegWriter& writer, base::Rect rect);

  void Start();
  void Allocate();
  // Writes every row of the result.
  void Move();

 private:
  static constexpr int kComponents = 4;
  static constexpr int kBlock = DCTSIZE;
  static constexpr int kRowsRead = 4 * kBlock;  // of one component at a time, at most
  static constexpr int kRowsWritten = 2 * kBlock;

  // One component. Sizes and positions are in its own samples.
  struct Plane {
    int acrossIn = 1;  // pixels a sample of the source covers
    int downIn = 1;
    int across = 1;  // source samples averaged into one of the result
    int down = 1;
    int left = 0;  // of the rectangle in the source
    int top = 0;
    int widthIn = 0;  // of the rectangle in the source
    int heightIn = 0;
    int width = 0;  // in the result
    int height = 0;
    int paddedWidth = 0;  // to whole blocks
    int ringRows = 0;
    std::size_t stride = 0;
    std::vector<JSAMPLE> ring;      // decoded rows, row n in place n % ringRows
    std::vector<JSAMPLE> averaged;  // rows of the result, if they are not in the ring as they are
    std::array<JSAMPROW, kRowsRead> rowsIn{};
    std::array<JSAMPROW, kRowsWritten> rowsOut{};

    JSAMPROW RingRow(int row) { return ring.data() + static_cast<std::size_t>(row % ringRows) * stride; }
  };

  void MeasurePlane(int index);
  void DecodeDownTo(int row);
  void LayOut(Plane& plane, int firstRow, int count);
  static void Average(Plane& plane, int row, JSAMPROW out);

  JpegReader& reader_;
  JpegWriter& writer_;
  const base::Rect rect_;
  int decodedRows_ = 0;
  std::array<Plane, kComponents> planes_;
};

}  // namespace quillon::imaging
