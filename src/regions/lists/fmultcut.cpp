// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/lists/fmultcut.h"

#include "job/run/list_run.h"
#include "regions/lists/multi_cut.h"

namespace quillon::regions {
namespace {

constexpr const char* kNoCount = "区域列表：";
constexpr const char* kTooFew = "至少添加2个裁剪区域！";
constexpr const char* kStopQuestion = "正在处理中，要强制终止吗？";
constexpr const char* kCutting = "正在裁剪";
constexpr const char* kRunEnded = "1";
constexpr std::size_t kFewest = 2;  // regions; a single one is a normal cut

}  // namespace

FMultCut::FMultCut(job::Program& program)
    : Window("FMultCut", "多区域裁剪区域设置"),
      program_(program),
      editor_(program, {MSFlexGrid1, CmdAdd, CmdInput, CmdOut}, [this] { ShowCount(); }) {
  CmdOk.SetHandler([this] { CmdOk_Click(); });
  CmdCancel.SetHandler([this] { Close(); });
  CmdUpdate.SetHandler([this] { editor_.CmdUpdate_Click(); });
}

// Several files of one source cannot all overwrite it, and their names do not follow its folder, so both options are
// switched off and locked while the window is open.
void FMultCut::OnLoad() {
  for (controls::CheckBox* box : {&program_.form1.ChOver, &program_.form1.ChKeepDir}) {
    box->Set(false);
    box->SetEnabled(false, "多区域裁剪窗口打开时不能用");
  }
  editor_.CmdUpdate_Click();
}

void FMultCut::Close() {
  if (running_) {
    if (program_.Ask(kStopQuestion, host::kOkCancelQuestion) == host::Reply::Ok) program_.flags.StopRequested = true;
    return;
  }
  if (!Loaded()) return;
  program_.form1.ChOver.SetEnabled(true);
  program_.form1.ChKeepDir.SetEnabled(true);
  program_.fBaseOpt.ChMulCut.Set(false);
  Unload();
  program_.fCutPre.preview.Refresh();
}

void FMultCut::ShowCount() {
  const std::size_t count = editor_.List().RowCount();
  CmdOk.SetEnabled(count >= kFewest && !running_, "至少要有 2 个区域");
  List1.SetText(count == 0 ? kNoCount : "区域列表（共" + std::to_string(count) + "个）：");
  program_.fCutPre.preview.Refresh();
}

void FMultCut::CmdOk_Click() {
  const std::size_t count = editor_.List().RowCount();
  if (count == 0) {
    program_.host.boxes.Beep();
    return;
  }
  if (count < kFewest) {
    program_.Ask(kTooFew, host::kExclamationIcon);
    return;
  }
  bool started = false;
  MultiCut cut(program_, editor_, [&] {
    started = true;
    EnableForRun(&cut);
  });
  job::StartRun(program_.context, cut);
  if (!started) return;
  program_.fBaseOpt.ChMulCut.SetTag(kRunEnded);
  program_.ShowAvailability();
  EnableForRun(nullptr);
  ShowCount();
}

void FMultCut::LargeMulCut(const std::string& path, const std::string& text) {
  if (running_) running_->LargeMulCut(path, text);
}

void FMultCut::EnableForRun(MultiCut* cut) {
  running_ = cut;
  const bool running = running_ != nullptr;
  const char* why = running ? kCutting : "";
  for (controls::Control* control :
       std::initializer_list<controls::Control*>{&CmdAdd, &CmdCancel, &MSFlexGrid1, &CmdInput, &CmdOut}) {
    control->SetEnabled(!running, why);
  }
  if (running) CmdOk.SetEnabled(false, why);
}

}  // namespace quillon::regions
