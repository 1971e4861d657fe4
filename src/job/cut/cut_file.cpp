// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/cut_file.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/path_text.h"
#include "job/cut/cut_plan.h"
#include "job/cut/cut_steps.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

constexpr int kWorkFileQuality = 98;
// The largest number of pieces whose names are foreseen. A name matters if the piece is cut as a source later. A
// picture with more pieces than these, each with as many pixels, would have more than 10^10 pixels, and none is that
// large.
constexpr std::size_t kMostForeseen = 100'000;

// The steps of one file, in their order. After kPictureSteps comes AddBorder; if the cut is split, SplitCut executes
// the rest for each piece. Prefetched work replaces kPictureSteps and AddBorder.
using StepFunction = Step (*)(CutFile&);
constexpr StepFunction kFirstSteps[] = {MeasureSource, PassOverSmall,  KeepPages,
                                        NoteAlpha,     KeepExifSource, PassOverFolder};
constexpr StepFunction kPictureSteps[] = {ZoomBeforeCut, RotateBeforeCut, NameOutput, AskForFrame,
                                          FindRectangle, MakeCut,         StopHere};
constexpr StepFunction kLastSteps[] = {ConvertToCmyk, CopyExif, MakePdf, Deliver, RemoveSource, PlaceOnSheet};

Step RunSteps(CutFile& file, std::span<const StepFunction> steps) {
  for (const StepFunction step : steps) {
    if (step(file) == Step::FileDone) return Step::FileDone;
  }
  return Step::Next;
}

Step MakePicture(CutFile& file) {
  switch (UsePrefetched(file)) {
    case Prefetched::Used:
      return Step::Next;
    case Prefetched::FileDone:
      return Step::FileDone;
    case Prefetched::None:
      break;
  }
  if (RunSteps(file, kPictureSteps) == Step::FileDone) return Step::FileDone;
  return file.settings.split ? SplitCut(file) : AddBorder(file);
}

}  // namespace

CutFile::CutFile(CutRun& owner, std::size_t listRow, std::string path)
    : run(owner),
      program(owner.program),
      settings(owner.settings ? *owner.settings : ReadCutSettings(owner.program)),
      row(listRow),
      listedPath(std::move(path)),
      Src(listedPath),
      exifSource(listedPath) {
  base::PathParts parts = base::SplitPath(listedPath);
  folder = std::move(parts.folder);
  name = std::move(parts.name);
  extension = std::move(parts.extension);
  OutExt = OutputExtension(settings, extension);
}

std::string CutFile::WorkFile(const std::string& stem) const { return program.AppPath(stem + "." + OutExt); }

std::string CutFile::WorkFileBeside(const std::string& stem, const std::string& read) const {
  const std::string wanted = WorkFile(stem);
  if (wanted != read) return wanted;
  return WorkFile(stem == work_files::kCutStem ? work_files::kResultStem : work_files::kCutStem);
}

bool CutFile::ConversionFollows() const {
  return run.pdf || settings.toCmyk || (settings.keepExif && program.outputTools && !run.OnBackSide());
}

int CutFile::CutQuality() const { return BorderFollows() ? kWorkFileQuality : settings.quality; }

std::string ResultPath(const CutFile& file) {
  if (!file.run.pdf) return file.Dst;
  const base::PathParts parts = base::SplitPath(file.Dst);
  return base::JoinPath(parts.folder, parts.name, "pdf");
}

std::vector<std::string> ForeseenOutputs(CutRun& run, const std::string& path) {
  CutFile file(run, 0, path);
  PredictTarget(file);
  if (!file.settings.split) return {ResultPath(file)};
  const std::size_t count = std::min(PieceCount(file.settings), kMostForeseen);
  std::vector<std::string> outputs;
  CutFile piece(run, 0, path);
  for (std::size_t number = 1; number <= count; ++number) {
    piece.name = PieceName(file, number);
    PredictTarget(piece);
    outputs.push_back(ResultPath(piece));
  }
  return outputs;
}

Step Fail(CutFile& file, std::string why) {
  file.result.result = Result::None;
  file.result.output.clear();
  file.result.why = why.empty() ? "没有得到输出文件" : std::move(why);
  return Step::FileDone;
}

Step Fail(CutFile& file, const host::Status& status) {
  if (!file.settings.over && !file.settings.split) {
    if (file.Dst.empty()) PredictTarget(file);
    file.run.ledger.DiscardStaleOutput(file.listedPath, ResultPath(file), status);
  }
  return Fail(file, status.Why());
}

Step PassOver(CutFile& file, std::string why) {
  file.result.result = Result::Skipped;
  file.result.why = std::move(why);
  return Step::FileDone;
}

FileResult CutOneFile(CutRun& run, std::size_t row, const std::string& path) {
  Flags& flags = run.program.flags;
  flags.BeginFile();

  CutFile file(run, row, path);
  file.result = {row, path, "", Result::None, ""};
  const bool through = RunSteps(file, kFirstSteps) == Step::Next && MakePicture(file) == Step::Next &&
                       RunSteps(file, kLastSteps) == Step::Next;
  if (!through) return file.result;
  flags.ImageRotated = false;
  file.result.result = Result::Written;
  return file.result;
}

}  // namespace quillon::job
