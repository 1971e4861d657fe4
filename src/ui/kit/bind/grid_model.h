// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <functional>
#include <optional>
#include <vector>

#include "controls/grid.h"

namespace quillon::ui {

// Presents the rows of a grid to a view. No cell is copied.
// Appended and edited rows are reported in batches, every 30 ms, so that hundreds of thousands of rows can be added
// while the window stays responsive. Removals and resets are reported at once.
// The view may show the rows in another order, which the grid does not know of. A sorted view is sorted again once the
// rows have not changed for a moment; until then, appended rows stand at its end.
class GridModel : public QAbstractTableModel {
 public:
  explicit GridModel(controls::Grid& grid, QObject* parent = nullptr);
  ~GridModel() override;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  // Shows the rows in the order of a column; -1 shows them in the order of the grid.
  void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

  // Return the row of the grid that a row of the view shows, and the reverse; both from 0.
  std::size_t GridRow(int viewRow) const;
  int ViewRow(std::size_t gridRow) const;
  bool IsSorted() const { return sortColumn_ >= 0; }
  // Returns the rows of the grid in the order of the view.
  const std::vector<std::size_t>& Order() const { return order_; }

  // Reports the pending changes to the view now.
  void Flush();

 protected:
  // Returns the row of the grid that a row of the view shows, or nothing if it was removed.
  std::optional<std::size_t> SourceRow(const QModelIndex& index) const;
  // Returns whether a row of the grid precedes another.
  using RowOrder = std::function<bool(std::size_t row, std::size_t other)>;
  // Returns the order of a column. It is asked for once a sorting, so it may compute a key for each row. The default
  // leaves the rows in the order of the grid.
  virtual RowOrder OrderOf(int column) const;
  int SortColumn() const { return sortColumn_; }
  // Sorts a sorted view again after a moment without another call.
  void SortSoon();

 private:
  // Computes order_ by the column that the view is sorted by.
  void Arrange();
  void RemoveRow(int gridRow);
  void OnChange(controls::Grid::Change change, std::size_t row);

  controls::Grid& grid_;
  QTimer timer_;
  QTimer still_;         // runs while the rows of a sorted view may still change
  int removing_ = -1;    // row that the grid has already dropped while the view is being notified; -1 for none
  int sortColumn_ = -1;  // -1: not sorted
  Qt::SortOrder direction_ = Qt::AscendingOrder;
  std::vector<std::size_t> order_;  // the row of the grid for each row of the view; empty if not sorted
  int shownRows_ = 0;               // rows that the view knows of
  int firstEdited_ = -1;            // first and last row with an unreported edit; -1 for none
  int lastEdited_ = -1;
};

}  // namespace quillon::ui
