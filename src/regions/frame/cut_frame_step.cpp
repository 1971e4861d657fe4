// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The manual step of a run: how the run waits at a picture and goes on.
//
// The run calls Ask() for each picture. Ask() shows it, writes the frame of the picture before it back to the margins
// of this one, and pumps messages until a button has set ManualStepDone. The answer is left in the flags and in
// TCutValue, from which the run reads it. Ask() also returns the answer as a Decision in text form. The run stores it
// in its journal and passes it to Ask() again if it is resumed.
#include "base/number_text.h"
#include "job/settings/cut_settings.h"
#include "regions/frame/cut_frame.h"

namespace quillon::regions {
namespace {

constexpr const char* kWaiting = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】或【本图不裁剪】";
constexpr const char* kWaitingForNext = "裁剪框预览    请人工指定本张图的裁剪框，指定完毕之后单击【下一张】";
constexpr const char* kBetween = "裁剪框预览";
constexpr const char* kFrameChoices =
    "\r\n画的框不是将裁出的部分，要怎样裁？这次运行只问这一次"
    "\r\n是——改用百分比，按画的框裁"
    "\r\n否——勾上“按预览框裁剪”，按画的框裁"
    "\r\n取消——照旧，按上面说的裁";
constexpr double kSecondsBetweenTurns = 0.005;  // of the message pump, while the run waits

}  // namespace

std::string CutFrame::Ask(const job::ManualPicture& picture, const std::string& earlier) {
  job::Flags& flags = program_.flags;
  if (asked_.empty()) {
    byPercent_ = !program_.form1.ChCutA.On();
    asFramed_ = program_.form1.ChAsFramed.On();
  }
  asked_ = picture.listedPath;
  whyNotTurned_ = picture.whyNotTurned;
  flags.CurrentImagePath = picture.source;
  flags.ManualStepDone = false;
  flags.SkipCutThisImage = false;
  steps_.clear();
  lastTurn_ = {};
  UpdateImage(picture.source, picture.turned);
  if (const auto decision = DecisionFrom(earlier)) {
    Replay(*decision);
    return earlier;
  }
  const std::size_t row = program_.form1.MSF.Selected();
  const bool more = row > 0 && row < program_.files.RowCount();
  Preview().SetUpcoming(more ? program_.files.Row(row).Path() : std::string());
  WriteBack();
  Wait();
  return flags.ManualStepDone && !flags.CurrentImagePath.empty() ? TextOf(Decided()) : std::string();
}

void CutFrame::Wait() {
  job::Flags& flags = program_.flags;
  job::FCutPre& window = Window();
  waiting_ = true;
  EnableForPicture();
  window.SetTitle(window.CmdNotCut.OwnEnabled() ? kWaiting : kWaitingForNext);
  window.Show();
  while (!flags.ManualStepDone && !flags.StopRequested) {
    program_.host.pump.Turn();
    if (!flags.ManualStepDone) program_.host.clock.Sleep(kSecondsBetweenTurns);
  }
  EndWait();
  if (flags.ManualStepDone && !flags.SkipCutThisImage) AskAboutFrame();
  if (flags.ManualStepDone && !OptionsTurn()) Preview().Glance();
}

// If the options turn pictures, the next one must not be shown early: it would be seen before it is turned.
bool CutFrame::OptionsTurn() const {
  const job::CutSettings options = job::ReadCutSettings(program_);
  return options.rotateCut || options.rotateRule > 0;
}

Decision CutFrame::Decided() const {
  Decision decision;
  for (std::size_t i = 0; i < decision.margins.size(); ++i) {
    decision.margins[i] = program_.form1.TCutValue[i].Value();
  }
  decision.skip = program_.flags.SkipCutThisImage;
  decision.steps = steps_;
  if (!program_.form1.ChCutA.On() && !byPercent_) decision.changes += kByPercent;
  if (program_.form1.ChAsFramed.On() && !asFramed_) decision.changes += kAsFramed;
  return decision;
}

void CutFrame::AskAboutFrame() {
  job::Form1& form = program_.form1;
  const std::optional<job::PreviewResult>& result = Preview().Result();
  // A frame that nobody can draw is no wish.
  const bool noChoice = form.ChFull.On() || !form.CanUsePercent();
  if (frameAsked_ || noChoice || !result || result->notice.empty()) return;
  frameAsked_ = true;
  const int type = host::kYesNoCancelQuestion + host::kThirdIsDefault;
  switch (program_.Ask(result->notice + kFrameChoices, type)) {
    case host::Reply::Yes:
      form.ChCutA.Set(false);
      break;
    case host::Reply::No:
      form.ChAsFramed.Set(true);
      break;
    default:
      break;
  }
}

// Nobody sees that a turn fails. The run passes a picture without a path over.
void CutFrame::Replay(const Decision& decision) {
  std::string& path = program_.flags.CurrentImagePath;
  for (const char step : decision.steps) {
    if (path.empty()) break;
    if (step == kTurnedLeft) lastTurn_ = Turn(90);
    if (step == kTurnedRight) lastTurn_ = Turn(-90);
    if (step == kGrown) PadToRatio();
    if (!lastTurn_) path.clear();
  }
  for (const char change : decision.changes) {
    if (change == kByPercent) program_.form1.ChCutA.Set(false);
    if (change == kAsFramed) program_.form1.ChAsFramed.Set(true);
  }
  LeaveAnchor(base::LeadingNumber(decision.margins[0]), base::LeadingNumber(decision.margins[1]));
  for (std::size_t i = 0; i < decision.margins.size(); ++i) program_.form1.TCutValue[i].SetText(decision.margins[i]);
  program_.flags.SkipCutThisImage = decision.skip;
  program_.flags.ManualStepDone = true;
}

void CutFrame::EnableForPicture() {
  job::FCutPre& window = Window();
  const bool studio = job::IsStudioPreset(program_.form1.CmbKeepCut.Index());
  const bool turned = program_.flags.ImageRotated || program_.flags.ManualRotated;
  window.CmdNext.SetEnabled(true);
  window.CmdNotCut.SetEnabled(!(Fixed() && studio), "这种预设的每一张都要裁剪");
  const bool fixed = !whyNotTurned_.empty();
  window.CmdAddBoard.SetEnabled(!fixed && Ratio().has_value(),
                                fixed ? whyNotTurned_ : "没有固定尺寸或预设，不知道要扩成什么比例");
  window.CmdAddBoard.SetTag("");
  for (controls::Button* button : {&window.CmdRot90, &window.CmdRot270})
    button->SetEnabled(!fixed && !turned, fixed ? whyNotTurned_ : "这张图片已经按旋转规则转过");
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) slider->SetEnabled(true);
}

void CutFrame::EndWait() {
  job::FCutPre& window = Window();
  waiting_ = false;
  drag_ = Drag::None;
  window.SetTitle(kBetween);
  window.LockButtons();
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) {
    slider->SetEnabled(false, "正在裁剪这一张");
  }
}

void CutFrame::Rest() {
  job::FCutPre& window = Window();
  window.SetTitle(job::kPreviewCaption);
  for (controls::Slider* slider : {&window.Slider1, &window.HS, &window.VS}) slider->SetEnabled(true);
  Preview().SetUpcoming("");
  asked_.clear();
  frameAsked_ = false;
}

void CutFrame::CmdNext_Click() {
  if (!Window().CmdNext.OwnEnabled()) return;
  Window().CmdNext.SetEnabled(false);
  Window().CmdAddBoard.SetTag("");
  program_.flags.ManualStepDone = true;
}

void CutFrame::CmdNotCut_Click() {
  if (!Window().CmdNotCut.OwnEnabled()) return;
  Window().CmdNotCut.SetEnabled(false);
  program_.flags.SkipCutThisImage = true;
  program_.flags.ManualStepDone = true;
}

}  // namespace quillon::regions
