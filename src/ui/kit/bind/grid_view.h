// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>

#include "ui/kit/bind/grid_model.h"

namespace quillon::ui {

// The table of a grid: one row can be selected, a double click and a right click go to the grid.
class GridView : public QTableView {
 public:
  explicit GridView(controls::Grid& grid, QWidget* parent = nullptr);

  // Takes the model that it shows from now on.
  void Use(GridModel* model);
  // Selects what the record has selected and scrolls to it.
  void ShowSelection();

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  controls::Grid& grid_;
  bool showing_ = false;
};

}  // namespace quillon::ui
