// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/normal_cut.h"

#include <string_view>
#include <utility>

#include "base/path_text.h"
#include "job/cut/cut_file.h"
#include "job/cut/cut_plan.h"
#include "job/program.h"
#include "job/work_files.h"
#include "tools/processes.h"

namespace quillon::job {
namespace {

void EndHelpers(host::Host& host) {
  for (const char* name : {"QxImgTool.exe", "QxBackImg.exe"}) tools::KillProcessByName(host, name);
}

}  // namespace

std::vector<std::string> WindowsHiddenInCut(const Flags& flags) {
  std::vector<std::string> windows = {"FGifCut", "FBaseOpt", "FTiffOps", "FPdfOps", "FArray"};
  if (!flags.ManualCutMode) windows.emplace_back("FCutPre");
  return windows;
}

NormalCut::NormalCut(Program& program) : program_(program) {}

// An option without its engine is refused when it is chosen; the engine may be missing only later.
RunNeeds NormalCut::Needs() const {
  const Flags& flags = program_.flags;
  const Form1& form = program_.form1;
  const bool array = form.ChCutAndArray.On();
  RunNeeds needs;
  needs.decisions = flags.ManualCutMode && !ReadCutSettings(program_).frameOnly;
  if (flags.ManualCutMode) needs.ensured.push_back(Need::ManualFrame);
  if (array) needs.ensured.push_back(Need::Sheets);
  if (flags.ToCmyk || Selected<OutType>(form.CmbOutType) == OutType::Pdf) needs.ensured.push_back(Need::OutputTools);
  needs.ensured.push_back(Need::Files);
  if (!form.ChOver.On() || array) needs.ensured.push_back(Need::OutputFolder);
  needs.hidden = WindowsHiddenInCut(flags);
  return needs;
}

bool NormalCut::Prepare() {
  Form1& form = program_.form1;
  EndHelpers(program_.host);
  program_.flags.BackWorkerStarted = false;
  withArray_ = form.ChCutAndArray.On();
  PrepareCanvas();
  form.ChBack.Set(false);
  if (withArray_ && !program_.sheets->Prepare()) return false;
  pdf_ = Selected<OutType>(form.CmbOutType) == OutType::Pdf;
  if (pdf_) Select(form.CmbOutType, OutType::Jpg);
  return true;
}

// Writes the canvas that the border and the sheets use. A run can do without, so that a failure is ignored.
void NormalCut::PrepareCanvas() {
  const bool border = program_.flags.AdvancedOptionsLoaded && program_.fBaseOpt.ChAddBoard.On();
  if (!border && !withArray_) return;
  program_.WriteCanvas();
  const std::string path = program_.AppPath(work_files::kCanvas);
  (void)program_.saver.Save(
      path, [&] { return program_.images.ZoomPic(path, path, program_.flags.FixW, program_.flags.FixH); });
}

void NormalCut::Begin(RunLedger& ledger) {
  run_ = std::make_unique<CutRun>(program_, ledger, *journal_);
  run_->withArray = withArray_;
  run_->pdf = pdf_;
  omits_ = ReadCutSettings(program_).omitFolders;
  prefetch_.emplace(program_.context, Foresight());
}

// None for a run in which no file can be foreseen.
RunPrefetch::Foresee NormalCut::Foresight() {
  if (!IsForeseeable(*run_, ReadCutSettings(program_))) return {};
  return [this](std::size_t row, const std::string& path, base::Size size) -> std::optional<imaging::FileWork> {
    std::optional<CutPlan> plan = ForeseeCut(CutFile(*run_, row, path), size);
    if (!plan) return std::nullopt;
    return std::move(plan->work);
  };
}

void NormalCut::Start() {
  run_->omitted.Clear();
  if (omits_) run_->omitted.Read();
}

bool NormalCut::BesideSources() const { return program_.form1.ChOver.On(); }

std::vector<std::string> NormalCut::Outputs(const std::string& path) const { return ForeseenOutputs(*run_, path); }

void NormalCut::HandledBefore(const std::string& path) {
  if (ReadCutSettings(program_).omitFolders) run_->omitted.Add(base::SplitPath(path).folder);
}

void NormalCut::Cut(const RunFile& file, const Report& report) {
  // In large-capacity mode the window stays usable, so that the type may be chosen again before any file.
  controls::ComboBox& type = program_.form1.CmbOutType;
  if (file.row == 0 && Selected<OutType>(type) == OutType::Pdf) Select(type, OutType::Jpg);
  const FileResult result = CutOneFile(*run_, file.row, file.path);
  if (result.result == Result::Written && program_.form1.ChOver.On()) run_->journal.NoteDecidedCut(file.path);
  report(result);
}

RunEnd NormalCut::End(RunSource source) {
  if (source == RunSource::Folder) return {};
  const std::string outFolder = program_.form1.LOutDir.Value();
  if (withArray_) {
    program_.sheets->Finish();
    return {"处理完毕！", RunEnd::Then::RevealFolder, outFolder};
  }
  const std::string done = "处理完毕！失败：" + std::to_string(run_->failed);
  if (program_.form1.ChOver.On()) return {done};
  return {done + "\r\n要打开输出目录吗？", RunEnd::Then::OfferFolder, outFolder};
}

void NormalCut::Leave() { EndHelpers(program_.host); }

void NormalCut::Finish() {
  if (!omits_) return;
  const host::Status written = run_->omitted.WriteBack();
  if (!written) program_.Ask("已处理文件夹的记录没有保存：" + written.Why());
}

void NormalCut::Release() {
  program_.fCutPre.ChHideShow.SetVisible(true);
  if (program_.manualFrame) program_.manualFrame->Rest();
}

}  // namespace quillon::job
