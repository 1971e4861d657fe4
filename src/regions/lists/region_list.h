// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "regions/region.h"

namespace quillon::regions {

// The rows of a region grid. A row is the text that was added, unchanged; the grid shows its four fields. Rows count
// from 0, and a row that does not exist must not be named.
class RegionList : public controls::GridSource {
 public:
  // Becomes the source of the grid, which must outlive the list.
  explicit RegionList(controls::Grid& grid);

  std::size_t RowCount() const override { return rows_.size(); }
  // Returns the first 256 bytes of a field, cut between characters; a cell can show no more.
  std::string Cell(std::size_t row, std::size_t column) const override;

  // Adds a row at the end. Returns false and adds nothing if RegionKeys() contains the text. That is more than a search
  // for an equal row: a text can also be found at the seam of two rows, and an empty text is always found.
  bool Add(const std::string& text);
  // Removes a row and its text from RegionKeys().
  void Remove(std::size_t row);
  void Clear();
  // Replaces the text of a row, without the check of Add().
  void Replace(std::size_t row, const std::string& text);

  // Returns the texts of all rows in one string, without anything between them.
  const std::string& RegionKeys() const { return keys_; }
  // Returns the four fields of a row.
  std::array<std::string, 4> Fields(std::size_t row) const { return FieldsOf(rows_[row]); }
  // Returns the margins of all rows.
  std::vector<Margins> All() const;

 private:
  // Removes every occurrence of the text from the keys.
  void ForgetKey(const std::string& text);

  controls::Grid& grid_;
  std::vector<std::string> rows_;
  std::string keys_;
};

}  // namespace quillon::regions
