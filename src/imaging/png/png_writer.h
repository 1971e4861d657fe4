// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <png.h>

#include "host/files/files.h"
#include "imaging/pixels/picture.h"
#include "imaging/rows/row_source.h"

namespace quillon::imaging {

// The pHYs chunk: pixels for each unit. 0 x 0 stands for none.
struct PngDensity {
  std::uint32_t across = 0;
  std::uint32_t down = 0;
  bool metre = true;  // pixels per metre; otherwise only the ratio of both is known
};

// Returns the density of a resolution in dots per inch; none for 0.
PngDensity DensityOfDpi(int dpi);

// How rows are compressed. All but Standard are at low levels of zlib.
//   Standard: as libpng does it by default.
//   Flat: without filters, which spoil the repetitions of pictures of few colours.
//   Noisy: with the filter that suits each row best.
//   Smooth: with such filters, and then only runs of equal bytes are looked for. On smooth photographs that is smaller
//   than Noisy and quicker.
//   Photo: Noisy or Smooth, whichever makes the first rows smaller.
enum class PngCompression { Standard, Flat, Noisy, Smooth, Photo };

// What a PNG states besides its pixels.
struct PngHeader {
  std::string profile = {};  // ICC profile, empty for none; dropped if libpng considers it invalid
  std::string exif = {};     // EXIF block, empty for none
  PngDensity density = {};
  PngCompression compression = PngCompression::Standard;
};

// Writes PNG rows into a draft while they come; at most the first few are held. Call Begin, then WriteRow for each row,
// then Finish. After a failure nothing more may be called. The output is not checked.
class PngWriter {
 public:
  explicit PngWriter(host::Draft& draft);
  ~PngWriter();
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;

  // The rows have the size, layout, alpha and bits of facts, which must not be Cmyk. Its other fields are ignored.
  host::Status Begin(const RowFacts& facts, const PngHeader& header);
  host::Status WriteRow(const unsigned char* row);
  host::Status Finish();

 private:
  static void OnWrite(png_structp png, png_bytep data, std::size_t size);
  void WriteHead(const RowFacts& facts, const PngHeader& header);
  // Chooses the compression by the rows that wait, and writes them.
  host::Status WriteWaiting();
  host::Status WriteFiltered(const unsigned char* row);
  int BestFilter(const unsigned char* row) const;

  // Runs work. Returns false if libpng jumped out of it.
  template <class Work>
  bool Guard(Work work);
  host::Status Failure() const;

  host::Draft& draft_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  host::Status result_;  // first error of the draft
  RowFacts facts_;
  PngCompression compression_ = PngCompression::Standard;
  std::size_t rowBytes_ = 0;
  bool begun_ = false;                  // a row was passed to libpng
  std::vector<unsigned char> above_;    // the row before, if filters are chosen
  std::vector<unsigned char> waiting_;  // the first rows, until the compression is chosen
};

// Encodes rows while they are read, with PngCompression::Standard; no more than a row is held. EXIF is dropped.
// Cmyk is not accepted. The output is not checked.
host::Status WritePng(RowStream& rows, const PictureTags& tags, host::Draft& draft);

}  // namespace quillon::imaging
