// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/helper.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillon::helpers {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Fields, StandBetweenTabs) {
  EXPECT_THAT(Fields(""), IsEmpty());
  EXPECT_THAT(Fields("one"), ElementsAre("one"));
  EXPECT_THAT(Fields("a\tb c\t\"d\""), ElementsAre("a", "b c", "\"d\""));
  EXPECT_THAT(Fields("\ta\t"), ElementsAre("", "a", ""));
}

TEST(Words, StandBetweenBlanks) {
  EXPECT_THAT(Words(""), IsEmpty());
  EXPECT_THAT(Words("  "), IsEmpty());
  EXPECT_THAT(Words("a  b "), ElementsAre("a", "b"));
}

TEST(Words, AreHeldTogetherByQuotes) {
  EXPECT_THAT(Words(R"("/a b/c.jpg"  -quality 90 "x")"), ElementsAre("/a b/c.jpg", "-quality", "90", "x"));
  EXPECT_THAT(Words(R"(-i "" x)"), ElementsAre("-i", "", "x"));
  EXPECT_THAT(Words(R"(crop="1 2":3)"), ElementsAre("crop=1 2:3"));
}

TEST(Words, KnowNoOtherSign) { EXPECT_THAT(Words(R"("\" 'a b' $x)"), ElementsAre("\\", "'a", "b'", "$x")); }

TEST(Words, ReachToTheEndWithoutASecondQuote) { EXPECT_THAT(Words(R"("a b)"), ElementsAre("a b")); }

}  // namespace
}  // namespace quillon::helpers
