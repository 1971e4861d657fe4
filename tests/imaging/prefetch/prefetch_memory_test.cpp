// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_memory.h"

#include <gtest/gtest.h>

namespace quillon::imaging {
namespace {

class AheadMemoryTest : public ::testing::Test {
 protected:
  PrefetchMemory memory_{1000, 100};
  PrefetchCrop a_;
  PrefetchCrop b_;
};

TEST_F(AheadMemoryTest, WorkingMemoryIsCountedWhileACropRuns) {
  memory_.Begin(a_);
  EXPECT_TRUE(memory_.Admit(a_, 60));
  memory_.Begin(b_);
  EXPECT_FALSE(memory_.Admit(b_, 41));
  EXPECT_EQ(memory_.Working(), 60);
  EXPECT_TRUE(memory_.Admit(b_, 40));
  EXPECT_EQ(memory_.Working(), 100);
  memory_.End(a_);
  EXPECT_EQ(memory_.Working(), 40);
  memory_.End(b_);
  memory_.End(b_);
  EXPECT_EQ(memory_.Working(), 0);
}

TEST_F(AheadMemoryTest, WhatWasRefusedIsBegunAgainWhenThereIsRoom) {
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Admit(a_, 60));
  EXPECT_TRUE(memory_.HasRoom(b_)) << "nothing is known of it yet";
  memory_.Begin(b_);
  ASSERT_FALSE(memory_.Admit(b_, 41));
  EXPECT_TRUE(memory_.MayFitLater(b_));
  memory_.End(b_);
  EXPECT_FALSE(memory_.HasRoom(b_));
  b_.awaited = true;
  EXPECT_FALSE(memory_.HasRoom(b_)) << "waiting for it makes no room";
  memory_.End(a_);
  EXPECT_TRUE(memory_.HasRoom(b_));
}

TEST_F(AheadMemoryTest, WhatNeverFitsIsNotBegunAgain) {
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.Admit(a_, 101));
  EXPECT_FALSE(memory_.MayFitLater(a_));
  EXPECT_FALSE(memory_.Admit(a_, 100 + (std::int64_t{1} << 62)));
  EXPECT_FALSE(memory_.MayFitLater(a_));
}

TEST_F(AheadMemoryTest, ResultsAreCountedUntilTheyAreForgotten) {
  memory_.Begin(a_);
  EXPECT_TRUE(memory_.Grow(a_, 600));
  EXPECT_TRUE(memory_.Grow(a_, 300));
  memory_.End(a_);
  EXPECT_EQ(memory_.Results(), 900);
  EXPECT_FALSE(memory_.Grow(b_, 101));
  EXPECT_EQ(memory_.Results(), 900);
  EXPECT_TRUE(memory_.Grow(b_, 100));
  memory_.ForgetResult(a_);
  memory_.ForgetResult(a_);
  EXPECT_EQ(memory_.Results(), 100);
}

TEST_F(AheadMemoryTest, AResultAsLargeAsTheLargestIsExpectedOfEach) {
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Grow(a_, 400));
  memory_.Expect(400);
  memory_.End(a_);
  EXPECT_TRUE(memory_.HasRoom(b_));  // 400 held and 400 to come
  PrefetchCrop running;
  memory_.Begin(running);
  EXPECT_FALSE(memory_.HasRoom(b_));  // 400 held and twice 400 to come
  b_.awaited = true;
  EXPECT_TRUE(memory_.HasRoom(b_));
}

TEST_F(AheadMemoryTest, OneGiantIsForgottenAfterAWhile) {
  memory_.Expect(900);
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.HasRoom(b_));  // twice 900
  memory_.Expect(10);                 // 787
  memory_.Expect(10);                 // 688
  memory_.Expect(10);                 // 602
  memory_.Expect(10);                 // 526
  EXPECT_FALSE(memory_.HasRoom(b_));
  memory_.Expect(10);  // 460
  EXPECT_TRUE(memory_.HasRoom(b_));
}

TEST_F(AheadMemoryTest, OneAloneIsBegunHoweverLargeItMayBecome) {
  memory_.Expect(2000);
  EXPECT_TRUE(memory_.HasRoom(a_));
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.HasRoom(b_));
}

}  // namespace
}  // namespace quillon::imaging
