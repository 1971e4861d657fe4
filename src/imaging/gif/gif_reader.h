// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/rect.h"
#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/types.h"

struct GifFileType;

namespace quillon::imaging {

// How a frame is removed before the next one is drawn.
enum class GifDisposal { Unspecified = 0, Keep = 1, Background = 2, Previous = 3 };

// The graphic control extension of a frame: disposal, delay and transparency.
struct GifControl {
  std::array<unsigned char, 4> raw{};  // as stored: flags, delay (2), transparent index

  GifDisposal Disposal() const { return static_cast<GifDisposal>(raw[0] >> 2 & 7); }
  void SetDisposal(GifDisposal disposal) {
    raw[0] = static_cast<unsigned char>((raw[0] & ~0x1C) | static_cast<int>(disposal) << 2);
  }
  // Returns the index that leaves the pixel below visible.
  std::optional<int> Transparent() const { return raw[0] & 1 ? std::optional<int>(raw[3]) : std::nullopt; }
  void SetTransparent(unsigned char index) {
    raw[0] |= 1;
    raw[3] = index;
  }
};

// A colour table as it is stored: the colours, red first, and the low flags of its packed byte.
struct GifTable {
  std::string rgb;  // 3 bytes a colour; the number of colours is a power of two from 2 to 256; empty for no table
  bool sorted = false;

  // Returns how many bits an index needs, 1..8; 0 for no table.
  int Bits() const;
};

struct GifScreen {
  base::Size size;
  std::array<unsigned char, 3> raw{};  // as stored: flags of the table, background index, aspect ratio
  GifTable table;
};

struct GifFrame {
  int number = 0;   // counted from 1
  base::Rect area;  // on the screen; may lie partly or wholly outside it, and may be empty
  bool interlaced = false;
  int codeBits = 0;  // of a pixel in the compressed data, 1..8; an index may exceed the table
  GifTable table;    // the local one; empty if the frame uses that of the screen
  std::optional<GifControl> control;
};

// Reads an animated GIF in the order of its file, row by row, so that memory does not grow with the number of frames
// nor with their height. Control extensions are read with their frame. Plain text extensions are skipped: no program
// draws them, and their places are those of the whole screen.
// A file without a trailer ends at its end. Zeros between blocks are skipped.
class GifReader {
 public:
  // bytes has to outlive the reader.
  // Damaged: cut off in the header or in the table. Unsupported: the file is no GIF; the sentence names what it is.
  static Status Open(Bytes& bytes, const Limits& limits, std::unique_ptr<GifReader>& out);
  ~GifReader();
  GifReader(const GifReader&) = delete;
  GifReader& operator=(const GifReader&) = delete;

  const GifScreen& Screen() const { return screen_; }

  enum class Block { Frame, Extension, End };
  // Reads the head of the next block. All rows of a frame, or all parts of an extension, must have been read before.
  // Damaged: cut off in the frame, no colour table, an impossible code size, or a frame that is larger than the rest of
  // the file could describe; or the file ends without any frame. The sentence names the frame.
  Status Next(Block& block);

  // Valid after Block::Frame.
  const GifFrame& Frame() const { return frame_; }
  // Stores the indices of the next row in the order of the file, which an interlaced frame mixes (see GifRowOrder).
  // out holds the width of the frame.
  Status ReadRow(unsigned char* out);
  // Reads all rows and stores the indices of a part of the frame, row by row from top to bottom. part is in pixels of
  // the frame and lies inside it. TooLarge: a part above limits.pixelsInMemory.
  Status ReadPart(base::Rect part, std::vector<unsigned char>& out);

  // Valid after Block::Extension: the label, and the current part, which is empty after the last one.
  int Label() const { return label_; }
  std::string_view Part() const { return part_; }
  Status NextPart();

 private:
  GifReader(Bytes& bytes, const Limits& limits) : bytes_(bytes), limits_(limits) {}
  static int OnRead(GifFileType* file, unsigned char* out, int size);
  Status ReadScreen();
  Status ReadFrameHead();
  Status CheckFrame() const;
  Status ReadExtension(bool& passedOn);
  Status SkipParts();
  Status SkipPixels();
  Status CutOff() const;
  bool AtEnd() const { return at_ >= bytes_.Size(); }

  BlockBytes bytes_;
  Limits limits_;
  std::uint64_t at_ = 0;
  bool ranOut_ = false;  // a read wanted more bytes than the file has
  unsigned char last_ = 0;
  GifFileType* file_ = nullptr;
  GifScreen screen_;
  GifFrame frame_;
  std::optional<GifControl> control_;
  int label_ = 0;
  std::string_view part_;
};

// The rows of a frame in the order in which its file stores them.
class GifRowOrder {
 public:
  GifRowOrder(int height, bool interlaced) : height_(height), step_(interlaced ? 8 : 1) {}
  // Returns the row that is stored next. Call at most height times.
  int Next();

 private:
  int height_;
  int step_;
  int pass_ = 0;
  int row_ = 0;
};

}  // namespace quillon::imaging
