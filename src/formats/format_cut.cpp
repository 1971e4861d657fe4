// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/format_cut.h"

#include "job/cut/cut_steps.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/mode_rectangle.h"

namespace quillon::formats {
namespace {

using job::CutFile;
using job::Step;

constexpr const char* kDone = "处理完毕！";
constexpr const char* kOpenQuestion = "要打开输出目录吗？";

}  // namespace

Step Measure(CutFile& file) {
  imaging::ImageFacts facts;
  const host::Status measured = file.program.images.ImageInfo(file.Src, facts);
  if (!measured) return Fail(file, measured);
  file.format = facts.format;
  file.W = facts.width;
  file.H = facts.height;
  return Step::Next;
}

job::RunEnd EndOfRun(const job::Program& program) {
  if (program.form1.ChOver.On()) return {kDone};
  return {std::string(kDone) + "\r\n" + kOpenQuestion, job::RunEnd::Then::OfferFolder, program.form1.LOutDir.Value()};
}

job::RunNeeds FormatCut::Needs() const {
  const bool manual = program_.flags.ManualCutMode;
  job::RunNeeds needs;
  needs.ensured.push_back(job::Need::NoPendingUpdate);
  if (manual) needs.ensured.push_back(job::Need::ManualFrame);
  needs.ensured.push_back(job::Need::Files);
  if (!program_.form1.ChOver.On()) needs.ensured.push_back(job::Need::OutputFolder);
  needs.decisions = manual;
  needs.hidden = job::WindowsHiddenInCut(program_.flags);
  return needs;
}

bool FormatCut::BesideSources() const { return run_ ? run_->settings->over : program_.form1.ChOver.On(); }

std::vector<std::string> FormatCut::Outputs(const std::string& path) const { return job::ForeseenOutputs(*run_, path); }

void FormatCut::Begin(job::RunLedger& ledger) {
  run_ = std::make_unique<job::CutRun>(program_, ledger, *journal_);
  run_->settings = job::ReadCutSettings(program_);
  prefetch_.emplace(program_.context, [this](std::size_t row, const std::string& path, base::Size size) {
    return Foresee(row, path, size);
  });
}

// Nothing is foreseen of a cut that waits for the user.
std::optional<imaging::FileWork> FormatCut::Foresee(std::size_t row, const std::string& path, base::Size size) {
  CutFile file(*run_, row, path);
  if (file.settings.manual || size.Empty() || job::TooSmall(size, file.settings.smallest)) return std::nullopt;
  file.W = size.width;
  file.H = size.height;
  job::PredictTarget(file);
  if (run_->ledger.KeepsExisting(path, file.Dst) || !FindRectangle(file).empty()) return std::nullopt;
  const std::optional<imaging::FileRequest> request = RequestFor(file);
  return request ? std::optional(imaging::FileWork{{*request}}) : std::nullopt;
}

void FormatCut::Cut(const job::RunFile& listed, const Report& report) {
  program_.flags.BeginFile();
  CutFile file(*run_, listed.row, listed.path);
  file.result = {listed.row, listed.path, "", job::Result::None, ""};
  file.whyNotTurned = WhyNotTurned();
  if (Steps(file) == Step::Next) {
    file.result.result = job::Result::Written;
    file.result.output = file.Dst;
    if (file.settings.over) run_->journal.NoteDecidedCut(file.listedPath);
  }
  report(file.result);
}

Step FormatCut::Steps(CutFile& file) {
  if (Measure(file) == Step::FileDone || job::PassOverSmall(file) == Step::FileDone) return Step::FileDone;
  if (CheckSource(file) == Step::FileDone) return Step::FileDone;
  if (job::NameOutput(file) == Step::FileDone || job::AskForFrame(file) == Step::FileDone) return Step::FileDone;
  if (program_.flags.SkipCutThisImage) return LeaveUncut(file);
  const std::string why = FindRectangle(file);
  return why.empty() ? MakeResult(file) : Fail(file, why);
}

Step FormatCut::LeaveUncut(CutFile& file) const {
  if (file.settings.over || file.Dst == file.listedPath) return PassOver(file, "按“本图不裁剪”保留原文件");
  const host::Status copied = program_.saver.Deliver(file.listedPath, file.Dst);
  return copied ? Step::Next : Fail(file, copied);
}

std::string FormatCut::FindRectangle(CutFile& file) const {
  if (file.settings.manual) file.settings.geometry = job::ReadCutGeometry(program_);
  file.rect = job::RectangleOfMode(mode_, file.settings.geometry, {file.W, file.H});
  return FitRectangle(file);
}

Step FormatCut::MakeResult(CutFile& file) {
  file.target = file.Dst;
  if (const host::Status kept = job::KeepReplacedSource(file); !kept) return Fail(file, kept);
  std::string made;
  if (const host::Status cut = CutPicture(file, made); !cut) return Fail(file, cut);
  if (made.empty()) return Step::Next;
  const host::Status delivered = program_.saver.Deliver(made, file.Dst);
  return delivered ? Step::Next : Fail(file, delivered);
}

job::RunEnd FormatCut::End(job::RunSource source) {
  return source == job::RunSource::Folder ? job::RunEnd() : EndOfRun(program_);
}

void FormatCut::Release() {
  program_.fCutPre.ChHideShow.SetVisible(true);
  if (program_.manualFrame) program_.manualFrame->Rest();
}

}  // namespace quillon::formats
