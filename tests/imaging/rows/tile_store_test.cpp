// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/rows/tile_store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "host/testing/test_host.h"

namespace quillon::imaging {
namespace {

using host::testing::DiskCall;
using host::testing::Fault;

class TileStoreTest : public ::testing::Test {
 protected:
  // Bytes of which no two parts are alike.
  static std::vector<unsigned char> Picture(base::Size size, int pixelBytes) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height) *
                                     static_cast<std::size_t>(pixelBytes));
    std::uint32_t state = 1;
    for (unsigned char& byte : bytes) {
      state = state * 1664525 + 1013904223;
      byte = static_cast<unsigned char>(state >> 24);
    }
    return bytes;
  }

  // Adds the rows in blocks of growing size.
  static host::Status Fill(TileStore& store, const std::vector<unsigned char>& picture, base::Size size,
                           int pixelBytes) {
    const std::size_t step = static_cast<std::size_t>(size.width * pixelBytes);
    int count = 1;
    for (int y = 0; y < size.height; y += count++) {
      const unsigned char* rows = picture.data() + step * static_cast<std::size_t>(y);
      if (host::Status added = store.Append(rows, step, std::min(count, size.height - y)); !added) return added;
    }
    return host::Status::Ok();
  }

  static std::vector<unsigned char> Part(const std::vector<unsigned char>& picture, base::Size size, int pixelBytes,
                                         base::Rect area) {
    std::vector<unsigned char> part;
    for (int y = area.top; y < area.top + area.height; ++y) {
      const auto from = picture.begin() + std::ptrdiff_t{y * size.width + area.left} * pixelBytes;
      part.insert(part.end(), from, from + std::ptrdiff_t{area.width} * pixelBytes);
    }
    return part;
  }

  void ExpectReadsBack(base::Size size, int pixelBytes) {
    SCOPED_TRACE(std::to_string(size.width) + "x" + std::to_string(size.height) + "x" + std::to_string(pixelBytes));
    const auto store = TileStore::Create(world.files, size, pixelBytes);
    ASSERT_TRUE(store);
    const std::vector<unsigned char> picture = Picture(size, pixelBytes);
    ASSERT_TRUE(Fill(*store, picture, size, pixelBytes));
    const int right = size.width - 1;
    const int bottom = size.height - 1;
    for (const base::Rect& area : {base::Rect{0, 0, size.width, size.height}, base::Rect{right, bottom, 1, 1},
                                   base::Rect{right / 2, 0, 1, size.height}, base::Rect{0, bottom / 3, size.width, 1},
                                   base::Rect{right / 3, bottom / 3, right / 2 + 1, bottom / 2 + 1}}) {
      const std::size_t step = static_cast<std::size_t>(area.width * pixelBytes);
      std::vector<unsigned char> read(step * static_cast<std::size_t>(area.height));
      ASSERT_TRUE(store->Read(area, read.data(), step));
      EXPECT_TRUE(read == Part(picture, size, pixelBytes, area)) << area.left << "," << area.top;
    }
  }

  host::testing::TestHost world;
};

TEST_F(TileStoreTest, AnyPartReadsBack) {
  for (const int pixelBytes : {1, 3, 4, 8}) {
    for (const base::Size size : {base::Size{1, 1}, base::Size{128, 128}, base::Size{127, 129}, base::Size{129, 127},
                                  base::Size{300, 5}, base::Size{7, 400}, base::Size{385, 300}}) {
      ExpectReadsBack(size, pixelBytes);
    }
  }
  EXPECT_EQ(world.faults.OpenHandles(), 0);
}

// The tiles of a very wide picture are lower.
TEST_F(TileStoreTest, AWidePictureReadsBack) { ExpectReadsBack({50000, 70}, 8); }

TEST_F(TileStoreTest, RowsMayLieApart) {
  const base::Size size{130, 4};
  const std::vector<unsigned char> wide = Picture({200, 4}, 3);
  const auto store = TileStore::Create(world.files, size, 3);
  ASSERT_TRUE(store->Append(wide.data(), 600, 4));
  std::vector<unsigned char> read(4 * 500, 7);
  ASSERT_TRUE(store->Read({0, 0, 130, 4}, read.data(), 500));
  for (std::size_t y = 0; y < 4; ++y) {
    EXPECT_TRUE(std::equal(wide.data() + y * 600, wide.data() + y * 600 + 390, read.data() + y * 500)) << y;
    EXPECT_EQ(std::count(read.data() + y * 500 + 390, read.data() + y * 500 + 500, 7), 110) << y;
  }
}

TEST_F(TileStoreTest, OnlyWhatIsWantedIsStored) {
  const base::Size size{700, 600};
  const std::vector<unsigned char> picture = Picture(size, 3);
  const auto store = TileStore::Create(world.files, size, 3);
  ASSERT_TRUE(store);
  const std::vector<base::Rect> areas{{130, 10, 100, 20}, {-50, 500, 60, 400}, {690, -9, 99, 10}, {900, 900, 5, 5}};
  store->KeepOnly(areas);
  ASSERT_TRUE(Fill(*store, picture, size, 3));
  EXPECT_EQ(world.faults.Count(DiskCall::Write), 4);  // tiles (1,0), (5,0), (0,3) and (0,4)
  for (const base::Rect& area : {areas[0], base::Rect{0, 500, 10, 100}, base::Rect{690, 0, 10, 1}}) {
    ASSERT_TRUE(store->Holds(area));
    const std::size_t step = static_cast<std::size_t>(area.width) * 3;
    std::vector<unsigned char> read(step * static_cast<std::size_t>(area.height));
    ASSERT_TRUE(store->Read(area, read.data(), step));
    EXPECT_TRUE(read == Part(picture, size, 3, area)) << area.left;
  }
  EXPECT_FALSE(store->Holds({127, 10, 2, 2}));
  EXPECT_FALSE(store->Holds({130, 10, 100, 130}));
  EXPECT_FALSE(store->Holds({300, 300, 1, 1}));
}

TEST_F(TileStoreTest, ThereIsNoneWithoutDisk) {
  world.faults.Set({.call = DiskCall::OpenScratch, .error = ENOSPC});
  EXPECT_FALSE(TileStore::Create(world.files, {10, 10}, 3));
  EXPECT_EQ(world.faults.Fired(), 1);
}

TEST_F(TileStoreTest, FailuresOfTheDiskAreReturned) {
  const base::Size size{200, 200};
  const std::vector<unsigned char> picture = Picture(size, 3);
  const auto store = TileStore::Create(world.files, size, 3);
  ASSERT_TRUE(store);
  world.faults.Set({.call = DiskCall::Write, .nth = 2, .error = ENOSPC});
  EXPECT_TRUE(Fill(*store, picture, size, 3).DiskFull());
  world.faults.Clear();
  std::vector<unsigned char> read(30);
  world.faults.Set({.call = DiskCall::ReadAt, .error = EIO});
  EXPECT_FALSE(store->Read({0, 0, 10, 1}, read.data(), 30));
  // The second row of tiles was never written.
  EXPECT_FALSE(store->Read({0, 150, 10, 1}, read.data(), 30));
}

TEST_F(TileStoreTest, ShortReadsAndWritesGoOn) {
  for (const DiskCall call : {DiskCall::Write, DiskCall::ReadAt}) {
    world.faults.Set({.call = call, .length = Fault::Length::ForEver, .kind = Fault::Kind::Short});
    ExpectReadsBack({150, 40}, 3);
    EXPECT_GT(world.faults.Fired(), 0);
    world.faults.Clear();
  }
}

}  // namespace
}  // namespace quillon::imaging
