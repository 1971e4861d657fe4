// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/grid_view.h"

#include <QHeaderView>
#include <QMouseEvent>

namespace quillon::ui {

GridView::GridView(controls::Grid& grid, QWidget* parent) : QTableView(parent), grid_(grid) {
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTextElideMode(Qt::ElideMiddle);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  // Rows of one fixed height let the view find any of a million rows without measuring the others.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
}

void GridView::Use(GridModel* model) {
  setModel(model);
  connect(model, &QAbstractItemModel::modelReset, this, [this] { ShowSelection(); });
}

void GridView::ShowSelection() {
  if (!model()) return;
  static_cast<GridModel*>(model())->Flush();
  const int row = static_cast<int>(grid_.Selected()) - 1;
  if (currentIndex().row() == row) return;
  // Selecting here must not come back as an edit of the user.
  showing_ = true;
  const QModelIndex index = row < 0 ? QModelIndex() : model()->index(row, 0);
  if (index.isValid()) {
    setCurrentIndex(index);
    scrollTo(index);
  } else {
    clearSelection();
    setCurrentIndex({});
  }
  showing_ = false;
}

void GridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  if (showing_ || selected.isEmpty()) return;
  grid_.UserEdit(std::to_string(selected.first().top() + 1));
}

// The toolkit selects another row before the selected one goes. The record has chosen the next one itself.
void GridView::rowsAboutToBeRemoved(const QModelIndex& parent, int first, int last) {
  showing_ = true;
  QTableView::rowsAboutToBeRemoved(parent, first, last);
  showing_ = false;
}

void GridView::mouseReleaseEvent(QMouseEvent* event) {
  QTableView::mouseReleaseEvent(event);
  if (event->button() == Qt::RightButton && grid_.Enabled()) grid_.RightClick();
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  QTableView::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) grid_.DoubleClick();
}

// Enter acts as a double click, so that the table can be used without a mouse.
void GridView::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && currentIndex().isValid()) {
    grid_.DoubleClick();
  } else {
    QTableView::keyPressEvent(event);
  }
}

}  // namespace quillon::ui
