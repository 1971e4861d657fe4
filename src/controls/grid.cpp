// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/grid.h"

#include <algorithm>
#include <iterator>
#include <numeric>

#include "base/number_text.h"

namespace quillon::controls {
namespace {

// Adds the rows of "7" or "3-9" to rows. Returns false if the text is neither, or names a row above last.
bool AddRows(std::string_view text, std::size_t last, std::vector<std::size_t>& rows) {
  const std::size_t dash = text.find('-');
  const auto first = base::ParseInteger(text.substr(0, dash));
  const auto end = dash == std::string_view::npos ? first : base::ParseInteger(text.substr(dash + 1));
  if (!first || !end || *first < 1 || *end < *first || static_cast<std::size_t>(*end) > last) return false;
  for (int row = *first; row <= *end; ++row) rows.push_back(static_cast<std::size_t>(row));
  return true;
}

}  // namespace

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
  if (selected_ == row && others_.empty()) return;
  others_.clear();
  selected_ = row;
  NotifyValueChanged();
}

void Grid::SelectRows(std::vector<std::size_t> rows) {
  std::erase_if(rows, [this](std::size_t row) { return row == 0 || row > RowCount(); });
  const std::size_t current = rows.empty() ? 0 : rows.front();
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::erase(rows, current);
  if (selected_ == current && others_ == rows) return;
  selected_ = current;
  others_ = std::move(rows);
  NotifyValueChanged();
}

std::vector<std::size_t> Grid::Selection() const {
  std::vector<std::size_t> rows = others_;
  if (selected_ > 0) rows.insert(std::lower_bound(rows.begin(), rows.end(), selected_), selected_);
  return rows;
}

std::size_t Grid::NextInView(const std::vector<std::size_t>& rows) const {
  std::vector<std::size_t> order = viewOrder_ ? viewOrder_() : std::vector<std::size_t>();
  if (order.empty()) {
    order.resize(RowCount());
    std::iota(order.begin(), order.end(), std::size_t{0});
  }
  const auto among = [&rows](std::size_t row) { return std::binary_search(rows.begin(), rows.end(), row + 1); };
  const auto first = std::find_if(order.begin(), order.end(), among);
  const auto next = std::find_if_not(first, order.end(), among);
  if (next != order.end()) return *next + 1;
  return first == order.begin() ? 0 : *std::prev(first) + 1;
}

void Grid::Notify(Change change, std::size_t row) {
  // Rows may be gone; the selection follows silently, because the user did not select anything.
  if (change == Change::Removed) {
    std::erase(others_, row + 1);
    for (std::size_t& other : others_) other -= other > row + 1 ? 1 : 0;
    if (row + 1 < selected_) --selected_;
    std::erase(others_, selected_);
  }
  if (change == Change::Reset) others_.clear();
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
  const auto refused = [text] { return EditResult::Refused("没有第 " + std::string(text) + " 行"); };
  std::vector<std::size_t> rows;
  if (base::ParseInteger(text) != 0) {
    for (std::string_view rest = text; !rest.empty();) {
      const std::size_t comma = rest.find(',');
      if (!AddRows(rest.substr(0, comma), RowCount(), rows)) return refused();
      rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
    }
    if (rows.empty()) return refused();
  }
  SelectRows(std::move(rows));
  return EditResult::Ok();
}

}  // namespace quillon::controls
