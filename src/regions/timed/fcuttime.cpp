// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/timed/fcuttime.h"

#include <algorithm>

#include "base/utf8.h"
#include "host/files/paths.h"
#include "job/run/run_guard.h"
#include "job/windows/file_intake.h"

namespace quillon::regions {
namespace {

constexpr const char* kStopQuestion = "终止定时裁剪？";
constexpr const char* kCloseQuestion = "图片定时裁剪进行中，确定终止?";
constexpr const char* kNotWatching = "定时裁剪还没有开始";
constexpr const char* kOneProcess =
    "定时裁剪只能由一个进程做：几个进程会把同一张图片各裁一次。请不带 --jobs 和 --shard 运行";
constexpr const char* kCount = "已裁剪数：";
constexpr const char* kInPlace = "原地裁剪，原图移入回收站";
constexpr const char* kBeside = "裁到原图旁边，原图移入回收站";
constexpr double kSecondsBetweenRounds = 0.5;
constexpr double kSecondsBetweenTurns = 0.02;

}  // namespace

FCutTime::FCutTime(job::Program& program)
    : Window("FCutTime", "Quillon—图片定时裁剪"),
      program_(program),
      editor_(program, {MSFlexGrid1, CmdAdd, CmdInput, CmdOut}, {}) {
  LDir.SetHandler([this] { LDir.SetText(host::AbsoluteFolder(program_.host.files, LDir.Value())); });
  CmdInDir.SetHandler([this] { CmdInDir_Click(); });
  ChFast.SetHandler([this] { ChFast_Click(ChFast, ChBak); });
  ChBak.SetHandler([this] { ChFast_Click(ChBak, ChFast); });
  ChSizeFilter.SetHandler([this] { ChSizeFilter_Click(); });
  TW.SetHandler([this] { LimitSide(TW); });
  TH.SetHandler([this] { LimitSide(TH); });
  ChMul.SetHandler([this] { ChMul_Click(); });
  Chback.SetHandler([this] { Chback_Click(); });
  CmdDo.SetHandler([this] { CmdDo_Click(); });
  CmdStop.SetHandler([this] { CmdStop_Click(); });
  CmdStop.SetEnabled(false, kNotWatching);
  Chback.SetEnabled(false, kNotWatching);
  ShowPlace();
  if (!program_.shard.Whole()) CmdDo.SetEnabled(false, kOneProcess);
}

void FCutTime::OnLoad() {
  if (LDir.Value().empty() && program_.Intake().InputDirExists()) LDir.SetText(program_.form1.LInDir.Value());
}

void FCutTime::CmdInDir_Click() {
  const std::string initial = program_.host.files.IsFolder(LDir.Value()) ? LDir.Value() : std::string();
  const auto folder = program_.host.dialogs.ChooseFolder("请选择工作目录", initial);
  if (folder) LDir.SetText(*folder);
}

void FCutTime::ChFast_Click(controls::CheckBox& box, controls::CheckBox& other) {
  if (box.On()) other.Set(false);
}

void FCutTime::ChSizeFilter_Click() { Frame2.SetVisible(ChSizeFilter.On()); }

void FCutTime::LimitSide(controls::TextBox& side) {
  const double limited = std::clamp(side.Number(), *side.GetLimits().min, *side.GetLimits().max);
  if (side.Number() == limited) return;
  program_.host.boxes.Beep();
  side.SetNumber(limited);
}

void FCutTime::ChMul_Click() {
  if (ChMul.On()) editor_.Clear();
  Frame3.SetVisible(ChMul.On());
  ShowPlace();
}

void FCutTime::ShowPlace() { LPlace.SetText(ChMul.On() ? kBeside : kInPlace); }

// A window that was closed does not come back.
void FCutTime::Chback_Click() {
  if (Chback.On()) {
    Hide();
  } else if (Loaded()) {
    Show();
  }
}

WatchCutOptions FCutTime::Options() const {
  return {.fast = ChFast.On(),
          .sizeFilter = ChSizeFilter.On(),
          .both = ChBoth.On(),
          .smallWidth = TW.Integer(),
          .smallHeight = TH.Integer(),
          .several = ChMul.On(),
          .regions = editor_.List().All(),
          .unit = editor_.GetUnit()};
}

void FCutTime::CmdDo_Click() {
  const job::RunGuard guard(program_.context);
  if (!guard) return;
  if (!program_.host.files.IsFolder(LDir.Value())) {
    program_.Ask(LDir.Value().empty() ? "请先选择工作目录！" : "工作目录不存在：" + base::DisplayText(LDir.Value()),
                 host::kStopIcon);
    return;
  }
  program_.flags.StopRequested = false;
  program_.form1.Hide();
  if (!ChMul.On()) {
    editor_.Clear();
    editor_.CmdAdd_Click();
  }
  EnableForWatch(true);
  Watch();
  EnableForWatch(false);
  program_.form1.Show();
}

void FCutTime::EnableForWatch(bool watching) {
  running_ = watching;
  CmdStop.SetEnabled(watching, kNotWatching);
  for (controls::Control* control : std::initializer_list<controls::Control*>{&Frame1, &LDir, &CmdInDir, &CmdDo}) {
    control->SetEnabled(!watching, "正在监控，终止以后才能改");
  }
  if (!watching) Chback.Set(false);
  Chback.SetEnabled(watching, kNotWatching);
}

bool FCutTime::GoesOn() const { return CmdStop.OwnEnabled() && !program_.flags.StopRequested; }

void FCutTime::Watch() {
  LFiles.SetText(std::string(kCount) + "0");
  LNote.SetText("");
  WatchCut driver(program_, Options());
  FolderWatch watch(
      program_.context, driver, LDir.Value(), CmbType.Index(),
      {[this] { return GoesOn(); }, [this](std::size_t cut) { LFiles.SetText(kCount + std::to_string(cut)); },
       [this](const std::string& sentence) { LNote.SetText(sentence); }});
  if (program_.observer) program_.observer->RunStarted(0);
  const double start = program_.host.clock.Seconds();
  while (GoesOn()) {
    watch.Round();
    program_.host.pump.Turn();
    Wait();
  }
  job::RunLedger& ledger = watch.Ledger();
  ledger.NoteEnd(program_.host.clock.Seconds() - start, program_.flags.StopRequested);
  if (program_.observer) program_.observer->RunEnded(ledger.Totals());
}

void FCutTime::Wait() {
  const double start = program_.host.clock.Seconds();
  while (GoesOn() && program_.host.clock.Seconds() - start < kSecondsBetweenRounds) {
    program_.host.pump.Turn();
    program_.host.clock.Sleep(kSecondsBetweenTurns);
  }
}

void FCutTime::CmdStop_Click() {
  if (program_.Ask(kStopQuestion, host::kOkCancelDefaultCancel) != host::Reply::Ok) return;
  CmdStop.SetEnabled(false);
  program_.form1.Show();
}

void FCutTime::Close() {
  if (running_ && program_.Ask(kCloseQuestion, host::kOkCancelQuestion) != host::Reply::Ok) return;
  CmdStop.SetEnabled(false);
  Unload();
  program_.form1.Show();
}

}  // namespace quillon::regions
