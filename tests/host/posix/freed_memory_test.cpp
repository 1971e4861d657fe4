// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/process_setup.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <memory>
#include <thread>

namespace quillon::host::posix {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

using Block = std::unique_ptr<void, decltype(&std::free)>;

Block Allocated(std::size_t bytes) { return {std::malloc(bytes), std::free}; }

// Bytes of blocks that were asked of the system each for itself.
std::size_t OwnBlocks() { return mallinfo2().hblkhd; }
// Bytes that the C library holds for all others, used or not.
std::size_t Kept() { return mallinfo2().arena; }

TEST(FreedMemory, LargeBlocksGoBackHoweverLargeOnesWereFreedBefore) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "The sanitizer has an allocator of its own";
#endif
  ReturnFreedMemory();
  std::thread([] {
    const std::size_t before = OwnBlocks();
    const std::size_t kept = Kept();
    for (const std::size_t size : {30 * kMegabyte, 18 * kMegabyte, 29 * kMegabyte, 4 * kMegabyte}) {
      const Block block = Allocated(size);
      ASSERT_NE(block, nullptr);
      EXPECT_GE(OwnBlocks(), before + size);
    }
    EXPECT_EQ(OwnBlocks(), before);
    EXPECT_LT(Kept(), kept + kMegabyte);
  }).join();
}

}  // namespace
}  // namespace quillon::host::posix
