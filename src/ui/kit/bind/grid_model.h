// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTimer>
#include <optional>

#include "controls/grid.h"

namespace quillon::ui {

// A grid's rows for a view. Rows that are appended or edited one by one reach the view in batches, a few times a
// second, so that hundreds of thousands of rows stay fluid; nothing is copied.
class GridModel : public QAbstractTableModel {
 public:
  explicit GridModel(controls::Grid& grid, QObject* parent = nullptr);
  ~GridModel() override;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // Hands the waiting changes to the view at once.
  void Flush();

 protected:
  // The source's row that stands in a row of the view; nothing for one that is gone.
  std::optional<std::size_t> SourceRow(const QModelIndex& index) const;

 private:
  void OnChange(controls::Grid::Change change, std::size_t row);

  controls::Grid& grid_;
  QTimer timer_;
  int removing_ = -1;  // a row that the source has dropped and the view is about to
  int known_ = 0;      // rows the view was told of
  int firstEdited_ = -1;
  int lastEdited_ = -1;
};

}  // namespace quillon::ui
