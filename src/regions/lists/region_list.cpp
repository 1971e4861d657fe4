// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/region_list.h"

#include "host/files/paths.h"

namespace quillon::regions {
namespace {

constexpr std::size_t kLongestCell = 256;  // bytes

}  // namespace

RegionList::RegionList(controls::Grid& grid) : grid_(grid) { grid_.SetSource(this); }

std::string RegionList::Cell(std::size_t row, std::size_t column) const {
  return column < 4 ? host::HeadOfName(Fields(row)[column], kLongestCell) : std::string();
}

bool RegionList::Add(const std::string& text) {
  if (keys_.find(text) != std::string::npos) return false;
  rows_.push_back(text);
  keys_ += text;
  grid_.Notify(controls::Grid::Change::Appended, rows_.size() - 1);
  return true;
}

void RegionList::Remove(std::size_t row) {
  ForgetKey(rows_[row]);
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
  grid_.Notify(controls::Grid::Change::Removed, row);
  if (rows_.empty()) Clear();  // also clears keys that are left at a seam of rows
}

void RegionList::Clear() {
  rows_.clear();
  keys_.clear();
  grid_.Notify(controls::Grid::Change::Reset, 0);
}

void RegionList::Replace(std::size_t row, const std::string& text) {
  ForgetKey(rows_[row]);
  rows_[row] = text;
  keys_ += text;
  grid_.Notify(controls::Grid::Change::Edited, row);
}

std::vector<Margins> RegionList::All() const {
  std::vector<Margins> all;
  all.reserve(rows_.size());
  for (const std::string& row : rows_) all.push_back(MarginsOf(FieldsOf(row)));
  return all;
}

void RegionList::ForgetKey(const std::string& text) {
  for (std::size_t at = keys_.find(text); at != std::string::npos; at = keys_.find(text, at)) {
    keys_.erase(at, text.size());
  }
}

}  // namespace quillon::regions
