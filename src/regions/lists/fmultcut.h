// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "controls/grid.h"
#include "controls/values.h"
#include "controls/window.h"
#include "job/program.h"
#include "regions/lists/region_editor.h"

namespace quillon::regions {

class MultiCut;

// The window of the region list: several regions are cut out of every picture of the list, each into a file of its own.
class FMultCut : public controls::Window {
 public:
  explicit FMultCut(job::Program& program);

  controls::Label List1{*this, "List1", {.caption = "区域列表："}};
  controls::Grid MSFlexGrid1{*this,
                             "MSFlexGrid1",
                             {.caption = "区域列表", .tooltip = "双击删除当前区域；右键清空列表"},
                             RegionHeaders(Unit::Pixels)};
  controls::Button CmdAdd{*this, "CmdAdd", {.caption = "新增裁剪区域", .tooltip = "把主窗口当前的裁剪参数加入列表"}};
  controls::Button CmdInput{*this, "CmdInput", {.caption = "导入裁剪区域列表..."}};
  controls::Button CmdOut{*this, "CmdOut", {.caption = "保存列表...", .enabled = false}};
  controls::Button CmdOk{*this, "CmdOk", {.caption = "裁剪", .enabled = false}};
  controls::Button CmdCancel{*this, "CmdCancel", {.caption = "关闭"}};
  // Invisible: the program presses it to update the headers of the grid.
  controls::Button CmdUpdate{*this, "CmdUpdate", {.caption = "更新表头", .visible = false}};

  RegionEditor& Editor() { return editor_; }

  // Starts the run and returns when it has ended. Does nothing if the list has fewer than two regions or another run
  // goes on.
  void CmdOk_Click();
  // During a run: cuts the regions out of a file that is not listed; text is shown as what was done so far. Returns
  // when all regions are done. Does nothing if no run goes on.
  void LargeMulCut(const std::string& path, const std::string& text);
  // Closes the window. During a run it asks whether to stop the run instead, and the window stays open.
  void Close() override;

 protected:
  void OnLoad() override;

 private:
  void ShowCount();
  // cut: the run that goes on, or nullptr after it.
  void EnableForRun(MultiCut* cut);

  job::Program& program_;
  RegionEditor editor_;
  MultiCut* running_ = nullptr;  // the run that CmdOk has started, while it goes on
};

}  // namespace quillon::regions
