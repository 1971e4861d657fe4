// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/grid_model.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

constexpr int kBatchMilliseconds = 30;   // short enough that a growing list looks smooth
constexpr int kStillMilliseconds = 300;  // the time without a new result until a sorted view is sorted again

int Count(std::size_t rows) {
  return static_cast<int>(std::min<std::size_t>(rows, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

}  // namespace

GridModel::GridModel(controls::Grid& grid, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), shownRows_(Count(grid.RowCount())) {
  timer_.setSingleShot(true);
  timer_.setInterval(kBatchMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] { Flush(); });
  still_.setSingleShot(true);
  still_.setInterval(kStillMilliseconds);
  connect(&still_, &QTimer::timeout, this, [this] { sort(sortColumn_, direction_); });
  grid_.SetRowObserver([this](controls::Grid::Change change, std::size_t row) { OnChange(change, row); });
}

GridModel::~GridModel() { grid_.SetRowObserver({}); }

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shownRows_; }

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(grid_.Headers().size());
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  const std::optional<std::size_t> row = SourceRow(index);
  if (!row || role != Qt::DisplayRole) return {};
  return Shown(grid_.Cell(*row, static_cast<std::size_t>(index.column())));
}

// During a removal the view still counts the removed row, so the rows of the grid after it are off by one.
std::optional<std::size_t> GridModel::SourceRow(const QModelIndex& index) const {
  if (!index.isValid()) return std::nullopt;
  std::size_t row = GridRow(index.row());
  if (removing_ >= 0) {
    const auto removed = static_cast<std::size_t>(removing_);
    if (row == removed) return std::nullopt;
    if (row > removed) --row;
  }
  return row < grid_.RowCount() ? std::optional(row) : std::nullopt;
}

std::size_t GridModel::GridRow(int viewRow) const {
  const auto row = static_cast<std::size_t>(viewRow);
  return row < order_.size() ? order_[row] : row;
}

int GridModel::ViewRow(std::size_t gridRow) const {
  const auto found = std::find(order_.begin(), order_.end(), gridRow);
  return found == order_.end() ? Count(gridRow) : static_cast<int>(found - order_.begin());
}

GridModel::RowOrder GridModel::OrderOf(int) const { return std::less<>(); }

void GridModel::SortSoon() {
  if (IsSorted()) still_.start();
}

void GridModel::Arrange() {
  order_.clear();
  if (sortColumn_ < 0) return;
  order_.resize(static_cast<std::size_t>(shownRows_));
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  const RowOrder precedes = OrderOf(sortColumn_);
  std::stable_sort(order_.begin(), order_.end(), [&](std::size_t row, std::size_t other) {
    return direction_ == Qt::AscendingOrder ? precedes(row, other) : precedes(other, row);
  });
}

void GridModel::sort(int column, Qt::SortOrder order) {
  Flush();
  still_.stop();
  emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<std::size_t> rows;
  for (const QModelIndex& index : before) rows.push_back(GridRow(index.row()));
  sortColumn_ = column;
  direction_ = order;
  Arrange();
  std::vector<int> places(static_cast<std::size_t>(shownRows_));
  for (int row = 0; row < shownRows_; ++row) places[GridRow(row)] = row;
  QModelIndexList after;
  for (qsizetype i = 0; i < before.size(); ++i) {
    after << index(places[rows[static_cast<std::size_t>(i)]], before[i].column());
  }
  changePersistentIndexList(before, after);
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
  const auto column = static_cast<std::size_t>(section);
  return column < grid_.Headers().size() ? QVariant(Shown(grid_.Headers()[column])) : QVariant();
}

void GridModel::Flush() {
  timer_.stop();
  const int rows = Count(grid_.RowCount());
  if (rows > shownRows_) {
    beginInsertRows({}, shownRows_, rows - 1);
    for (int row = shownRows_; IsSorted() && row < rows; ++row) order_.push_back(static_cast<std::size_t>(row));
    shownRows_ = rows;
    endInsertRows();
    SortSoon();
  }
  if (firstEdited_ >= 0 && firstEdited_ < shownRows_) {
    // Edited rows may stand anywhere in a sorted view.
    const int last = IsSorted() ? shownRows_ - 1 : std::min(lastEdited_, shownRows_ - 1);
    const int first = IsSorted() ? 0 : firstEdited_;
    firstEdited_ = -1;
    emit dataChanged(index(first, 0), index(last, columnCount() - 1));
    SortSoon();
  }
}

void GridModel::RemoveRow(int gridRow) {
  const int viewRow = ViewRow(static_cast<std::size_t>(gridRow));
  removing_ = gridRow;
  beginRemoveRows({}, viewRow, viewRow);
  removing_ = -1;
  if (IsSorted()) {
    order_.erase(order_.begin() + viewRow);
    for (std::size_t& row : order_) row -= row > static_cast<std::size_t>(gridRow) ? 1 : 0;
  }
  --shownRows_;
  endRemoveRows();
}

void GridModel::OnChange(controls::Grid::Change change, std::size_t row) {
  const int at = Count(row);
  switch (change) {
    case controls::Grid::Change::Appended:
      break;
    case controls::Grid::Change::Edited:
      lastEdited_ = firstEdited_ < 0 ? at : std::max(lastEdited_, at);
      firstEdited_ = firstEdited_ < 0 ? at : std::min(firstEdited_, at);
      break;
    case controls::Grid::Change::Removed:
      // A row that was appended but not reported yet can vanish silently.
      if (at < shownRows_) RemoveRow(at);
      if (firstEdited_ > at) --firstEdited_;
      return;
    case controls::Grid::Change::Reset:
      beginResetModel();
      shownRows_ = Count(grid_.RowCount());
      firstEdited_ = -1;
      Arrange();
      endResetModel();
      return;
  }
  if (!timer_.isActive()) timer_.start();
}

}  // namespace quillon::ui
