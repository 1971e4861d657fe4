// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/grid.h"
#include "ui/kit/bind/grid_view.h"

namespace quillon::ui {

class Binder;

// The table of a list of regions. It stays in step with the grid of the record: rows, headers, selection.
// Used by every window that edits such a list.
class RegionGrid : public GridView {
 public:
  RegionGrid(controls::Grid& grid, Binder& binder);
  ~RegionGrid() override;

  // Room for eight rows.
  QSize sizeHint() const override;

 private:
  controls::Grid& grid_;
  int token_;  // of the observer of the window that the grid belongs to
};

}  // namespace quillon::ui
