// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTableView>

#include "ui/kit/bind/grid_model.h"

namespace quillon::ui {

// The table of a grid. One row can be selected, or several if the selection mode allows it; double clicks, Enter and
// right clicks go to the grid.
class GridView : public QTableView {
 public:
  explicit GridView(controls::Grid& grid, QWidget* parent = nullptr);

  GridModel& Model() const { return *static_cast<GridModel*>(model()); }
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

  // Called when the user has selected other rows.
  virtual void OnUserSelection() {}

 private:
  // Returns the selected rows as the grid counts them, the current one first: "7,3-9".
  std::string SelectionText() const;

  controls::Grid& grid_;
  bool showing_ = false;  // the selection is being changed by the record, not by the user
};

}  // namespace quillon::ui
