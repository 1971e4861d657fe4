// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/png/png_tool.h"

#include "formats/format_cut.h"
#include "job/cut/cut_steps.h"
#include "job/program.h"
#include "tools/twins.h"

namespace quillon::formats {
namespace {

constexpr double kSecondsBetweenTurns = 0.005;  // of the message pump, while the run is paused
constexpr const char* kExtension = "png";

}  // namespace

job::RunNeeds PngTool::Needs() const {
  job::RunNeeds needs;
  needs.ensured = {job::Need::Files, job::Need::OutputFolder};
  return needs;
}

bool PngTool::Prepare() {
  static_cast<void>(tools::EnsureProgram(program_.host, "DrawTranspText"));
  return true;
}

// The output goes straight into the output folder, and never over its source by choice.
void PngTool::Begin(job::RunLedger& ledger) {
  run_ = std::make_unique<job::CutRun>(program_, ledger, *journal_);
  run_->settings = job::ReadCutSettings(program_);
  run_->settings->over = run_->settings->keepFolders = false;
  prefetch_.emplace(program_.context,
                    [this](std::size_t row, const std::string& path, base::Size) { return Foresee(row, path); });
  handled_ = 0;
  planned_ = window_.ChBat.On() ? program_.files.RowCount() : 1;
}

std::vector<std::string> PngTool::Outputs(const std::string& path) const {
  job::CutFile file(*run_, 0, path);
  file.OutExt = kExtension;
  job::PredictTarget(file);
  return {file.Dst};
}

std::optional<imaging::FileWork> PngTool::Foresee(std::size_t row, const std::string& path) {
  if (row > planned_) return std::nullopt;
  job::CutFile file(*run_, row, path);
  file.OutExt = kExtension;
  job::PredictTarget(file);
  if (run_->ledger.KeepsExisting(path, file.Dst)) return std::nullopt;
  return imaging::FileWork{{Request(file)}};
}

void PngTool::Cut(const job::RunFile& listed, const Report& report) {
  job::CutFile file(*run_, listed.row, listed.path);
  file.OutExt = kExtension;
  file.result = {listed.row, listed.path, "", job::Result::None, ""};
  if (!window_.ChBat.On() && handled_ > 0) {
    job::PassOver(file, "没有启用“批量”，只处理第一个");
    return report(file.result);
  }
  WaitWhilePaused();
  ++handled_;
  window_.LSt.SetText("状态： 正在处理..." + CountText());
  if (program_.flags.StopRequested) {
    job::PassOver(file, "已停止，未处理");
  } else if (Steps(file) == job::Step::Next) {
    file.result.result = job::Result::Written;
    file.result.output = file.Dst;
  }
  report(file.result);
}

job::Step PngTool::Steps(job::CutFile& file) {
  using job::Step;
  if (Measure(file) == Step::FileDone) return Step::FileDone;
  if (job::KeepPages(file) == Step::FileDone || job::NameOutput(file) == Step::FileDone) return Step::FileDone;
  file.target = file.Dst;
  if (const host::Status kept = job::KeepReplacedSource(file); !kept) return Fail(file, kept);
  const host::Status saved = program_.saver.Save(file.Dst, [&] { return program_.images.PngCut(Request(file)); });
  return saved ? Step::Next : Fail(file, saved);
}

imaging::PngCutRequest PngTool::Request(const job::CutFile& file) const {
  const job::CutGeometry& geometry = file.settings.geometry;
  const base::Size size{geometry.FixW, geometry.FixH};
  imaging::PngCutRequest request{.source = file.Src, .destination = file.Dst};
  switch (static_cast<PngOperation>(window_.CmbOp.Index())) {
    case PngOperation::Zoom:
      request.drawing = {.mode = imaging::PngMode::Zoom, .size = size};
      break;
    case PngOperation::Rotate:
      request.drawing = {.mode = imaging::PngMode::Rotate, .angle = window_.TDu.Number()};
      break;
    default:
      request.drawing.rect = {0, 0, size.width, size.height};
  }
  return request;
}

void PngTool::WaitWhilePaused() {
  while (window_.Paused() && !program_.flags.StopRequested) {
    program_.host.pump.Turn();
    if (window_.Paused()) program_.host.clock.Sleep(kSecondsBetweenTurns);
  }
}

std::string PngTool::CountText() const { return std::to_string(handled_) + "/" + std::to_string(planned_); }

job::RunEnd PngTool::End(job::RunSource) {
  window_.LSt.SetText("状态： 处理完毕！已处理" + CountText());
  return EndOfRun(program_);
}

}  // namespace quillon::formats
