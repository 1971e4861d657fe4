// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>

#include "ui/kit/bind/grid_model.h"

namespace quillon::ui {

// The table of a grid. One row can be selected; double clicks, Enter and right clicks go to the grid.
class GridView : public QTableView {
 public:
  explicit GridView(controls::Grid& grid, QWidget* parent = nullptr);

  // Sets the model. The view follows the selection of the record when it is reset.
  void Use(GridModel* model);
  // Selects the row that the record has selected, and scrolls to it. Reports pending rows first.
  void ShowSelection();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  controls::Grid& grid_;
  bool showing_ = false;  // the selection is being changed by the record, not by the user
};

}  // namespace quillon::ui
