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

// Returns the four column headers of a region grid, with the unit.
std::vector<std::string> RegionHeaders(Unit unit);

// The behaviour of a region grid with its three buttons. FMultCut and FCutTime each have one.
class RegionEditor {
 public:
  struct Parts {
    controls::Grid& MSFlexGrid1;
    controls::Button& CmdAdd;
    controls::Button& CmdInput;
    controls::Button& CmdOut;
  };

  // onChange is called after rows were added, removed or changed, and when the unit changes. program and the controls
  // must outlive the editor.
  RegionEditor(job::Program& program, Parts parts, std::function<void()> onChange);
  ~RegionEditor();
  RegionEditor(const RegionEditor&) = delete;
  RegionEditor& operator=(const RegionEditor&) = delete;

  const RegionList& List() const { return list_; }
  // Returns the unit of all regions. It follows ChCutA.
  Unit GetUnit() const;

  // Adds the margins of the main window as a row and selects it. Refuses with a beep if the list has more than 100 rows
  // (then also with a box) or if RegionList::Add() refuses.
  void CmdAdd_Click();
  // Asks for a .clt file and replaces the list and the unit by its content.
  void CmdInput_Click();
  // Asks for a path and saves the list as a .clt file. Beeps if the list is empty.
  void CmdOut_Click();
  // Updates the headers of the grid to the unit.
  void CmdUpdate_Click();
  // Removes the selected row.
  void MSFlexGrid1_DblClick();
  // Asks whether to empty the list.
  void MSFlexGrid1_RightClick();
  // Empties the list without a question.
  void Clear();

  // --- The regions over the preview. Rows count from 0, coordinates are in pixels of the picture.
  // Returns the frames of all rows.
  std::vector<job::PreviewFrame> Frames() const;
  void Select(std::size_t row) { parts_.MSFlexGrid1.Select(row + 1); }
  // Moves a region by that many pixels. It stays inside the picture; a region that is larger than the picture covers
  // it. Does nothing without a picture.
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
