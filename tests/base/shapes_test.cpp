// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "base/colour.h"
#include "base/rect.h"

namespace quillon::base {
namespace {

TEST(Rect, IsEmptyIfASideIsNotPositive) {
  EXPECT_TRUE(Rect().Empty());
  EXPECT_TRUE((Rect{5, 5, 0, 10}).Empty());
  EXPECT_TRUE((Rect{5, 5, 10, 0}).Empty());
  EXPECT_TRUE((Rect{5, 5, -1, 10}).Empty());
  EXPECT_TRUE((Rect{5, 5, 10, -1}).Empty());
  EXPECT_FALSE((Rect{-5, -5, 1, 1}).Empty());
}

TEST(Rect, IsEqualInAllFourNumbers) {
  const Rect rect{1, 2, 3, 4};
  EXPECT_EQ(rect, (Rect{1, 2, 3, 4}));
  EXPECT_NE(rect, (Rect{0, 2, 3, 4}));
  EXPECT_NE(rect, (Rect{1, 0, 3, 4}));
  EXPECT_NE(rect, (Rect{1, 2, 0, 4}));
  EXPECT_NE(rect, (Rect{1, 2, 3, 0}));
}

TEST(Size, IsEmptyIfASideIsNotPositive) {
  EXPECT_TRUE(Size().Empty());
  EXPECT_TRUE((Size{0, 1}).Empty());
  EXPECT_TRUE((Size{1, -1}).Empty());
  EXPECT_FALSE((Size{1, 1}).Empty());
  EXPECT_NE((Size{1, 2}), (Size{2, 1}));
}

TEST(Colour, HoldsRedInTheLowestByte) {
  const Colour colour{0x00030201};
  EXPECT_EQ(colour.Red(), 1);
  EXPECT_EQ(colour.Green(), 2);
  EXPECT_EQ(colour.Blue(), 3);
  EXPECT_EQ(colour, (Colour{0x00030201}));
  EXPECT_NE(colour, kWhite);
}

TEST(Colour, UsesTheLowBytesOfANegativeValue) {
  const Colour colour{-1};
  EXPECT_EQ(colour.Red(), 255);
  EXPECT_EQ(colour.Green(), 255);
  EXPECT_EQ(colour.Blue(), 255);
}

TEST(Colour, WhiteIsAllThree) { EXPECT_EQ(kWhite.value, 16777215); }

TEST(Rect, CommonPartOfRectangles) {
  EXPECT_EQ(Intersection({0, 0, 10, 10}, {5, 6, 10, 10}), (Rect{5, 6, 5, 4}));
  EXPECT_EQ(Intersection({0, 0, 10, 10}, {10, 0, 5, 5}), Rect{});
  EXPECT_EQ(Intersection({2000000000, 0, 2000000000, 1}, {0, 0, 2147483647, 1}), (Rect{2000000000, 0, 147483647, 1}));
}

}  // namespace
}  // namespace quillon::base
