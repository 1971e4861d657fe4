// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/runner.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "base/utf8.h"
#include "cli/manual_steps.h"
#include "cli/replies.h"
#include "controls/grid.h"
#include "job/windows/file_intake.h"

namespace quillon::cli {
namespace {

using controls::Control;
using controls::Kind;

constexpr std::size_t kNearest = 3;  // suggestions for a name that does not exist
constexpr const char* kRegionRun = "FMultCut.CmdOk";
constexpr const char* kWatch = "FCutTime.CmdDo";
constexpr const char* kOnlyInputFolder = "已启用“超大容量”，只处理输入目录中的文件";

std::string Joined(const std::vector<std::string>& names) {
  std::string all;
  for (const std::string& name : names) all += (all.empty() ? "" : "、") + name;
  return all;
}

std::string Sentence(const std::string& place, const std::string& why) {
  return base::DisplayText(place) + "：" + base::DisplayText(why);
}

bool CanBeClicked(const Control& control) {
  return control.GetKind() == Kind::Button || control.GetKind() == Kind::Menu || control.GetKind() == Kind::Grid;
}

}  // namespace

// What a click starts if nothing keeps it from starting.
enum class Runner::Starts { Nothing, Run, Watch };

Runner::Runner(job::Program& program, RunListener& listener, Reporter& reporter, Stopping stopping)
    : program_(program), listener_(listener), reporter_(reporter), stopping_(std::move(stopping)) {}

Outcome Runner::Perform(const Plan& plan) {
  std::string refusal = CheckNames(plan);
  for (std::size_t i = 0; i < plan.steps.size() && refusal.empty() && !Stopped(); ++i) {
    if (AdmissionDue(plan.steps, i)) Admit();
    if (!Stopped()) refusal = Do(plan.steps[i]);
  }
  if (refusal.empty() && !Stopped()) {
    Admit();
    if (plan.listControls) PrintAll();
  }
  outcome_.exit = refusal.empty() ? ExitNow() : Exit::WrongArguments;
  outcome_.notes.insert(outcome_.notes.end(), listener_.Notes().begin(), listener_.Notes().end());
  if (!refusal.empty()) outcome_.notes.push_back(refusal);
  reporter_.Report(EndEvent(listener_.Sums()));
  reporter_.Finish(listener_.Sums());
  return outcome_;
}

bool Runner::Stopped() const { return stopping_() || listener_.Sums().stopped; }

Exit Runner::ExitNow() const {
  if (Stopped()) return Exit::Stopped;
  return runNotStarted_ || listener_.Sums().none > 0 ? Exit::SomeWithout : Exit::AllWritten;
}

// --- Names

std::string Runner::CheckNames(const Plan& plan) const {
  for (const Step& step : plan.steps) {
    std::string error = CheckStep(step);
    if (!error.empty()) return error;
  }
  for (const Answer& answer : plan.answers) {
    std::string error = CheckAnswer(answer);
    if (!error.empty()) return error;
  }
  return {};
}

std::string Runner::CheckStep(const Step& step) const {
  if (step.verb == Verb::Files) return {};
  if (step.verb == Verb::Open || step.verb == Verb::Close) {
    return program_.windows.FindWindow(step.name) ? std::string() : UnknownWindow(step);
  }
  const Control* control = program_.windows.Find(step.name);
  if (!control) return UnknownControl(step);
  if (step.verb == Verb::Click && !CanBeClicked(*control)) {
    return Sentence(step.place, control->FullName() + " 不是按钮或菜单项");
  }
  return {};
}

std::string Runner::CheckAnswer(const Answer& answer) const {
  const bool path = answer.reply.find('/') != std::string::npos || program_.host.files.Stat(answer.reply);
  if (path || ReplyNamed(answer.reply) || ManualSteps::IsButton(answer.reply)) return {};
  return Sentence(answer.place, "“" + answer.reply + "”不是回答，也不是路径");
}

std::string Runner::UnknownControl(const Step& step) const {
  return Sentence(step.place,
                  "没有控件 " + step.name + "，相近的有 " + Joined(program_.windows.Nearest(step.name, kNearest)));
}

std::string Runner::UnknownWindow(const Step& step) const {
  std::vector<std::string> names;
  for (const controls::Window* window : program_.windows.All()) names.push_back(window->Name());
  return Sentence(step.place, "没有窗口 " + step.name + "，现有 " + Joined(names));
}

// --- Steps

namespace {

// Returns the reason of a refusal with the name of the control in front; "" if there was none.
std::string Named(const Control& control, const std::string& refusal) {
  return refusal.empty() ? refusal : control.FullName() + " " + refusal;
}

}  // namespace

std::string Runner::Do(const Step& step) {
  if (program_.Ended()) return Sentence(step.place, "程序已经关闭");
  std::string why;
  switch (step.verb) {
    case Verb::Set:
      why = Named(*program_.windows.Find(step.name), program_.windows.Find(step.name)->UserEdit(step.value).refusal);
      break;
    case Verb::Open:
      program_.ShowWindow(program_.windows.FindWindow(step.name)->Name());
      break;
    case Verb::Close:
      program_.windows.FindWindow(step.name)->Close();
      break;
    case Verb::Click:
      why = Click(*program_.windows.Find(step.name));
      break;
    case Verb::Print:
      reporter_.Report(PrintEvent(*program_.windows.Find(step.name)));
      break;
    case Verb::Files:
      pendingFiles_.insert(pendingFiles_.end(), step.files.begin(), step.files.end());
      break;
  }
  return why.empty() ? why : Sentence(step.place, why);
}

std::string Runner::Click(Control& control) {
  if (auto* grid = dynamic_cast<controls::Grid*>(&control)) {
    if (!grid->Enabled() || !grid->Visible()) return grid->FullName() + " 当前不可用";
    grid->DoubleClick();
    return {};
  }
  const Starts starts = StartedBy(control);
  const bool startsRun = starts == Starts::Run;
  if (startsRun && AllInOtherShards()) return {};
  if (startsRun && program_.flags.LargeCapacityMode) ReportListIgnored();
  // A click that is accepted may still start no run, for example after a box about a missing output folder.
  const std::size_t runs = listener_.RunsStarted();
  reporter_.ClearLastBox();
  const controls::EditResult result = control.UserClick();
  const bool started = starts == Starts::Nothing || listener_.RunsStarted() > runs;
  if (result.Accepted() && !started && !Stopped()) ReportNotStarted(starts);
  if (startsRun) rowsReported_ = program_.files.RowCount();
  return Named(control, result.refusal);
}

Runner::Starts Runner::StartedBy(const Control& control) const {
  if (control.FullName() == kWatch) return Starts::Watch;
  const bool inMenu = control.Parent() == &program_.form1.MenuCut && &control != &program_.form1.MenuStop;
  return inMenu || control.FullName() == kRegionRun ? Starts::Run : Starts::Nothing;
}

// True if files were named, but all of them belong to other shards. Then the click has nothing to do, and that is no
// run that failed to start.
bool Runner::AllInOtherShards() const {
  return program_.leftToOthers > 0 && program_.files.RowCount() == 0 && !program_.flags.LargeCapacityMode;
}

// A large-capacity run ignores the list, so the rows that were added since the last run will get no output.
void Runner::ReportListIgnored() {
  for (; rowsReported_ < program_.files.RowCount(); ++rowsReported_) {
    listener_.ReportFile(
        {rowsReported_ + 1, program_.files.Row(rowsReported_).Path(), "", job::Result::None, kOnlyInputFolder});
  }
}

// Reports every listed file as left without output, because the run did not start; the reason is the last box. A watch
// does not cut the list.
void Runner::ReportNotStarted(Starts what) {
  const std::string box = ReasonIn(reporter_.LastBox());
  const std::string why = "裁剪没有开始" + (box.empty() ? box : "：" + box);
  outcome_.notes.push_back(why);
  const std::size_t rows = program_.files.RowCount();
  const bool watch = what == Starts::Watch;
  runNotStarted_ = runNotStarted_ || watch || rows > 0 || program_.flags.LargeCapacityMode;
  if (watch || program_.flags.LargeCapacityMode) return;  // ReportListIgnored() has reported the rows
  for (std::size_t row = 0; row < rows; ++row) {
    listener_.ReportFile({row + 1, program_.files.Row(row).Path(), "", job::Result::None, why});
  }
}

void Runner::PrintAll() {
  for (const controls::Window* window : program_.windows.All()) {
    for (const Control* control : window->Controls()) reporter_.List(*control);
  }
}

// --- Files

// True if step `next` must find the pending files in the list.
bool Runner::AdmissionDue(const std::vector<Step>& steps, std::size_t next) const {
  if (pendingFiles_.empty()) return false;
  if (steps[next].verb == Verb::Click) return true;
  return std::all_of(steps.begin() + static_cast<std::ptrdiff_t>(next), steps.end(),
                     [](const Step& step) { return step.verb == Verb::Print; });
}

// Adds the pending files and folders to the list, as a drop on the window would.
void Runner::Admit() {
  if (pendingFiles_.empty() || program_.Ended()) return;
  const std::vector<std::string> items = std::exchange(pendingFiles_, {});
  const int mode = program_.form1.CmbCutMode.Index();
  reporter_.ClearLastBox();
  program_.Intake().Admit(items);
  if (Stopped()) return;
  // If the resources of the cut mode are missing, the program leaves the mode and lists nothing.
  const bool modeLeft = program_.form1.CmbCutMode.Index() != mode;
  ReportUnlisted(items, modeLeft ? job::Result::None : job::Result::Skipped);
}

// Reports the named files that are neither in the list nor reported by the listing itself. Files below a named folder
// are not reported: the folder stands for what it holds.
void Runner::ReportUnlisted(const std::vector<std::string>& named, job::Result result) {
  const std::string why =
      result == job::Result::None ? "没有加入列表：" + ReasonIn(reporter_.LastBox()) : "不合条件，没有加入列表";
  std::unordered_set<std::string> listed;
  for (std::size_t row = 0; row < program_.files.RowCount(); ++row) listed.insert(program_.files.Row(row).Path());
  for (const std::string& path : named) {
    if (listed.contains(path) || listener_.Refused(path) || program_.host.files.IsFolder(path)) continue;
    if (!program_.Intake().IsOurs(path)) continue;
    listener_.ReportFile({0, path, "", result, why});
  }
}

}  // namespace quillon::cli
