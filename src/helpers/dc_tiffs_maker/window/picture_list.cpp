// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/window/picture_list.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include "ui/kit/text.h"
#include "ui/kit/theme/flat_paint.h"

namespace quillon::helpers {

PictureList::PictureList(QWidget* parent) : QListWidget(parent) {
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setDragDropMode(QAbstractItemView::DragDrop);
  setDefaultDropAction(Qt::MoveAction);
  setTextElideMode(Qt::ElideMiddle);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setUniformItemSizes(true);
  setAlternatingRowColors(true);
  setAccessibleName(QStringLiteral("要合成的图片"));
}

void PictureList::Add(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    auto* item = new QListWidgetItem(ui::Shown(path), this);
    item->setData(Qt::UserRole, QByteArray::fromStdString(path));
    item->setToolTip(ui::Shown(path));
    item->setFlags(item->flags() & ~Qt::ItemIsDropEnabled);
  }
}

std::vector<std::string> PictureList::Paths() const {
  std::vector<std::string> paths;
  paths.reserve(static_cast<std::size_t>(count()));
  for (int row = 0; row < count(); ++row) paths.push_back(item(row)->data(Qt::UserRole).toByteArray().toStdString());
  return paths;
}

void PictureList::RemoveSelected() {
  const int row = currentRow();
  qDeleteAll(selectedItems());
  if (count() > 0) setCurrentRow(qBound(0, row, count() - 1));
}

// Moves a selected row to the place of an unselected one.
bool PictureList::MoveRow(int row, int to) {
  if (!item(row)->isSelected() || to < 0 || to >= count() || item(to)->isSelected()) return false;
  const bool current = row == currentRow();
  QListWidgetItem* moved = takeItem(row);
  insertItem(to, moved);
  moved->setSelected(true);
  if (current) setCurrentItem(moved, QItemSelectionModel::NoUpdate);
  return true;
}

void PictureList::MoveSelected(Direction direction) {
  for (int i = 0; i < count(); ++i) {
    const int row = direction == Direction::Up ? i : count() - 1 - i;
    MoveRow(row, direction == Direction::Up ? row - 1 : row + 1);
  }
}

void PictureList::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) return event->acceptProposedAction();
  if (event->source() == this) QListWidget::dragEnterEvent(event);
}

void PictureList::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) return event->acceptProposedAction();
  if (event->source() == this) QListWidget::dragMoveEvent(event);
}

void PictureList::dropEvent(QDropEvent* event) {
  if (!event->mimeData()->hasUrls()) return QListWidget::dropEvent(event);
  event->acceptProposedAction();
  if (onDrop_) onDrop_(ui::PathsOf(*event->mimeData()));
}

void PictureList::keyPressEvent(QKeyEvent* event) {
  const bool moves = event->modifiers() == Qt::AltModifier;
  if (event->key() == Qt::Key_Delete) return RemoveSelected();
  if (moves && event->key() == Qt::Key_Up) return MoveSelected(Direction::Up);
  if (moves && event->key() == Qt::Key_Down) return MoveSelected(Direction::Down);
  QListWidget::keyPressEvent(event);
}

void PictureList::paintEvent(QPaintEvent* event) {
  QListWidget::paintEvent(event);
  if (count() > 0) return;
  QPainter painter(viewport());
  ui::PaintDropHint(painter, *viewport(), QStringLiteral("也可以用右边的按钮添加；一张图片成为Tiff的一页"));
}

}  // namespace quillon::helpers
