// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "controls/control.h"

namespace quillon::controls {

// Where a grid's cells come from. Rows are counted from 0 and hold no header.
class GridSource {
 public:
  virtual ~GridSource() = default;
  virtual std::size_t RowCount() const = 0;
  virtual std::string Cell(std::size_t row, std::size_t column) const = 0;
};

// A table of rows that its source keeps; the grid itself knows the headers, the selection and who watches.
class Grid : public Control {
 public:
  enum class Change { Appended, Removed, Edited, Reset };
  using RowObserver = std::function<void(Change, std::size_t row)>;

  Grid(Window& window, std::string name, Appearance appearance, std::vector<std::string> headers)
      : Control(window, Kind::Grid, std::move(name), std::move(appearance)), headers_(std::move(headers)) {}

  void SetSource(const GridSource* source) { source_ = source; }
  const std::vector<std::string>& Headers() const { return headers_; }
  // As many as before.
  void SetHeaders(std::vector<std::string> headers);
  // Rows with the header counted, as the batch counts them: 1 for an empty list.
  std::size_t Rows() const { return RowCount() + 1; }
  std::size_t RowCount() const { return source_ ? source_->RowCount() : 0; }
  // "" outside the rows.
  std::string Cell(std::size_t row, std::size_t column) const;

  // Row 1 is the first data row, 0 selects nothing; a row beyond the last selects the last.
  std::size_t Selected() const { return selected_; }
  void Select(std::size_t row);

  // The source tells of its changes here; row counts from 0. A selection that lies beyond the rows left moves to the
  // last of them without a word.
  void Notify(Change change, std::size_t row);
  void SetRowObserver(RowObserver observer) { rowObserver_ = std::move(observer); }

  void SetDoubleClickHandler(std::function<void()> handler) { doubleClick_ = std::move(handler); }
  void SetRightClickHandler(std::function<void()> handler) { rightClick_ = std::move(handler); }
  void DoubleClick();
  void RightClick();

  // The number of data rows.
  std::string Value() const override { return std::to_string(RowCount()); }

 protected:
  // A user's edit selects a row by its number from 1.
  EditResult Apply(std::string_view text) override;

 private:
  std::vector<std::string> headers_;
  const GridSource* source_ = nullptr;
  std::size_t selected_ = 0;
  RowObserver rowObserver_;
  std::function<void()> doubleClick_;
  std::function<void()> rightClick_;
};

}  // namespace quillon::controls
