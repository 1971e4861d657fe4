// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/png/fpngcut.h"

#include <algorithm>
#include <utility>

#include "formats/png/png_tool.h"
#include "job/run/list_run.h"

namespace quillon::formats {
namespace {

constexpr const char* kListFirst = "请先加载文件列表方能执行！";
constexpr const char* kListOnly = "本工具只处理文件列表，请先去掉“超大容量”。";
constexpr const char* kStopQuestion = "终止执行?";
constexpr const char* kPause = "暂停";
constexpr const char* kContinue = "继续";
constexpr const char* kNothingRuns = "当前没有正在执行的处理";
constexpr const char* kRunning = "正在执行";
constexpr double kMostDegrees = 180;

}  // namespace

std::vector<std::string> PngOperations() {
  return {"0-png裁剪",
          "1-png缩放",
          "2-png图片叠加(请使用内置功能列表第57项)",
          "3-png分切(不开通，有需要请定制)",
          "4-png添加文字水印(不开通，有需要请定制)",
          "5-png旋转"};
}

FPngCut::FPngCut(job::Program& program) : Window("FPngCut", "Png图裁剪"), program_(program) {
  CmbOp.SetHandler([this] { CmbOp_Click(); });
  TDu.SetHandler([this] { TDu_Change(); });
  CmdDo.SetHandler([this] { CmdDo_Click(); });
  CmdPause.SetHandler([this] { CmdPause_Click(); });
  CmdStop.SetHandler([this] { CmdStop_Click(); });
  EnableForRun(false);
}

void FPngCut::CmbOp_Click() {
  const auto operation = static_cast<PngOperation>(CmbOp.Index());
  const bool rotates = operation == PngOperation::Rotate;
  if (!rotates && operation != PngOperation::Cut && operation != PngOperation::Zoom) {
    program_.host.boxes.Beep();
    CmbOp.Select(0);
    return;
  }
  Frame1.SetVisible(rotates);
  if (rotates) TDu.SetText("20");
}

void FPngCut::TDu_Change() {
  const double limited = std::clamp(TDu.Number(), -kMostDegrees, kMostDegrees);
  if (limited != TDu.Number()) TDu.SetNumber(limited);
}

void FPngCut::CmdDo_Click() {
  if (program_.files.RowCount() == 0) {
    program_.Ask(kListFirst);
    return;
  }
  if (program_.flags.LargeCapacityMode) {
    program_.Ask(kListOnly);
    return;
  }
  MakeOutputFolder();
  EnableForRun(true);
  PngTool driver(program_, *this);
  StartRun(program_.context, driver);
  EnableForRun(false);
}

// If it cannot be made, the run asks for another one.
void FPngCut::MakeOutputFolder() {
  const std::string folder = program_.form1.LOutDir.Value();
  if (folder == job::kNoOutputFolder || program_.host.files.Stat(folder)) return;
  static_cast<void>(program_.host.files.MakeFolders(folder));
}

void FPngCut::CmdPause_Click() {
  paused_ = !paused_;
  CmdPause.SetCaption(paused_ ? kContinue : kPause);
}

void FPngCut::CmdStop_Click() {
  if (program_.Ask(kStopQuestion, host::kYesNoQuestion) == host::Reply::Yes) program_.flags.StopRequested = true;
}

void FPngCut::EnableForRun(bool running) {
  running_ = running;
  paused_ = false;
  CmdPause.SetCaption(kPause);
  CmdDo.SetEnabled(!running, kRunning);
  for (controls::Control* control : std::initializer_list<controls::Control*>{&CmbOp, &TDu, &ChBat}) {
    control->SetEnabled(!running, kRunning);
  }
  for (controls::Button* button : {&CmdPause, &CmdStop}) button->SetEnabled(running, kNothingRuns);
}

void FPngCut::Close() {
  if (running_) {
    program_.host.boxes.Beep();
  } else {
    Hide();
  }
}

}  // namespace quillon::formats
