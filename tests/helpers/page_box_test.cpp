// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/pdf/page_box.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace quillon::helpers {
namespace {

TEST(PageBox, IsPutUpright) {
  EXPECT_EQ(BoxOf({0, 0, 200, 100}), (PageBox{0, 0, 200, 100}));
  EXPECT_EQ(BoxOf({200, 100, 0, 0}), (PageBox{0, 0, 200, 100}));
  EXPECT_EQ(BoxOf({-50, 80, 30, -20}), (PageBox{-50, -20, 30, 80}));
}

TEST(PageBox, OfNoAreaOrNoNumberIsNone) {
  EXPECT_EQ(BoxOf({0, 0, 0, 100}), std::nullopt);
  EXPECT_EQ(BoxOf({0, 50, 10, 50}), std::nullopt);
  EXPECT_EQ(BoxOf({0, 0, std::numeric_limits<double>::infinity(), 10}), std::nullopt);
  EXPECT_EQ(BoxOf({std::nan(""), 0, 10, 10}), std::nullopt);
  EXPECT_EQ(BoxOf({0, 0, 1e9, 10}), std::nullopt);
}

TEST(PageBox, CommonPartOfTwo) {
  EXPECT_EQ(Common({0, 0, 100, 100}, {50, -10, 200, 60}), (PageBox{50, 0, 100, 60}));
  EXPECT_EQ(Common({0, 0, 100, 100}, {100, 0, 200, 100}), std::nullopt);
}

TEST(QuarterTurns, RemovesWholeTurnsAndTheSign) {
  const std::pair<int, int> cases[] = {{0, 0},   {90, 1},   {180, 2}, {270, 3},  {360, 0}, {450, 1},
                                       {-90, 3}, {-270, 1}, {45, 0},  {-360, 0}, {89, 0}};
  for (const auto& [degrees, turns] : cases) EXPECT_EQ(QuarterTurns(degrees), turns) << degrees;
}

TEST(Trimmed, RemovesTheMarginsOfThePageAsItIsSeen) {
  // 10 % left, 20 % top, 30 % right, 40 % bottom of what is seen.
  const Margins margins{10, 20, 30, 40};
  const PageBox box{0, 0, 200, 100};
  EXPECT_EQ(Trimmed(box, margins, 0), (PageBox{20, 40, 140, 80}));
  // A quarter turn clockwise: the left side of the page is seen at the top, its top at the right.
  EXPECT_EQ(Trimmed(box, margins, 1), (PageBox{40, 10, 120, 70}));
  EXPECT_EQ(Trimmed(box, margins, 2), (PageBox{60, 20, 180, 60}));
  EXPECT_EQ(Trimmed(box, margins, 3), (PageBox{80, 30, 160, 90}));
}

TEST(Trimmed, WorksOffTheOrigin) {
  EXPECT_EQ(Trimmed({-100, 50, 100, 150}, {10, 20, 30, 40}, 0), (PageBox{-80, 90, 40, 130}));
}

TEST(ParseMargins, ReadsTheTextsAsTheyWereTyped) {
  Margins margins;
  ASSERT_TRUE(ParseMargins("10|2.5|7%|0", margins));
  EXPECT_EQ(margins.left, 10);
  EXPECT_EQ(margins.top, 2.5);
  EXPECT_EQ(margins.right, 7);
  EXPECT_EQ(margins.bottom, 0);
  ASSERT_TRUE(ParseMargins("|abc|-5|３", margins));
  EXPECT_EQ(margins.left, 0);
  EXPECT_EQ(margins.top, 0);
  EXPECT_EQ(margins.right, 0);
  EXPECT_EQ(margins.bottom, 3);
}

TEST(ParseMargins, RefusesOtherCountsAndMarginsThatLeaveNothing) {
  Margins margins;
  for (const char* text : {"", "1|2|3", "1|2|3|4|5", "50|0|50|0", "0|99|0|1", "1e300|0|0|0"}) {
    EXPECT_FALSE(ParseMargins(text, margins)) << text;
  }
  EXPECT_TRUE(ParseMargins("50|0|49.9|0", margins));
}

}  // namespace
}  // namespace quillon::helpers
