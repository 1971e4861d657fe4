// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/grid_view.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <algorithm>

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
  Model().Flush();
  const int row = grid_.Selected() > 0 ? Model().ViewRow(grid_.Selected() - 1) : -1;
  const QItemSelection shown = selectionModel()->selection();
  const bool several = shown.size() > 1 || (!shown.isEmpty() && shown.first().height() > 1);
  if (currentIndex().row() == row && (!several || grid_.Selection().size() > 1)) return;
  // Selecting here must not come back as an edit of the user.
  showing_ = true;
  const QModelIndex index = row < 0 ? QModelIndex() : model()->index(row, 0);
  if (index.isValid()) {
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(index);
  } else {
    clearSelection();
    setCurrentIndex({});
  }
  showing_ = false;
}

void GridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
  QTableView::selectionChanged(selected, deselected);
  if (showing_ || !selectionModel()->hasSelection()) return;
  showing_ = true;
  grid_.UserEdit(SelectionText());
  showing_ = false;
  OnUserSelection();
}

std::string GridView::SelectionText() const {
  std::vector<std::size_t> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(Model().GridRow(row) + 1);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::string text;
  if (currentIndex().isValid() && selectionModel()->isSelected(currentIndex())) {
    text = std::to_string(Model().GridRow(currentIndex().row()) + 1);
  }
  for (std::size_t first = 0; first < rows.size();) {
    std::size_t last = first;
    while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) ++last;
    if (!text.empty()) text += ',';
    text += std::to_string(rows[first]) + '-' + std::to_string(rows[last]);
    first = last + 1;
  }
  return text;
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
