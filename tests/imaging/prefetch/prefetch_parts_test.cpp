// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/prefetch/prefetch_parts.h"

#include <gtest/gtest.h>

namespace quillon::imaging {
namespace {

class PrefetchMemoryTest : public ::testing::Test {
 protected:
  void Expect(std::int64_t bytes) {
    PrefetchWork done;
    done.counted = bytes;
    memory_.Expect(done);
  }

  PrefetchMemory memory_{1000, 100};
  PrefetchWork a_;
  PrefetchWork b_;
};

TEST_F(PrefetchMemoryTest, WorkingMemoryIsCountedWhileACropRuns) {
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

TEST_F(PrefetchMemoryTest, WhatWasRefusedIsBegunAgainWhenThereIsRoom) {
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

TEST_F(PrefetchMemoryTest, WhatNeverFitsIsNotBegunAgain) {
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.Admit(a_, 101));
  EXPECT_FALSE(memory_.MayFitLater(a_));
  EXPECT_FALSE(memory_.Admit(a_, 100 + (std::int64_t{1} << 62)));
  EXPECT_FALSE(memory_.MayFitLater(a_));
}

TEST_F(PrefetchMemoryTest, ResultsAreCountedUntilTheyAreForgotten) {
  memory_.Begin(a_);
  EXPECT_TRUE(memory_.Grow(a_, 600));
  EXPECT_TRUE(memory_.Grow(a_, 300));
  memory_.End(a_);
  EXPECT_EQ(memory_.Results(), 900);
  EXPECT_FALSE(memory_.Grow(b_, 101));
  EXPECT_EQ(memory_.Results(), 900);
  EXPECT_TRUE(memory_.Grow(b_, 100));
  memory_.ForgetResults(a_);
  memory_.ForgetResults(a_);
  EXPECT_EQ(memory_.Results(), 100);
}

TEST_F(PrefetchMemoryTest, AResultAsLargeAsTheLargestIsExpectedOfEach) {
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Grow(a_, 400));
  memory_.Expect(a_);
  memory_.End(a_);
  EXPECT_TRUE(memory_.HasRoom(b_));  // 400 held and 400 to come
  PrefetchWork running;
  memory_.Begin(running);
  EXPECT_FALSE(memory_.HasRoom(b_));  // 400 held and twice 400 to come
  b_.awaited = true;
  EXPECT_TRUE(memory_.HasRoom(b_));
}

TEST_F(PrefetchMemoryTest, OneGiantIsForgottenAfterAWhile) {
  Expect(900);
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.HasRoom(b_));  // twice 900
  Expect(10);                         // 787
  Expect(10);                         // 688
  Expect(10);                         // 602
  Expect(10);                         // 526
  EXPECT_FALSE(memory_.HasRoom(b_));
  Expect(10);  // 460
  EXPECT_TRUE(memory_.HasRoom(b_));
}

TEST_F(PrefetchMemoryTest, OneAloneIsBegunHoweverLargeItMayBecome) {
  Expect(2000);
  EXPECT_TRUE(memory_.HasRoom(a_));
  memory_.Begin(a_);
  EXPECT_FALSE(memory_.HasRoom(b_));
}

// A large result has its place before it is made, and keeps it when the others leave it none.
TEST_F(PrefetchMemoryTest, AReserveIsThereForALargeResult) {
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Admit(a_, 10, 60));
  EXPECT_EQ(memory_.Working(), 70);
  EXPECT_TRUE(memory_.Grow(a_, 50));
  EXPECT_EQ(memory_.Results(), 0) << "it is in the reserve";
  EXPECT_TRUE(memory_.Grow(a_, 15));
  EXPECT_EQ(memory_.Results(), 5) << "what goes beyond the reserve";
  memory_.Begin(b_);
  EXPECT_FALSE(memory_.Admit(b_, 0, 31));
  memory_.End(a_);
  EXPECT_EQ(memory_.Results(), 65);
  EXPECT_EQ(memory_.Working(), 0);
  memory_.ForgetResults(a_);
  EXPECT_EQ(memory_.Results(), 0);
}

TEST_F(PrefetchMemoryTest, AResultThatFindsNoRoomStaysInItsReserve) {
  ASSERT_TRUE(memory_.Grow(b_, 960));
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Admit(a_, 10, 60));
  ASSERT_TRUE(memory_.Grow(a_, 50));
  memory_.End(a_);
  EXPECT_EQ(memory_.Results(), 960);
  EXPECT_EQ(memory_.Working(), 50);
  memory_.ForgetResults(b_);
  EXPECT_EQ(memory_.Working(), 50);
  memory_.ForgetResults(a_);
  EXPECT_EQ(memory_.Working(), 0);
  EXPECT_EQ(memory_.Results(), 0);
}

TEST_F(PrefetchMemoryTest, ResultsInReservesKeepAWorkWaitingForAPop) {
  ASSERT_TRUE(memory_.Grow(b_, 1000));
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Admit(a_, 0, 60));
  ASSERT_TRUE(memory_.Grow(a_, 60));
  PrefetchWork next;
  next.awaited = true;
  memory_.Begin(next);
  ASSERT_FALSE(memory_.Admit(next, 50));
  memory_.End(next);
  EXPECT_FALSE(memory_.WaitsForPop(next)) << "a is still running";
  memory_.End(a_);
  EXPECT_TRUE(memory_.WaitsForPop(next));
  memory_.ForgetResults(a_);
  EXPECT_FALSE(memory_.WaitsForPop(next));
}

// What fails gives back all that it had, whichever way it was held.
TEST_F(PrefetchMemoryTest, AFailureGivesItsReserveBack) {
  memory_.Begin(a_);
  ASSERT_TRUE(memory_.Admit(a_, 10, 60));
  ASSERT_TRUE(memory_.Grow(a_, 80));
  memory_.ForgetResults(a_);
  memory_.End(a_);
  EXPECT_EQ(memory_.Results(), 0);
  EXPECT_EQ(memory_.Working(), 0);
}

}  // namespace
}  // namespace quillon::imaging
