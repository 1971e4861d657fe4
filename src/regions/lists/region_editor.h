// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/grid.h"
#include "controls/values.h"
#include "job/program.h"
#include "regions/lists/region_list.h"

namespace quillon::regions {

// The headers of a region grid.
std::vector<std::string> RegionHeaders(Unit unit);

// A region grid with its three buttons, as FMultCut and FCutTime both have one.
class RegionEditor {
 public:
  struct Parts {
    controls::Grid& MSFlexGrid1;
    controls::Button& CmdAdd;
    controls::Button& CmdInput;
    controls::Button& CmdOut;
  };

  // onChange is told whenever rows came, went or changed.
  RegionEditor(job::Program& program, Parts parts, std::function<void()> onChange);
  ~RegionEditor();
  RegionEditor(const RegionEditor&) = delete;
  RegionEditor& operator=(const RegionEditor&) = delete;

  const RegionList& List() const { return list_; }
  // That of ChCutA, which all regions of a list share.
  Unit GetUnit() const;

  void CmdAdd_Click();
  void CmdInput_Click();
  void CmdOut_Click();
  // Puts the headers to the unit.
  void CmdUpdate_Click();
  // Removes the selected row.
  void MSFlexGrid1_DblClick();
  // Asks whether to empty the list.
  void MSFlexGrid1_RightClick();
  void Clear();

  // --- The regions over the preview.
  std::vector<job::PreviewFrame> Frames() const;
  // The row of the smallest region that holds the point, of several as small the last; rows() where none does. Pixels
  // of the picture.
  std::size_t RowAt(double x, double y) const;
  void Select(std::size_t row) { parts_.MSFlexGrid1.Select(row + 1); }
  // Moves a region; it stays inside the picture as far as it fits there.
  void Move(std::size_t row, double across, double down);

 private:
  host::FileQuestion Question(const char* title) const;
  void Changed();

  job::Program& program_;
  Parts parts_;
  RegionList list_;
  std::function<void()> onChange_;
  int token_;
};

}  // namespace quillon::regions
