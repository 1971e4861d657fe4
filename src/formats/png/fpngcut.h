// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "controls/control.h"
#include "controls/values.h"
#include "controls/window.h"
#include "job/program.h"

namespace quillon::formats {

// The entries of CmbOp that do something.
enum class PngOperation { Cut = 0, Zoom = 1, Rotate = 5 };

std::vector<std::string> PngOperations();

// The tool window of cut mode 2: cuts, scales or rotates the listed pictures, with a pause.
class FPngCut : public controls::Window {
 public:
  explicit FPngCut(job::Program& program);

  controls::ComboBox CmbOp{*this, "CmbOp", {.caption = "处理模式："}, PngOperations(), 0};
  controls::Frame Frame1{*this, "Frame1", {.caption = "旋转", .visible = false}};
  controls::TextBox TDu{*this, "TDu", controls::Inside(Frame1, "旋转度数：", "-180-+180°；正直逆时针，负值顺时针"),
                        "20", controls::Content::Number};
  controls::CheckBox ChBat{*this, "ChBat", {.caption = "批量"}};
  controls::Label LSt{*this, "LSt", {.caption = "状态：未就绪！"}};
  controls::Button CmdDo{*this, "CmdDo", {.caption = "执行"}};
  controls::Button CmdPause{*this, "CmdPause", {.caption = "暂停", .enabled = false}};
  controls::Button CmdStop{*this, "CmdStop", {.caption = "终止", .enabled = false}};

  bool Running() const { return running_; }
  bool Paused() const { return paused_; }

  // Beeps and stays open while it runs.
  void Close() override;

 private:
  void CmbOp_Click();
  void TDu_Change();
  void CmdDo_Click();
  void CmdPause_Click();
  void CmdStop_Click();
  void EnableForRun(bool running);
  void MakeOutputFolder();

  job::Program& program_;
  bool running_ = false;
  bool paused_ = false;
};

}  // namespace quillon::formats
