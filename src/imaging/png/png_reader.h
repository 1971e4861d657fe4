// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include <png.h>

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/png/png_writer.h"
#include "imaging/rows/row_source.h"

namespace quillon::imaging {

// Reads a PNG of any kind as rows of 8-bit RGBA, from top to bottom. Samples of 16 bits are reduced to their upper
// 8 bits, after a key colour was compared with all 16. Grey with a profile becomes what a screen shows, since the
// profile does not fit RGB.
//
// One row is held. The rows of an interlaced picture arrive in seven passes, so those that are needed are held in the
// kind of pixels that the file has.
//
// Of an animated PNG the picture is read that other programs show.
class PngReader final : public RowStream {
 public:
  PngReader(std::shared_ptr<Bytes> bytes, const Limits& limits);
  ~PngReader() override;
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;

  // Reads everything before the pixels. Call it first, once.
  // Damaged: no PNG, truncated, a wrong checksum, no palette, or too short for its pixels. TooLarge: sides or the
  // pixels that are held exceed the limits.
  host::Status Open();

  // Size, profile and orientation. EXIF is not kept, and dpi is 0: Density has all of it.
  const RowFacts& Facts() const override { return facts_; }
  // 0 x 0 if the file states none.
  const PngDensity& Density() const { return density_; }
  bool HasPalette() const { return kind_ == Kind::Palette; }

  // Restricts what an interlaced picture holds to these rows; others must not be read then. Call after Open.
  void NeedRows(int top, int count);

  host::Status ReadRow(unsigned char* out) override { return ReadPart(0, facts_.size.width, out); }
  // Reads the next row and stores width pixels from column left on, which lie inside the picture.
  // Damaged: the rows end here, or a pixel has a colour that the palette lacks.
  host::Status ReadPart(int left, int width, unsigned char* out);
  host::Status SkipRows(int count) override;
  // Checks what the rows read so far have not: that the rest of the file is complete and has the right checksums. The
  // rows in it are not decoded.
  host::Status CheckRest();

 private:
  enum class Kind { Palette, Grey, GreyAlpha, Rgb, Rgba };

  static void OnRead(png_structp png, png_bytep out, std::size_t size);
  bool ReadBytes(png_bytep out, std::size_t size);
  void ReadHead();
  void ReadColours();
  void ReadTags();
  void ApplyProfile();
  // Allocates the rows, and reads all of an interlaced picture.
  host::Status PrepareRows();
  png_bytep HeldRow(int row);
  host::Status NextRow(const unsigned char*& row);
  host::Status Convert(const unsigned char* row, int width, unsigned char* out) const;

  // Runs work. Returns false if libpng jumped out of it.
  template <class Work>
  bool Guard(Work work);

  const std::shared_ptr<Bytes> bytes_;
  const Limits limits_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;

  std::uint64_t at_ = 0;              // bytes that libpng has read
  std::vector<unsigned char> block_;  // the latest block of the file
  std::uint64_t blockAt_ = 0;
  std::uint64_t data_ = 0;  // offset of the first IDAT chunk

  RowFacts facts_;
  PngDensity density_;
  Kind kind_ = Kind::Rgba;
  using Rgba = std::array<unsigned char, 4>;
  std::array<Rgba, 256> palette_{};         // by index, of Palette
  int colours_ = 0;                         // entries of the palette
  std::array<unsigned char, 256> shown_{};  // the grey on a screen of each stored grey
  int passes_ = 1;                          // more than one if interlaced
  int firstHeld_ = 0;                       // first of the rows that are needed
  int held_ = 0;                            // their number
  int next_ = 0;                            // row that is read next
  std::size_t rowBytes_ = 0;                // of a row as libpng delivers it
  std::vector<unsigned char> rows_;         // one row; if interlaced all that are needed, and one for all others
};

}  // namespace quillon::imaging
