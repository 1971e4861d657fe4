// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/io/bytes.h"

#include <gtest/gtest.h>

namespace quillon::imaging {
namespace {

using host::Problem;
using host::Status;

class MemoryDraftTest : public ::testing::Test {
 protected:
  Status Write(const std::string& text) { return draft_.Write(text.data(), text.size()); }

  std::int64_t room_ = 1000;
  MemoryDraft draft_{[this](std::int64_t bytes) {
    if (bytes > room_) return Status(Problem::Stopped, "full");
    room_ -= bytes;
    return Status::Ok();
  }};
};

TEST_F(MemoryDraftTest, WritesReplaceAndAppend) {
  ASSERT_TRUE(Write("hello world"));
  ASSERT_TRUE(draft_.Seek(6));
  ASSERT_TRUE(Write("draft of mine"));
  EXPECT_EQ(draft_.Size(), 19u);
  EXPECT_EQ(room_, 1000 - 19) << "only what makes it larger is asked for";
  ASSERT_TRUE(draft_.Seek(0));
  ASSERT_TRUE(Write("H"));
  EXPECT_EQ(draft_.Release(), "Hello draft of mine");
}

TEST_F(MemoryDraftTest, ReadsGoOnFromThePosition) {
  ASSERT_TRUE(Write("abcdef"));
  char out[8] = {};
  EXPECT_EQ(draft_.Read(out, 3), 0) << "at the end";
  ASSERT_TRUE(draft_.Seek(1));
  EXPECT_EQ(draft_.Read(out, 3), 3);
  EXPECT_EQ(std::string(out, 3), "bcd");
  EXPECT_EQ(draft_.Read(out, 8), 2);
  EXPECT_EQ(std::string(out, 2), "ef");
}

TEST_F(MemoryDraftTest, AWriteBeyondTheEndFillsTheGapWithZeros) {
  ASSERT_TRUE(Write("ab"));
  ASSERT_TRUE(draft_.Seek(5));
  EXPECT_EQ(draft_.Size(), 2u) << "before the write";
  char out[1] = {};
  EXPECT_EQ(draft_.Read(out, 1), 0);
  ASSERT_TRUE(Write("c"));
  EXPECT_EQ(room_, 1000 - 6) << "the gap is asked for too";
  EXPECT_EQ(draft_.Release(), std::string("ab\0\0\0c", 6));
}

TEST_F(MemoryDraftTest, WithoutRoomNothingIsWritten) {
  room_ = 3;
  ASSERT_TRUE(Write("abc"));
  EXPECT_EQ(Write("d").GetProblem(), Problem::Stopped);
  EXPECT_EQ(draft_.Release(), "abc");
}

}  // namespace
}  // namespace quillon::imaging
