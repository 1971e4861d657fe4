// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/grid_model.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include "controls/window.h"
#include "ui/kit/bind/grid_view.h"

namespace quillon::ui {
namespace {

using controls::Grid;

struct Numbers : controls::GridSource {
  std::size_t RowCount() const override { return rows.size(); }
  std::string Cell(std::size_t row, std::size_t column) const override {
    return std::to_string(rows[row]) + "/" + std::to_string(column);
  }
  std::vector<int> rows;
};

class GridModelTest : public ::testing::Test {
 protected:
  GridModelTest() { grid_.SetSource(&source_); }

  void Append(int value) {
    source_.rows.push_back(value);
    grid_.Notify(Grid::Change::Appended, source_.rows.size() - 1);
  }
  void Remove(std::size_t row) {
    source_.rows.erase(source_.rows.begin() + static_cast<std::ptrdiff_t>(row));
    grid_.Notify(Grid::Change::Removed, row);
  }
  QString At(int row, int column) { return model_->data(model_->index(row, column), Qt::DisplayRole).toString(); }

  controls::Window window_{"W", "窗口"};
  Grid grid_{window_, "G", {}, {"甲", "乙"}};
  Numbers source_;
  std::unique_ptr<GridModel> model_ = std::make_unique<GridModel>(grid_);
};

TEST_F(GridModelTest, ShowsHeadersAndCells) {
  source_.rows = {5, 6};
  grid_.Notify(Grid::Change::Reset, 0);
  EXPECT_EQ(model_->rowCount(), 2);
  EXPECT_EQ(model_->columnCount(), 2);
  EXPECT_EQ(model_->headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("乙"));
  EXPECT_EQ(At(1, 1), QStringLiteral("6/1"));
  EXPECT_EQ(At(2, 0), QString());
}

TEST_F(GridModelTest, AddsNewRowsAtTheNextBatch) {
  QSignalSpy inserted(model_.get(), &QAbstractItemModel::rowsInserted);
  for (int i = 0; i < 1000; ++i) Append(i);
  EXPECT_EQ(model_->rowCount(), 0);
  ASSERT_TRUE(inserted.wait());
  EXPECT_EQ(inserted.count(), 1);
  EXPECT_EQ(model_->rowCount(), 1000);
  EXPECT_EQ(At(999, 0), QStringLiteral("999/0"));
}

TEST_F(GridModelTest, EditsOfABatchBecomeOneRange) {
  source_.rows = {1, 2, 3, 4};
  grid_.Notify(Grid::Change::Reset, 0);
  QSignalSpy changed(model_.get(), &QAbstractItemModel::dataChanged);
  for (const std::size_t row : {2u, 1u, 2u}) grid_.Notify(Grid::Change::Edited, row);
  ASSERT_TRUE(changed.wait());
  ASSERT_EQ(changed.count(), 1);
  EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
  EXPECT_EQ(changed[0][1].toModelIndex().row(), 2);
}

TEST_F(GridModelTest, StaysSoundWhateverComesTogether) {
  QAbstractItemModelTester tester(model_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  Append(1);
  Append(2);
  model_->Flush();
  Append(3);
  Remove(2);  // a row that was not reported to the view yet
  EXPECT_EQ(model_->rowCount(), 2);
  Append(4);
  Remove(0);
  grid_.Notify(Grid::Change::Edited, 1);
  model_->Flush();
  EXPECT_EQ(model_->rowCount(), 2);
  EXPECT_EQ(At(0, 0), QStringLiteral("2/0"));
  EXPECT_EQ(At(1, 0), QStringLiteral("4/0"));
  source_.rows.clear();
  grid_.Notify(Grid::Change::Reset, 0);
  EXPECT_EQ(model_->rowCount(), 0);
  model_->Flush();
}

// Sorts by the numbers themselves.
class SortedModel : public GridModel {
 public:
  SortedModel(Grid& grid, const Numbers& numbers) : GridModel(grid), numbers_(numbers) {}

 protected:
  RowOrder OrderOf(int) const override {
    ++asked;
    return [this](std::size_t row, std::size_t other) { return numbers_.rows[row] < numbers_.rows[other]; };
  }

 public:
  mutable int asked = 0;

 private:
  const Numbers& numbers_;
};

TEST_F(GridModelTest, SortsTheViewAlone) {
  model_.reset();  // before the other one observes the grid
  model_ = std::make_unique<SortedModel>(grid_, source_);
  QAbstractItemModelTester tester(model_.get(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  for (const int value : {30, 10, 20}) Append(value);
  model_->Flush();
  const QPersistentModelIndex thirty = model_->index(0, 0);
  model_->sort(0, Qt::AscendingOrder);
  EXPECT_EQ(At(0, 0), QStringLiteral("10/0"));
  EXPECT_EQ(At(2, 0), QStringLiteral("30/0"));
  EXPECT_EQ(thirty.row(), 2);
  EXPECT_EQ(model_->Order(), (std::vector<std::size_t>{1, 2, 0}));
  EXPECT_EQ(model_->ViewRow(0), 2);
  EXPECT_EQ(grid_.Cell(0, 0), "30/0");
  Append(5);
  model_->Flush();
  EXPECT_EQ(At(3, 0), QStringLiteral("5/0"));
  Remove(1);
  EXPECT_EQ(At(0, 0), QStringLiteral("20/0"));
  EXPECT_EQ(At(1, 0), QStringLiteral("30/0"));
  EXPECT_EQ(At(2, 0), QStringLiteral("5/0"));
  model_->sort(0, Qt::DescendingOrder);
  EXPECT_EQ(At(0, 0), QStringLiteral("30/0"));
  EXPECT_EQ(At(2, 0), QStringLiteral("5/0"));
  model_->sort(-1);
  EXPECT_EQ(At(1, 0), QStringLiteral("20/0"));
  EXPECT_FALSE(model_->IsSorted());
}

TEST_F(GridModelTest, SortsAgainOnceTheRowsAreStill) {
  model_.reset();
  auto sorted = std::make_unique<SortedModel>(grid_, source_);
  SortedModel& model = *sorted;
  model_ = std::move(sorted);
  for (int value = 0; value < 100'000; ++value) Append(value);
  model.sort(0, Qt::DescendingOrder);
  EXPECT_EQ(model.asked, 1) << "keys may be computed for each row, so not once a comparison";
  const QPersistentModelIndex highest = model.index(0, 0);
  Append(200'000);
  Append(100'000);
  model.Flush();
  EXPECT_EQ(model.asked, 1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return model.asked > 1; }));
  EXPECT_EQ(At(0, 0), QStringLiteral("200000/0"));
  EXPECT_EQ(highest.row(), 2);
  source_.rows[3] = 300'000;
  grid_.Notify(Grid::Change::Edited, 3);
  EXPECT_TRUE(QTest::qWaitFor([&] { return At(0, 0) == QStringLiteral("300000/0"); }));
}

// A grid that still called the model would crash, at the latest under AddressSanitizer.
TEST_F(GridModelTest, ForgetsTheGridWhenItGoes) {
  model_.reset();
  Append(1);
}

TEST_F(GridModelTest, HoldsThreeHundredThousandRowsInAView) {
  GridView view(grid_);
  view.Use(model_.get());
  view.resize(400, 300);
  view.show();
  constexpr int kRows = 300'000;
  for (int i = 0; i < kRows; ++i) {
    Append(i);
    if (i % 20'000 == 0) model_->Flush();
  }
  model_->Flush();
  EXPECT_EQ(model_->rowCount(), kRows);
  grid_.Select(kRows);
  view.ShowSelection();
  EXPECT_EQ(view.currentIndex().row(), kRows - 1);
  EXPECT_TRUE(view.viewport()->rect().intersects(view.visualRect(view.currentIndex())));
  Remove(0);
  EXPECT_EQ(model_->rowCount(), kRows - 1);
  EXPECT_EQ(At(kRows - 2, 0), QString::number(kRows - 1) + QStringLiteral("/0"));
}

// --- The view passes clicks and keys of the user to the grid

class GridViewTest : public GridModelTest {
 protected:
  GridViewTest() {
    source_.rows = {1, 2, 3};
    grid_.Notify(Grid::Change::Reset, 0);
    view_.Use(model_.get());
    view_.resize(400, 300);
    view_.show();
    grid_.SetDoubleClickHandler([this] { ++doubleClicks_; });
    grid_.SetRightClickHandler([this] { ++rightClicks_; });
  }
  QPoint Row(int row) { return view_.visualRect(model_->index(row, 0)).center(); }

  GridView view_{grid_};
  int doubleClicks_ = 0;
  int rightClicks_ = 0;
};

TEST_F(GridViewTest, AClickSelectsTheRow) {
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, Row(1));
  EXPECT_EQ(grid_.Selected(), 2u);
}

TEST_F(GridViewTest, TheRecordsSelectionIsShown) {
  grid_.Select(3);
  view_.ShowSelection();
  EXPECT_EQ(view_.currentIndex().row(), 2);
  EXPECT_TRUE(view_.selectionModel()->isRowSelected(2, {}));
  grid_.Select(0);
  view_.ShowSelection();
  EXPECT_FALSE(view_.selectionModel()->hasSelection());
}

TEST_F(GridViewTest, OneRowAtATime) {
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, Row(0));
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, Qt::ControlModifier, Row(2));
  EXPECT_EQ(view_.selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(grid_.Selected(), 3u);
}

TEST_F(GridViewTest, SeveralRowsIfTheModeAllowsThem) {
  view_.setSelectionMode(QAbstractItemView::ExtendedSelection);
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, Row(0));
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, Qt::ControlModifier, Row(2));
  EXPECT_EQ(grid_.Selection(), (std::vector<std::size_t>{1, 3}));
  EXPECT_EQ(grid_.Selected(), 3u);
  QTest::keyClick(&view_, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(grid_.Selection().size(), 3u);
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, {}, Row(0));
  QTest::mouseClick(view_.viewport(), Qt::LeftButton, Qt::ShiftModifier, Row(1));
  EXPECT_EQ(grid_.Selection(), (std::vector<std::size_t>{1, 2}));
  grid_.Select(2);
  view_.ShowSelection();
  EXPECT_EQ(view_.selectionModel()->selectedRows().size(), 1);
}

TEST_F(GridViewTest, DoubleClickAndEnterGoToTheGrid) {
  QTest::mouseDClick(view_.viewport(), Qt::LeftButton, {}, Row(1));
  EXPECT_EQ(doubleClicks_, 1);
  QTest::keyClick(&view_, Qt::Key_Return);
  EXPECT_EQ(doubleClicks_, 2);
  QTest::mouseDClick(view_.viewport(), Qt::LeftButton, {}, QPoint(5, 280));
  EXPECT_EQ(doubleClicks_, 2);
}

TEST_F(GridViewTest, ARightClickGoesToTheGridWhileItIsEnabled) {
  QTest::mouseClick(view_.viewport(), Qt::RightButton, {}, Row(1));
  EXPECT_EQ(rightClicks_, 1);
  grid_.SetEnabled(false);
  QTest::mouseClick(view_.viewport(), Qt::RightButton, {}, Row(1));
  EXPECT_EQ(rightClicks_, 1);
}

TEST_F(GridViewTest, AllRowsAreOfOneHeight) {
  EXPECT_EQ(view_.rowHeight(0), view_.rowHeight(2));
  EXPECT_EQ(view_.verticalHeader()->sectionResizeMode(0), QHeaderView::Fixed);
}

}  // namespace
}  // namespace quillon::ui
