// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/grid_model.h"

#include <algorithm>
#include <limits>

#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

constexpr int kBatchMilliseconds = 30;  // short enough that a growing list looks smooth

int Count(std::size_t rows) {
  return static_cast<int>(std::min<std::size_t>(rows, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

}  // namespace

GridModel::GridModel(controls::Grid& grid, QObject* parent)
    : QAbstractTableModel(parent), grid_(grid), shownRows_(Count(grid.RowCount())) {
  timer_.setSingleShot(true);
  timer_.setInterval(kBatchMilliseconds);
  connect(&timer_, &QTimer::timeout, this, [this] { Flush(); });
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

// During a removal the view still counts the removed row, so the rows below it are off by one.
std::optional<std::size_t> GridModel::SourceRow(const QModelIndex& index) const {
  if (!index.isValid() || index.row() == removing_) return std::nullopt;
  const bool below = removing_ >= 0 && index.row() > removing_;
  const auto row = static_cast<std::size_t>(index.row() - (below ? 1 : 0));
  return row < grid_.RowCount() ? std::optional(row) : std::nullopt;
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
    shownRows_ = rows;
    endInsertRows();
  }
  if (firstEdited_ >= 0 && firstEdited_ < shownRows_) {
    const int last = std::min(lastEdited_, shownRows_ - 1);
    const int first = firstEdited_;
    firstEdited_ = -1;
    emit dataChanged(index(first, 0), index(last, columnCount() - 1));
  }
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
      if (at < shownRows_) {
        removing_ = at;
        beginRemoveRows({}, at, at);
        removing_ = -1;
        --shownRows_;
        endRemoveRows();
      }
      if (firstEdited_ > at) --firstEdited_;
      return;
    case controls::Grid::Change::Reset:
      beginResetModel();
      shownRows_ = Count(grid_.RowCount());
      firstEdited_ = -1;
      endResetModel();
      return;
  }
  if (!timer_.isActive()) timer_.start();
}

}  // namespace quillon::ui
