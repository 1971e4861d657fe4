// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "base/rect.h"
#include "host/files/files.h"

namespace quillon::imaging {

// The pixels of a picture that is too large for memory, in a file without a name. They are added once, row by row from
// the top, and are then read in any order.
//
// How it works. The file holds the picture as tiles, each with its rows one after the other, so that any part of the
// picture is few pieces of the file: a turned picture is read by columns as fast as by rows. Rows are collected until a
// row of tiles is complete and is written at once. That row is all that is held in memory, at most 32 MB unless the
// picture is so wide that 16 of its rows are more.
class TileStore {
 public:
  // Returns nullptr if there is no disk for so many pixels; see Files::OpenScratch.
  // size is not empty. pixelBytes: the bytes of a pixel, at least 1.
  static std::shared_ptr<TileStore> Create(const host::Files& files, base::Size size, int pixelBytes);

  TileStore(std::unique_ptr<host::ScratchFile> file, base::Size size, int pixelBytes);

  // Stores only the tiles that one of areas touches, clipped to the picture. Call before the first row.
  void KeepOnly(const std::vector<base::Rect>& areas);

  // Appends count rows, which begin step bytes apart. Frees the memory after the last row of the picture.
  host::Status Append(const unsigned char* rows, std::size_t step, int count);

  // Returns whether Read can read area, which lies inside the picture: all of it is stored.
  bool Holds(const base::Rect& area) const;

  // Copies the pixels of area to rows that begin step bytes apart. All rows were added, and Holds(area) is true.
  // May be called from several threads.
  host::Status Read(const base::Rect& area, unsigned char* out, std::size_t step) const;

 private:
  // Where a tile begins in the file, or one of these.
  static constexpr std::uint64_t kUnwanted = UINT64_MAX;
  static constexpr std::uint64_t kWanted = UINT64_MAX - 1;

  std::uint64_t& Place(int column, int line) { return places_[TileNumber(column, line)]; }
  std::uint64_t Place(int column, int line) const { return places_[TileNumber(column, line)]; }
  std::size_t TileNumber(int column, int line) const {
    return static_cast<std::size_t>(line) * static_cast<unsigned>(across_) + static_cast<unsigned>(column);
  }
  // Calls visit(column, line) for each tile that area touches, until it returns false. Returns whether none did.
  template <class Visit>
  bool ForTiles(const base::Rect& area, Visit visit) const;
  std::size_t PixelsToBytes(int pixels) const { return static_cast<std::size_t>(pixels) * pixelBytes_; }
  void CopyToBand(const unsigned char* row);
  host::Status WriteBand();
  // Reads the part of one tile that lies in area.
  host::Status ReadTile(int column, int line, const base::Rect& area, unsigned char* buffer, unsigned char* out,
                        std::size_t step) const;

  std::unique_ptr<host::ScratchFile> file_;
  const base::Size size_;
  const std::size_t pixelBytes_;
  const int across_;      // tiles of a row of tiles
  const int tileHeight_;  // pixels
  const std::size_t tileBytes_;
  std::vector<unsigned char> band_;    // the row of tiles that is being filled, tile after tile
  std::vector<std::uint64_t> places_;  // of all tiles, row by row
  std::uint64_t written_ = 0;          // bytes
  int added_ = 0;                      // rows
};

}  // namespace quillon::imaging
