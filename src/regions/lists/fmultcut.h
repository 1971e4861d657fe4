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

// The list of regions that are cut out of every picture.
class FMultCut : public controls::Window {
 public:
  explicit FMultCut(job::Program& program);
  ~FMultCut() override;

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
  // Pressed by the program alone.
  controls::Button CmdUpdate{*this, "CmdUpdate", {.caption = "更新表头", .visible = false}};

  RegionEditor& Editor() { return editor_; }
  // All regions of one file of the large-capacity walk; text is the walk's own count.
  void LargeMulCut(const std::string& path, const std::string& text);

  void CmdOk_Click();
  // While a cut runs it asks whether to stop that, and the window stays open.
  void Close() override;

 protected:
  void OnLoad() override;

 private:
  void ShowCount();

  job::Program& program_;
  RegionEditor editor_;
  MultiCut* running_ = nullptr;
};

}  // namespace quillon::regions
