// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/grid.h"

#include <algorithm>

#include "base/number_text.h"

namespace quillon::controls {

void Grid::SetHeaders(std::vector<std::string> headers) {
  if (headers_ == headers) return;
  headers_ = std::move(headers);
  NotifyAppearanceChanged();
}

std::string Grid::Cell(std::size_t row, std::size_t column) const {
  return row < RowCount() ? source_->Cell(row, column) : std::string();
}

void Grid::Select(std::size_t row) {
  row = std::min(row, RowCount());
  if (selected_ == row) return;
  selected_ = row;
  NotifyValueChanged();
}

void Grid::Notify(Change change, std::size_t row) {
  // Rows may be gone; the selection follows silently, because the user did not select anything.
  if (change == Change::Removed && row + 1 < selected_) --selected_;
  selected_ = std::min(selected_, RowCount());
  if (rowObserver_) rowObserver_(change, row);
}

void Grid::DoubleClick() {
  if (doubleClick_) doubleClick_();
}

void Grid::RightClick() {
  if (rightClick_) rightClick_();
}

EditResult Grid::Apply(std::string_view text) {
  const auto row = base::ParseInteger(text);
  if (!row || *row < 0 || static_cast<std::size_t>(*row) > RowCount()) {
    return EditResult::Refused("没有第 " + std::string(text) + " 行");
  }
  Select(static_cast<std::size_t>(*row));
  return EditResult::Ok();
}

}  // namespace quillon::controls
