// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <utility>

#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg_maker.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging {
namespace {

using testing::MakeOptions;
using testing::Scans;

// Bytes that are allocated now.
std::int64_t Allocated() {
  const auto all = mallinfo2();
  return static_cast<std::int64_t>(all.uordblks + all.hblkhd);
}

using Sampling = std::pair<int, int>;

class JpegMemoryTest : public ::testing::TestWithParam<std::tuple<Sampling, Scans>> {};

TEST_P(JpegMemoryTest, NoMoreIsHeldThanWasAnnounced) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "The sanitizer has an allocator of its own";
#endif
  constexpr std::int64_t kBlocksAndTables = 512 * 1024;
  const auto [sampling, scans] = GetParam();
  MakeOptions options;
  options.luma = sampling;
  options.scans = scans;
  testing::ScratchFolder folder;
  const std::string path =
      folder.Put("source.jpg", MakeJpeg(testing::TestPicture({1600, 1200}, options.colours), options));
  std::int64_t announced = 0;
  JpegCutControl control;
  control.admit = [&](std::int64_t bytes) {
    announced = bytes;
    return true;
  };
  for (const base::Rect rect : {base::Rect{160, 120, 1280, 960}, base::Rect{101, 201, 300, 300}}) {
    const std::int64_t before = Allocated();
    std::int64_t most = 0;
    const auto look = [&](const void*, std::size_t) {
      most = std::max(most, Allocated() - before);
      return Status::Ok();
    };
    ASSERT_TRUE(CutJpeg(path, rect, 80, 0, Exif::Drop, {}, look, control));
    EXPECT_LE(most, announced + kBlocksAndTables);
    if (scans != Scans::One) {
      EXPECT_GE(most, announced * 8 / 10) << "so much is not needed";
    }
    EXPECT_LE(Allocated(), before + kBlocksAndTables) << "it is given back";
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, JpegMemoryTest,
                         ::testing::Combine(::testing::Values(Sampling{1, 1}, Sampling{2, 1}, Sampling{2, 2}),
                                            ::testing::Values(Scans::One, Scans::Progressive, Scans::PerComponent)));

}  // namespace
}  // namespace quillon::imaging
