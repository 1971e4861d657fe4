// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Rows of four margins, and the boxes and frames that they stand for.
#include "regions/region.h"

#include <gtest/gtest.h>

#include <vector>

namespace quillon::regions {
namespace {

using Fields = std::array<std::string, 4>;

TEST(RegionRow, FieldsStandBetweenTabs) {
  EXPECT_EQ(FieldsOf("10\t20\t30\t40"), (Fields{"10", "20", "30", "40"}));
  EXPECT_EQ(FieldsOf("10\t\t30"), (Fields{"10", "", "30", ""}));
  EXPECT_EQ(FieldsOf("1\t2\t3\t4\t5"), (Fields{"1", "2", "3", "4"}));
  EXPECT_EQ(FieldsOf(""), Fields());
  EXPECT_EQ(RowText(Fields{"1", "", "x", "4"}), "1\t\tx\t4");
  EXPECT_EQ(RowText(Margins{1, 2.5, 3, 4}), "1\t2.5\t3\t4");
}

TEST(RegionRow, WhatIsNoNumberCountsAsNought) {
  const Margins margins = MarginsOf({"abc", "12px", "", "１０.５"});
  EXPECT_EQ(margins.top, 0);
  EXPECT_EQ(margins.left, 12);
  EXPECT_EQ(margins.right, 0);
  EXPECT_EQ(margins.bottom, 10.5);
}

struct BoxCase {
  Margins margins;  // top, left, right, bottom
  Unit unit;
  base::Size picture;
  base::Rect box;  // left, top, width, height
};

TEST(RegionBox, FollowsTheFormulas) {
  const std::vector<BoxCase> cases = {
      {{10, 20, 30, 40}, Unit::Pixels, {400, 300}, {20, 10, 350, 250}},
      {{0, 0, 0, 0}, Unit::Pixels, {400, 300}, {0, 0, 400, 300}},
      {{0, 0, 0, 0}, Unit::Percent, {400, 300}, {0, 0, 400, 300}},
      {{10, 20, 30, 40}, Unit::Percent, {400, 300}, {80, 30, 200, 150}},
      // Each value rounded on its own, ties to even: 5 * 50 / 100 = 2.5, 7 * 50 / 100 = 3.5.
      {{50, 50, 0, 0}, Unit::Percent, {5, 7}, {2, 4, 2, 4}},
      {{0.5, 1.5, 2.5, 0.4}, Unit::Pixels, {10, 10}, {2, 0, 6, 9}},
      // Margins that leave nothing, and less than nothing.
      {{0, 60, 60, 0}, Unit::Percent, {200, 100}, {120, 0, -40, 100}},
      {{150, 0, 0, 150}, Unit::Pixels, {400, 300}, {0, 150, 400, 0}},
      {{-10, -20, 0, 0}, Unit::Pixels, {100, 100}, {-20, -10, 120, 110}},
      {{0, 150, 0, 0}, Unit::Percent, {100, 100}, {150, 0, -50, 100}},
      {{0, 0, 0, 0}, Unit::Percent, {1, 1}, {0, 0, 1, 1}},
      {{0, 25, 25, 0}, Unit::Percent, {65500, 1}, {16375, 0, 32750, 1}},
      {{1e30, 0, 0, 0}, Unit::Pixels, {10, 10}, {0, 2147483647, 10, -2147483647 - 1}},
  };
  for (const BoxCase& one : cases) {
    EXPECT_EQ(BoxOf(one.margins, one.unit, one.picture), one.box)
        << RowText(one.margins) << " of " << one.picture.width << "x" << one.picture.height;
  }
}

TEST(RegionFrame, GoesThereAndBack) {
  const job::PreviewFrame frame = FrameOf({10, 20, 30, 40}, Unit::Pixels, {400, 300});
  EXPECT_EQ(frame, (job::PreviewFrame{20, 10, 350, 250}));
  EXPECT_EQ(RowText(MarginsOfFrame(frame, Unit::Pixels, {400, 300})), "10\t20\t30\t40");
  const job::PreviewFrame shard = FrameOf({10, 20, 30, 40}, Unit::Percent, {400, 300});
  EXPECT_EQ(RowText(MarginsOfFrame(shard, Unit::Percent, {400, 300})), "10\t20\t30\t40");
  EXPECT_EQ(RowText(MarginsOfFrame({1, 1, 1, 1}, Unit::Percent, {3, 3})), "33.33\t33.33\t33.34\t33.34");
  EXPECT_EQ(RowText(MarginsOfFrame({0.4, 0.6, 9.6, 9.4}, Unit::Pixels, {20, 20})), "1\t0\t10\t10");
}

}  // namespace
}  // namespace quillon::regions
