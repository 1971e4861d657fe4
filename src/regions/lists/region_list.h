// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "regions/lists/region.h"

namespace quillon::regions {

// The rows of a region grid. A row is the text that was added; the grid shows its four fields.
class RegionList : public controls::GridSource {
 public:
  explicit RegionList(controls::Grid& grid);

  std::size_t RowCount() const override { return rows_.size(); }
  // The beginning of a field, as much as a cell can show.
  std::string Cell(std::size_t row, std::size_t column) const override;

  // False, and nothing added, where the text stands anywhere inside the texts that are there already, put together:
  // a row may so count as known although no row is like it. An empty text stands inside every text.
  bool Add(const std::string& text);
  void Remove(std::size_t row);
  void Clear();
  // Puts another text in the place of a row, whatever stands elsewhere.
  void Replace(std::size_t row, const std::string& text);

  // The texts of all rows put together.
  const std::string& RegionKeys() const { return keys_; }
  std::array<std::string, 4> Fields(std::size_t row) const { return FieldsOf(rows_[row]); }
  std::vector<Margins> All() const;

 private:
  // Takes every occurrence of the text out of the keys.
  void ForgetKey(const std::string& text);

  controls::Grid& grid_;
  std::vector<std::string> rows_;
  std::string keys_;
};

}  // namespace quillon::regions
