// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/tile_store.h"

#include <algorithm>
#include <cstring>

namespace quillon::imaging {
namespace {

using host::Status;

// 48 KB for RGB: large enough for few reads, and small enough that a turned tile of libvips, which is as large, touches
// little else.
constexpr int kTileWidth = 128;
constexpr int kTileHeight = 128;
constexpr int kLeastTileHeight = 16;
constexpr std::size_t kBandBytes = std::size_t{32} << 20;

int CeilDiv(int value, int divisor) { return (value + divisor - 1) / divisor; }

int TileHeight(std::size_t rowBytes) {
  int height = kTileHeight;
  while (height > kLeastTileHeight && rowBytes * static_cast<unsigned>(height) > kBandBytes) height /= 2;
  return height;
}

}  // namespace

TileStore::TileStore(std::unique_ptr<host::ScratchFile> file, base::Size size, int pixelBytes)
    : file_(std::move(file)),
      size_(size),
      pixelBytes_(static_cast<std::size_t>(pixelBytes)),
      across_(CeilDiv(size.width, kTileWidth)),
      tileHeight_(TileHeight(PixelsToBytes(size.width))),
      tileBytes_(PixelsToBytes(kTileWidth) * static_cast<unsigned>(tileHeight_)),
      band_(tileBytes_ * static_cast<unsigned>(across_)),
      places_(static_cast<std::size_t>(CeilDiv(size.height, tileHeight_)) * static_cast<unsigned>(across_), kWanted) {}

std::shared_ptr<TileStore> TileStore::Create(const host::Files& files, base::Size size, int pixelBytes) {
  // Tiles are stored whole, also at the edges.
  const auto width = static_cast<std::uint64_t>(CeilDiv(size.width, kTileWidth)) * kTileWidth;
  const auto height = static_cast<std::uint64_t>(CeilDiv(size.height, kTileHeight)) * kTileHeight;
  auto file = files.OpenScratch(width * height * static_cast<unsigned>(pixelBytes));
  return file ? std::make_shared<TileStore>(std::move(file), size, pixelBytes) : nullptr;
}

Status TileStore::Append(const unsigned char* rows, std::size_t step, int count) {
  for (int i = 0; i < count; ++i) {
    CopyToBand(rows + step * static_cast<unsigned>(i));
    ++added_;
    if (added_ % tileHeight_ != 0 && added_ < size_.height) continue;
    if (Status written = WriteBand(); !written) return written;
  }
  return Status::Ok();
}

void TileStore::CopyToBand(const unsigned char* row) {
  const std::size_t tileRow = PixelsToBytes(kTileWidth);
  unsigned char* to = band_.data() + tileRow * static_cast<unsigned>(added_ % tileHeight_);
  std::size_t left = PixelsToBytes(size_.width);
  for (; left > tileRow; left -= tileRow, row += tileRow, to += tileBytes_) std::memcpy(to, row, tileRow);
  std::memcpy(to, row, left);
}

// Writes the wanted tiles; neighbours are written together.
Status TileStore::WriteBand() {
  const int line = (added_ - 1) / tileHeight_;
  for (int column = 0; column < across_; ++column) {
    const int first = column;
    for (; column < across_ && Place(column, line) == kWanted; ++column) {
      Place(column, line) = written_;
      written_ += tileBytes_;
    }
    const std::size_t bytes = tileBytes_ * static_cast<unsigned>(column - first);
    Status written = file_->Write(band_.data() + tileBytes_ * static_cast<unsigned>(first), bytes);
    if (!written) return written;
  }
  if (added_ == size_.height) band_ = {};
  return Status::Ok();
}

template <class Visit>
bool TileStore::ForTiles(const base::Rect& area, Visit visit) const {
  for (int line = area.top / tileHeight_; line * tileHeight_ < area.top + area.height; ++line) {
    for (int column = area.left / kTileWidth; column * kTileWidth < area.left + area.width; ++column) {
      if (!visit(column, line)) return false;
    }
  }
  return true;
}

void TileStore::KeepOnly(const std::vector<base::Rect>& areas) {
  std::fill(places_.begin(), places_.end(), kUnwanted);
  for (const base::Rect& area : areas) {
    const std::int64_t right = std::min<std::int64_t>(std::int64_t{area.left} + area.width, size_.width);
    const std::int64_t bottom = std::min<std::int64_t>(std::int64_t{area.top} + area.height, size_.height);
    const int left = std::max(area.left, 0);
    const int top = std::max(area.top, 0);
    if (right <= left || bottom <= top) continue;
    ForTiles({left, top, static_cast<int>(right - left), static_cast<int>(bottom - top)}, [&](int column, int line) {
      Place(column, line) = kWanted;
      return true;
    });
  }
}

bool TileStore::Holds(const base::Rect& area) const {
  return ForTiles(area, [&](int column, int line) { return Place(column, line) != kUnwanted; });
}

Status TileStore::Read(const base::Rect& area, unsigned char* out, std::size_t step) const {
  const auto buffer = std::make_unique_for_overwrite<unsigned char[]>(tileBytes_);
  Status status;
  ForTiles(area, [&](int column, int line) {
    status = ReadTile(column, line, area, buffer.get(), out, step);
    return static_cast<bool>(status);
  });
  return status;
}

Status TileStore::ReadTile(int column, int line, const base::Rect& area, unsigned char* buffer, unsigned char* out,
                           std::size_t step) const {
  const int left = std::max(area.left, column * kTileWidth);
  const int right = std::min(area.left + area.width, (column + 1) * kTileWidth);
  const int top = std::max(area.top, line * tileHeight_);
  const int bottom = std::min(area.top + area.height, (line + 1) * tileHeight_);
  const std::size_t tileRow = PixelsToBytes(kTileWidth);
  const std::uint64_t position = Place(column, line) + tileRow * static_cast<unsigned>(top - line * tileHeight_);
  const auto count = static_cast<std::size_t>(bottom - top);
  if (Status read = file_->ReadAt(position, buffer, tileRow * count); !read) return read;
  const unsigned char* from = buffer + PixelsToBytes(left - column * kTileWidth);
  unsigned char* to = out + step * static_cast<unsigned>(top - area.top) + PixelsToBytes(left - area.left);
  for (std::size_t y = 0; y < count; ++y) std::memcpy(to + step * y, from + tileRow * y, PixelsToBytes(right - left));
  return Status::Ok();
}

}  // namespace quillon::imaging
