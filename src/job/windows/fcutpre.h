// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"
#include "controls/window.h"
#include "job/windows/preview.h"

namespace quillon::job {

// The preview window with the cut frame, docked in the main window. The manual frame handles its buttons.
class FCutPre : public controls::Window {
 public:
  FCutPre();

  // Slider1 is the zoom in percent of the picture's own size. HS and VS are the scroll bars of a picture that is larger
  // than its room, from the left and the upper end.
  controls::Slider Slider1{*this, "Slider1", {.caption = "缩放", .tooltip = "缩放(%)"}, 100, 1, 800};
  controls::Slider HS{*this, "HS", {.caption = "左右滚动", .visible = false}, 0, 0, 0};
  controls::Slider VS{*this, "VS", {.caption = "上下滚动", .visible = false}, 0, 0, 0};
  controls::Button CmdNext{*this, "CmdNext", {.caption = "下一张>>>", .tooltip = "Ctrl键下一张", .enabled = false}};
  controls::Button CmdNotCut{
      *this, "CmdNotCut", {.caption = "本图不裁剪", .tooltip = "Z键代表本图不裁剪", .enabled = false}};
  controls::Button CmdAddBoard{
      *this, "CmdAddBoard", {.caption = "本图扩边", .tooltip = "Shift键代表本图扩边", .enabled = false}};
  controls::Button CmdRot90{*this, "CmdRot90", {.caption = "逆转90度", .tooltip = "A键代表本图逆转", .enabled = false}};
  controls::Button CmdRot270{
      *this, "CmdRot270", {.caption = "顺转90度", .tooltip = "Q键代表本图顺转", .enabled = false}};
  controls::CheckBox ChHideShow{
      *this, "ChHideShow", {.caption = "显示/隐藏", .tooltip = "显示/隐藏按钮和右侧、底部滚动条，方便确定裁剪框"}};

  Preview preview;

  // Does nothing while a picture waits for the user's answer. Questions that were answered once for all are asked again
  // after the next Show().
  void Close() override;
  // Hides the buttons and scroll bars while ChHideShow is on.
  void ChHideShow_Click();
  // Disables the buttons, since no picture waits for an answer.
  void LockButtons();

 protected:
  void OnLoad() override;
};

// The caption while no picture waits for an answer.
inline constexpr const char* kPreviewCaption = "裁剪框预览(空格键=下一张，Ctrl=本图扩边，Z=本图不裁剪)";

}  // namespace quillon::job
