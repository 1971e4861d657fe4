// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <optional>

#include "controls/grid.h"

namespace quillon::ui {

// Presents the rows of a grid to a view. No cell is copied.
// Appended and edited rows are reported in batches, every 30 ms, so that hundreds of thousands of rows can be added
// while the window stays responsive. Removals and resets are reported at once.
class GridModel : public QAbstractTableModel {
 public:
  explicit GridModel(controls::Grid& grid, QObject* parent = nullptr);
  ~GridModel() override;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Reports the pending changes to the view now.
  void Flush();

 protected:
  // Returns the row of the grid that a row of the view shows, or nothing if it was removed.
  std::optional<std::size_t> SourceRow(const QModelIndex& index) const;

 private:
  void OnChange(controls::Grid::Change change, std::size_t row);

  controls::Grid& grid_;
  QTimer timer_;
  int removing_ = -1;     // row that the grid has already dropped while the view is being notified; -1 for none
  int shownRows_ = 0;     // rows that the view knows of
  int firstEdited_ = -1;  // first and last row with an unreported edit; -1 for none
  int lastEdited_ = -1;
};

}  // namespace quillon::ui
