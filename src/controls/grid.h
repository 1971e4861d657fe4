// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "controls/control.h"

namespace quillon::controls {

// The data of a grid. Rows are counted from 0, without the header.
class GridSource {
 public:
  virtual ~GridSource() = default;
  virtual std::size_t RowCount() const = 0;
  virtual std::string Cell(std::size_t row, std::size_t column) const = 0;
};

// A table. The rows are kept by its source; the grid itself keeps the headers, the selection and the observer.
class Grid : public Control {
 public:
  // How the rows changed. Reset means that any row may differ, and the number of rows too.
  enum class Change { Appended, Removed, Edited, Reset };
  using RowObserver = std::function<void(Change, std::size_t row)>;

  Grid(Window& window, std::string name, Appearance appearance, std::vector<std::string> headers)
      : Control(window, Kind::Grid, std::move(name), std::move(appearance)), headers_(std::move(headers)) {}

  // Not owned, and must outlive the grid. A grid without a source is empty.
  void SetSource(const GridSource* source) { source_ = source; }
  const std::vector<std::string>& Headers() const { return headers_; }
  // The number of headers must not change.
  void SetHeaders(std::vector<std::string> headers);
  // The number of rows including the header, as scripts count them: 1 for an empty list.
  std::size_t Rows() const { return RowCount() + 1; }
  // The number of data rows.
  std::size_t RowCount() const { return source_ ? source_->RowCount() : 0; }
  // Returns "" if row is out of range. row counts from 0.
  std::string Cell(std::size_t row, std::size_t column) const;

  // The selected row, counted from 1; 0 if none is selected. If several rows are selected, it is the current one.
  std::size_t Selected() const { return selected_; }
  // All selected rows, counted from 1, ascending. Selected() is one of them.
  std::vector<std::size_t> Selection() const;
  // Selects one row, or none if row is 0. Selecting a row after the last one selects the last.
  void Select(std::size_t row);
  // Selects several rows, counted from 1, in any order; the first of them becomes the current one. Rows that do not
  // exist are left out.
  void SelectRows(std::vector<std::size_t> rows);

  // Called by the source when its rows change; row counts from 0.
  // The selection stays on its row, without a notification. If that row was removed, the row after it becomes the
  // selected one, or the last row if there is none.
  void Notify(Change change, std::size_t row);
  // Called after each Notify. There is one observer, the view of the grid.
  void SetRowObserver(RowObserver observer) { rowObserver_ = std::move(observer); }

  // order returns the rows as the view shows them, counted from 0; empty if it shows them in their own order.
  void SetViewOrder(std::function<std::vector<std::size_t>()> order) { viewOrder_ = std::move(order); }
  // Returns the row that the view shows after the first of rows and that is none of them, else the last one that it
  // shows before; 0 if there is no other row. All rows are counted from 1; rows are ascending.
  std::size_t NextInView(const std::vector<std::size_t>& rows) const;

  // Called on a double click or right click. The Enter key on a row counts as a double click.
  void SetDoubleClickHandler(std::function<void()> handler) { doubleClick_ = std::move(handler); }
  void SetRightClickHandler(std::function<void()> handler) { rightClick_ = std::move(handler); }
  void DoubleClick();
  void RightClick();

  // Returns the number of data rows as text.
  std::string Value() const override { return std::to_string(RowCount()); }

 protected:
  // Selects rows by their numbers, counted from 1: "3", or several as "3,5-9", of which the first is the current one; 0
  // clears the selection.
  EditResult Apply(std::string_view text) override;

 private:
  std::vector<std::string> headers_;
  const GridSource* source_ = nullptr;
  std::size_t selected_ = 0;
  std::vector<std::size_t> others_;  // the other selected rows, ascending
  RowObserver rowObserver_;
  std::function<std::vector<std::size_t>()> viewOrder_;
  std::function<void()> doubleClick_;
  std::function<void()> rightClick_;
};

}  // namespace quillon::controls
