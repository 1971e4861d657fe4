// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/grid.h"

#include <gtest/gtest.h>

#include "controls/probe.h"

namespace quillon::controls {
namespace {

class Rows : public GridSource {
 public:
  std::size_t RowCount() const override { return count; }
  std::string Cell(std::size_t row, std::size_t column) const override {
    return std::to_string(row) + "/" + std::to_string(column);
  }
  std::size_t count = 0;
};

class GridTest : public testing::Test {
 protected:
  Window window_{"Form1", ""};
  Grid grid_{window_, "MSF", {}, {"序号", "文件"}};
  Rows rows_;
};

TEST_F(GridTest, IsEmptyWithoutASource) {
  EXPECT_EQ(grid_.RowCount(), 0u);
  EXPECT_EQ(grid_.Rows(), 1u);
  EXPECT_EQ(grid_.Value(), "0");
  EXPECT_EQ(grid_.Cell(0, 0), "");
  grid_.Select(1);
  EXPECT_EQ(grid_.Selected(), 0u);
}

TEST_F(GridTest, ShowsItsHeadersAndTheRowsOfItsSource) {
  rows_.count = 3;
  grid_.SetSource(&rows_);
  EXPECT_EQ(grid_.Headers(), (Notes{"序号", "文件"}));
  EXPECT_EQ(grid_.RowCount(), 3u);
  EXPECT_EQ(grid_.Rows(), 4u);
  EXPECT_EQ(grid_.Value(), "3");
  EXPECT_EQ(grid_.Cell(2, 1), "2/1");
  EXPECT_EQ(grid_.Cell(3, 1), "");
}

TEST_F(GridTest, SelectsARowAndNotifiesOfARealChange) {
  rows_.count = 3;
  grid_.SetSource(&rows_);
  Probe probe(window_);
  probe.NoteHandlerOf(grid_);
  grid_.Select(2);
  EXPECT_EQ(grid_.Selected(), 2u);
  EXPECT_EQ(probe.Drain(), (Notes{"value MSF", "handler MSF"}));
  grid_.Select(2);
  EXPECT_EQ(probe.Drain(), Notes());
  grid_.Select(9);
  EXPECT_EQ(grid_.Selected(), 3u);
  grid_.Select(0);
  EXPECT_EQ(grid_.Selected(), 0u);
}

TEST_F(GridTest, UsersEditSelectsARowThatIsThere) {
  rows_.count = 3;
  grid_.SetSource(&rows_);
  EXPECT_TRUE(grid_.UserEdit("3").Accepted());
  EXPECT_EQ(grid_.Selected(), 3u);
  EXPECT_TRUE(grid_.UserEdit("0").Accepted());
  EXPECT_EQ(grid_.Selected(), 0u);
  for (const char* text : {"4", "-1", "x", ""}) {
    EXPECT_EQ(grid_.UserEdit(text).refusal, std::string("没有第 ") + text + " 行");
    EXPECT_EQ(grid_.Selected(), 0u);
  }
}

TEST_F(GridTest, UsersEditSelectsSeveralRows) {
  rows_.count = 9;
  grid_.SetSource(&rows_);
  EXPECT_TRUE(grid_.UserEdit("4,2-5,8").Accepted());
  EXPECT_EQ(grid_.Selected(), 4u);
  EXPECT_EQ(grid_.Selection(), (std::vector<std::size_t>{2, 3, 4, 5, 8}));
  for (const char* text : {"2-10", "5-2", "1,,2", "1,x", "0-3"}) EXPECT_FALSE(grid_.UserEdit(text).Accepted()) << text;
  EXPECT_EQ(grid_.Selection().size(), 5u);
  grid_.Select(4);
  EXPECT_EQ(grid_.Selection(), std::vector<std::size_t>{4});
  grid_.Select(0);
  EXPECT_TRUE(grid_.Selection().empty());
}

TEST_F(GridTest, SelectedRowsFollowARemoval) {
  rows_.count = 9;
  grid_.SetSource(&rows_);
  grid_.SelectRows({4, 6, 8});
  rows_.count = 8;
  grid_.Notify(Grid::Change::Removed, 4);
  EXPECT_EQ(grid_.Selection(), (std::vector<std::size_t>{4, 5, 7}));
  grid_.Notify(Grid::Change::Reset, 0);
  EXPECT_EQ(grid_.Selection(), std::vector<std::size_t>{4});
}

TEST_F(GridTest, PassesTheChangesOfItsSourceToItsObserver) {
  grid_.SetSource(&rows_);
  grid_.Notify(Grid::Change::Appended, 0);
  std::vector<std::pair<Grid::Change, std::size_t>> notified;
  grid_.SetRowObserver([&](Grid::Change change, std::size_t row) { notified.emplace_back(change, row); });
  grid_.Notify(Grid::Change::Appended, 7);
  grid_.Notify(Grid::Change::Reset, 0);
  EXPECT_EQ(notified,
            (std::vector<std::pair<Grid::Change, std::size_t>>{{Grid::Change::Appended, 7}, {Grid::Change::Reset, 0}}));
}

TEST_F(GridTest, MovesALostSelectionToTheLastRowQuietly) {
  rows_.count = 3;
  grid_.SetSource(&rows_);
  grid_.Select(3);
  Probe probe(window_);
  rows_.count = 2;
  grid_.Notify(Grid::Change::Removed, 2);
  EXPECT_EQ(grid_.Selected(), 2u);
  rows_.count = 0;
  grid_.Notify(Grid::Change::Reset, 0);
  EXPECT_EQ(grid_.Selected(), 0u);
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST_F(GridTest, KeepsItsRowSelectedIfOneAboveItIsRemoved) {
  rows_.count = 4;
  grid_.SetSource(&rows_);
  grid_.Select(3);
  rows_.count = 3;
  grid_.Notify(Grid::Change::Removed, 0);
  EXPECT_EQ(grid_.Selected(), 2u);
  grid_.Notify(Grid::Change::Removed, 2);
  EXPECT_EQ(grid_.Selected(), 2u);
}

TEST_F(GridTest, FindsTheNextRowAsTheViewShowsThem) {
  rows_.count = 5;
  grid_.SetSource(&rows_);
  EXPECT_EQ(grid_.NextInView({2, 3}), 4u);
  EXPECT_EQ(grid_.NextInView({4, 5}), 3u);
  EXPECT_EQ(grid_.NextInView({1, 2, 3, 4, 5}), 0u);
  grid_.SetViewOrder([] { return std::vector<std::size_t>{2, 0, 4, 1, 3}; });
  EXPECT_EQ(grid_.NextInView({3}), 1u);
  EXPECT_EQ(grid_.NextInView({1, 5}), 2u);
  EXPECT_EQ(grid_.NextInView({2, 4}), 5u);
}

TEST_F(GridTest, RunsTheHandlersOfDoubleAndRightClick) {
  grid_.DoubleClick();
  grid_.RightClick();
  Probe probe(window_);
  grid_.SetDoubleClickHandler([&] { probe.Note("double"); });
  grid_.SetRightClickHandler([&] { probe.Note("right"); });
  grid_.DoubleClick();
  grid_.RightClick();
  EXPECT_EQ(probe.Drain(), (Notes{"double", "right"}));
}

TEST_F(GridTest, AChangeOfHeadersIsAChangeOfAppearance) {
  int changes = 0;
  window_.Observe(
      [&](Control& control, Aspect aspect) { changes += &control == &grid_ && aspect == Aspect::Appearance; });
  grid_.SetHeaders({"x", "y"});
  EXPECT_EQ(grid_.Headers(), (std::vector<std::string>{"x", "y"}));
  grid_.SetHeaders({"x", "y"});
  EXPECT_EQ(changes, 1);
}

}  // namespace
}  // namespace quillon::controls
