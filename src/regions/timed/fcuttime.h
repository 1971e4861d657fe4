// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "controls/control.h"
#include "controls/grid.h"
#include "controls/values.h"
#include "controls/window.h"
#include "job/program.h"
#include "regions/lists/region_editor.h"
#include "regions/timed/folder_watch.h"
#include "regions/timed/watch_cut.h"

namespace quillon::regions {

// The window of the watch: cuts every picture that is added to a folder, until it is stopped.
class FCutTime : public controls::Window {
 public:
  explicit FCutTime(job::Program& program);

  controls::Label LDir{*this, "LDir", {.caption = "", .tooltip = "工作目录"}, controls::Editable::Yes};
  controls::Button CmdInDir{*this, "CmdInDir", {.caption = "工作目录..."}};
  controls::Frame Frame1{*this, "Frame1", {.caption = "裁剪方式"}};
  controls::ComboBox CmbType{*this, "CmbType", controls::Inside(Frame1, "图片类型："), WatchTypes(), 1};
  controls::CheckBox ChFast{
      *this, "ChFast",
      controls::Inside(Frame1, "快速模式(不能处理超大图)",
                       "不能处理过大的图像，比如超过四五千以上像素的文件；遇超大图自动切换到超大图处理模式")};
  controls::CheckBox ChBak{
      *this, "ChBak",
      controls::Inside(
          Frame1, "本机异常，启用备用模式(处理缓慢)",
          "如果正常处理时，程序在你本机异常不能正常运行，请勾选备用模式；处理缓慢，适用任何图，包括超大图")};
  controls::CheckBox ChSizeFilter{*this, "ChSizeFilter", controls::Inside(Frame1, "忽略小图片")};
  controls::Frame Frame2{*this, "Frame2", {.caption = "忽略的尺寸(像素)", .visible = false, .parent = &Frame1}};
  controls::TextBox TW{*this,     "TW", controls::Inside(Frame2, "宽<=", "30-1000"), "215", controls::Content::Integer,
                       {30, 1000}};
  controls::TextBox TH{*this,     "TH", controls::Inside(Frame2, "高<=", "30-1000"), "215", controls::Content::Integer,
                       {30, 1000}};
  controls::CheckBox ChBoth{*this, "ChBoth", controls::Inside(Frame2, "同时满足")};
  controls::CheckBox ChMul{*this, "ChMul", controls::Inside(Frame1, "多区域裁剪")};
  controls::Frame Frame3{*this, "Frame3", {.caption = "裁剪区域", .visible = false, .parent = &Frame1}};
  controls::Grid MSFlexGrid1{*this, "MSFlexGrid1",
                             controls::Inside(Frame3, "区域列表", "双击删除当前区域；右键清空列表"),
                             RegionHeaders(Unit::Pixels)};
  controls::Button CmdAdd{*this, "CmdAdd", controls::Inside(Frame3, "新增裁剪区域", "把主窗口当前的裁剪参数加入列表")};
  controls::Button CmdInput{*this, "CmdInput", controls::Inside(Frame3, "导入裁剪区域列表...")};
  controls::Button CmdOut{*this, "CmdOut", controls::DisabledInside(Frame3, "保存列表...")};
  controls::Label LFiles{*this, "LFiles", {.caption = "已裁剪数：0"}};
  // The last file that was not cut, and why.
  controls::Label LNote{*this, "LNote", {}};
  controls::CheckBox Chback{
      *this, "Chback", {.caption = "后台监控", .tooltip = "将程序最小化到任务栏", .enabled = false}};
  // What becomes of the originals.
  controls::Label LPlace{*this, "LPlace", {}};
  controls::Button CmdDo{*this, "CmdDo", {.caption = "开始定时裁剪"}};
  controls::Button CmdStop{*this, "CmdStop", {.caption = "终止", .enabled = false}};

  RegionEditor& Editor() { return editor_; }
  bool Running() const { return running_; }

  // Starts the watch and returns when it has ended.
  void CmdDo_Click();
  void CmdStop_Click();
  // Closes the window. During a watch it asks first.
  void Close() override;

 protected:
  void OnLoad() override;

 private:
  void CmdInDir_Click();
  void ChFast_Click(controls::CheckBox& box, controls::CheckBox& other);
  void ChSizeFilter_Click();
  void ChMul_Click();
  void Chback_Click();
  void LimitSide(controls::TextBox& side);
  void ShowPlace();
  WatchCutOptions Options() const;
  void Watch();
  // Pumps messages for half a second, or until the watch is stopped.
  void Wait();
  bool GoesOn() const;
  void EnableForWatch(bool watching);

  job::Program& program_;
  RegionEditor editor_;
  bool running_ = false;
};

// The text of the entry on the task bar while the window is hidden.
inline constexpr const char* kWatchingText = "定时裁剪器正在运行中...";

}  // namespace quillon::regions
