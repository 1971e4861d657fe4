// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/regions/region_grid.h"

#include <QHeaderView>

#include "controls/window.h"
#include "ui/kit/bind/binder.h"

namespace quillon::ui {
namespace {

constexpr int kRowsShown = 8;

}  // namespace

RegionGrid::RegionGrid(controls::Grid& grid, Binder& binder) : GridView(grid), grid_(grid) {
  auto* model = new GridModel(grid, this);
  setFrameShape(QFrame::NoFrame);
  Use(model);
  binder.Join(grid, this);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { ShowSelection(); });
  token_ = grid_.GetWindow().Observe([this, model](controls::Control& control, controls::Aspect aspect) {
    if (&control != &grid_) return;
    if (aspect == controls::Aspect::Value) ShowSelection();
    if (aspect == controls::Aspect::Appearance)
      emit model->headerDataChanged(Qt::Horizontal, 0, model->columnCount() - 1);
  });
}

RegionGrid::~RegionGrid() { grid_.GetWindow().Forget(token_); }

QSize RegionGrid::sizeHint() const {
  const int rows = verticalHeader()->defaultSectionSize() * kRowsShown;
  const int digit = fontMetrics().horizontalAdvance(u'0');
  return {4 * 14 * digit, horizontalHeader()->sizeHint().height() + rows};
}

}  // namespace quillon::ui
