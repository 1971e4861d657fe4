// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/grid.h"
#include "ui/kit/bind/grid_view.h"

namespace quillon::ui {

class Binder;

// The table of a list of regions, joined to its record.
class RegionGrid : public GridView {
 public:
  RegionGrid(controls::Grid& grid, Binder& binder);
  ~RegionGrid() override;

  QSize sizeHint() const override;

 private:
  controls::Grid& grid_;
  int token_;
};

}  // namespace quillon::ui
