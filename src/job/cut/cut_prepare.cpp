// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/path_text.h"
#include "base/utf8.h"
#include "imaging/limits.h"
#include "job/cut/conversions.h"
#include "job/cut/cut_steps.h"
#include "job/cut/first_page.h"
#include "job/settings/cut_settings.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

constexpr const char* kBackSideNote = "(背景拼版)";
constexpr const char* kOpaqueByBorder = "加了边框，透明部分填上了颜色，不再透明";
constexpr const char* kListedBefore = "与列表中前面的文件相同，本次已处理";
constexpr const char* kNotTurned = "图片没能旋转，这一张没有裁剪：";

void ApplySize(CutFile& file, base::Size size) {
  file.W = size.width;
  file.H = size.height;
}

Step FailLoad(CutFile& file, const host::Status& status) {
  const bool asked = status.DiskFull();
  if (EffectsApply(file.settings) && !asked) ++file.run.failed;
  return Fail(file, status);
}

// Loads the source into Work and turns it; the canvas grows on white.
host::Status TurnSource(CutFile& file, double angle) {
  imaging::Services& images = file.program.images;
  if (host::Status loaded = images.LoadImageFromFile(file.Src, file.Work); !loaded) return loaded;
  if (host::Status turned = images.RotateImage(file.Work, angle, base::kWhite); !turned) return turned;
  ApplySize(file, {images.GetImageWidth(file.Work), images.GetImageHeight(file.Work)});
  file.turnedFirst = true;
  file.RestoreAngle = -angle;
  file.program.flags.ImageRotated = true;
  return host::Status::Ok();
}

// Returns whether the output would replace another picture that the user listed, or a file beside an overwritten
// source. Neither must be overwritten.
bool WouldReplaceOther(CutFile& file) {
  const std::string output = ResultPath(file);
  if (output == file.listedPath || !file.program.host.files.Stat(output)) return false;
  if (file.settings.over) return !file.program.host.files.SameFile(output, file.listedPath);
  return !file.run.ledger.Wrote(output) && file.run.ledger.IsOtherSource(output, file.listedPath);
}

// If several processes walk one folder, a result beside its source with another name is a source for the others.
bool OthersWouldCutIt(const CutFile& file) {
  const bool anotherName = file.settings.split || ResultPath(file) != file.listedPath;
  return anotherName && file.settings.over && file.program.context.SharesFolders();
}

// In a run without a list, a picture without a size ends the whole run.
Step EndWithoutSize(CutFile& file) {
  file.program.flags.StopRequested = true;
  file.result.endedRun = true;
  file.program.host.boxes.Show({.text = kNoSize, .notice = "读不出尺寸，运行已停止：" + file.listedPath});
  return file.measured ? Fail(file, "图片的宽或高为 0") : Fail(file, file.measured);
}

// Returns a work file if further steps change the cut, or if the crop would read the file that it writes. A source that
// the manual frame has turned or widened is a work file too; it is never the one that the cut writes.
std::string CutTarget(const CutFile& file) {
  if (file.BorderFollows()) return file.WorkFileBeside(work_files::kCutStem, file.Src);
  const bool ontoItself = file.settings.over && file.Dst == file.listedPath;
  const bool aside = ontoItself || file.ConversionFollows();
  return aside ? file.WorkFileBeside(work_files::kResultStem, file.Src) : file.Dst;
}

// Names the output beside a file of its name that is kept. If that file is a result of this run, the row says the new
// name.
Step KeepExisting(CutFile& file) {
  const std::string output = ResultPath(file);
  const auto place = file.run.ledger.PlaceFor(file.listedPath, output);
  if (!place) return PassOver(file, "已有同名的文件 " + base::DisplayText(output) + "，保留它，已跳过");
  if (*place == output) return Step::Next;
  if (file.run.ledger.WroteFrom(*place, file.listedPath)) return PassOver(file, kListedBefore);
  if (file.run.ledger.Wrote(output)) AddNote(file.result.why, TakenNameText(output, *place));
  const base::PathParts named = base::SplitPath(file.Dst);
  file.Dst = base::JoinPath(named.folder, base::SplitPath(*place).name, named.extension);
  file.target = CutTarget(file);
  return Step::Next;
}

// Has the user decide about the picture, unless an earlier part of the run has stored what he decided.
void DecideByHand(CutFile& file) {
  RunJournal& journal = file.run.journal;
  const std::string earlier = journal.DecisionOn(file.listedPath).value_or("");
  const std::string decision =
      file.program.manualFrame->Ask({file.listedPath, file.Src, file.Work, 0, file.whyNotTurned}, earlier);
  if (!decision.empty() && decision != earlier) journal.StoreDecision(file.listedPath, decision);
}

// Returns why the manual step gives no output for the picture at path: it does not convert to another type. "" if the
// name has the extension of the output.
std::string WrongType(const CutFile& file, const std::string& path) {
  const base::PathParts parts = base::SplitPath(path);
  const std::string name = base::ToLowerAscii(base::JoinPath("", parts.name, parts.extension));
  const std::string wanted = base::ToLowerAscii(file.OutExt);
  if (name.find("." + wanted) != std::string::npos) return {};
  const char* shown = path == file.listedPath ? "图片是 " : "缩放、旋转或扩边之后的图片是 ";
  return shown + base::ToLowerAscii(parts.extension) + "，输出类型是 " + wanted +
         "：手动裁剪不转换类型，这一张没有裁剪";
}

// Fails if the manual step has left no picture, because it could not turn it.
host::Status FailedTurn(const Program& program, const std::string& shown) {
  const host::Status turn = shown.empty() ? program.manualFrame->LastTurn() : host::Status::Ok();
  return turn ? turn : host::Status(turn.GetProblem(), kNotTurned + turn.Why());
}

}  // namespace

Step MeasureSource(CutFile& file) {
  Flags& flags = file.program.flags;
  imaging::ImageFacts facts;
  const imaging::Want want = file.Listed() ? imaging::Want::Size : imaging::Want::SizeAndDpi;
  file.measured = file.program.images.ImageInfo(file.Src, facts, want);
  if (!file.measured) facts = {};
  flags.InfoWidth = std::to_string(facts.width);
  flags.InfoHeight = std::to_string(facts.height);
  file.format = facts.format;
  ApplySize(file, {facts.width, facts.height});
  if (file.measured.GetProblem() == host::Problem::Stopped) return Fail(file, file.measured);
  const bool nothing = facts.width == 0 || facts.height == 0;
  return nothing && !file.Listed() ? EndWithoutSize(file) : Step::Next;
}

Step PassOverSmall(CutFile& file) {
  const bool small = TooSmall({file.W, file.H}, file.settings.smallest);
  return small ? PassOver(file, TooSmallText(file.settings.smallest)) : Step::Next;
}

Step KeepPages(CutFile& file) {
  if (!CanHoldSeveral(file.format)) return Step::Next;
  PagesOfFile pages;
  const host::Status counted = CountPages(file.program.images, file.listedPath, file.format, pages);
  if (!ReplacesPages(file.settings)) {
    AddNote(file.result.why, pages.Note());
    return Step::Next;
  }
  if (!counted) return Fail(file, counted);
  return pages.Several() ? Fail(file, pages.Refusal()) : Step::Next;
}

Step NoteAlpha(CutFile& file) {
  const bool bordered = file.BorderFollows() && imaging::EncoderFor(file.OutExt) == imaging::Encoder::Png;
  bool alpha = false;
  // A file that cannot be read is reported by the cut.
  if (bordered && file.format == imaging::Format::Png) (void)file.program.images.AlphaIn(file.listedPath, alpha);
  if (alpha) AddNote(file.result.why, kOpaqueByBorder);
  return Step::Next;
}

Step KeepExifSource(CutFile& file) {
  if (!file.settings.keepExif || !file.settings.over) return Step::Next;
  const std::string copy = file.program.AppPath(std::string(work_files::kExifSourceStem) + "." + file.extension);
  const host::Status copied = file.program.saver.Copy(file.Src, copy);
  if (copied) file.exifSource = copy;
  return copied.DiskFull() ? Fail(file, copied) : Step::Next;
}

Step PassOverFolder(CutFile& file) {
  if (!file.settings.omitFolders || file.run.omitted.Add(file.folder)) return Step::Next;
  return PassOver(file, "所在文件夹已有图片处理过，按“忽略已处理过的文件夹”跳过");
}

host::Status FitsZoomed(base::Size size) {
  constexpr int kRgb = 3;
  if (imaging::FitsMemory(size.width, size.height, kRgb, imaging::Limits())) return host::Status::Ok();
  return {host::Problem::TooLarge,
          "缩放后为 " + std::to_string(size.width) + "x" + std::to_string(size.height) + " 像素，图片太大，内存不足"};
}

Step ZoomBeforeCut(CutFile& file) {
  const auto size = SizeBeforeCut(file.settings, {file.W, file.H});
  if (!size) return Step::Next;
  const std::string zoomed = file.program.AppPath(work_files::kZoomedSource);
  host::Status status = FitsZoomed(*size);
  if (status) {
    status = file.program.saver.Save(zoomed, [&] {
      return file.program.images.ZoomPic(file.Src, zoomed, size->width, size->height, file.ExifWish());
    });
  }
  if (!status) return FailLoad(file, status);
  file.Src = zoomed;
  ApplySize(file, *size);
  return Step::Next;
}

Step RotateBeforeCut(CutFile& file) {
  const double angle = RuleAngle(file.settings, {file.W, file.H});
  if (angle == 0) return Step::Next;
  const host::Status turned = TurnSource(file, angle);
  return turned ? Step::Next : FailLoad(file, turned);
}

void PredictTarget(CutFile& file) {
  const std::string note = file.run.OnBackSide() ? kBackSideNote : "";
  file.Dst = OutputPath(file.settings, file.folder, file.name + note, file.OutExt);
  file.target = CutTarget(file);
}

Step NameOutput(CutFile& file) {
  PredictTarget(file);
  // Cutting an overwritten source again would cut its cut.
  const std::string output = ResultPath(file);
  if (file.run.ledger.WroteFrom(output, file.listedPath)) return PassOver(file, kListedBefore);
  if (OthersWouldCutIt(file)) {
    return Fail(file,
                "结果不用原文件的名字，由几个进程分担时会被当作原文件再裁一次，已跳过：请按文件名列出它，"
                "或不带 --jobs 和 --shard 运行");
  }
  // A cut that will be split is written piece by piece.
  if (!file.settings.split && WouldReplaceOther(file))
    return Fail(file, "会覆盖另一个文件 " + base::DisplayText(output) + "，已跳过");
  if (file.settings.keepFolders && !file.settings.over) {
    const host::Status made = file.program.host.files.MakeFolders(base::SplitPath(file.Dst).folder);
    if (!made) return Fail(file, "无法创建输出文件夹：" + made.Why());
  }
  file.run.SweepDrafts(base::SplitPath(file.Dst).folder);
  if (file.settings.split) return Step::Next;
  if (KeepExisting(file) == Step::FileDone) return Step::FileDone;
  TrashReplaced(file, ResultPath(file));
  return Step::Next;
}

Step AskForFrame(CutFile& file) {
  if (!file.settings.manual || file.settings.frameOnly) return Step::Next;
  Program& program = file.program;
  Flags& flags = program.flags;
  flags.ManualStepDone = false;
  const bool cutBefore = file.run.journal.CutAsDecided(file.listedPath);
  // Reported before the user is asked, who would place a frame for nothing.
  if (const std::string why = WrongType(file, file.Src); !cutBefore && !why.empty()) return Fail(file, why);
  if (!cutBefore) DecideByHand(file);
  program.images.DisposeImage(file.Work);
  file.turnedFirst = false;
  if (cutBefore) return PassOver(file, "上次中断之前已按手动裁剪框裁好");
  if (flags.StopRequested && !flags.ManualStepDone) return Fail(file, "已停止，未处理完");
  const std::string shown = flags.CurrentImagePath;
  if (const host::Status turn = FailedTurn(program, shown); !turn) return Fail(file, turn);
  if (!program.host.files.IsFile(shown)) return Fail(file, "裁剪框预览中的图片已不存在");
  if (const std::string why = WrongType(file, shown); !why.empty()) return Fail(file, why);
  flags.ImageRotated = flags.ManualRotated;
  file.RestoreAngle = flags.ManualRotated ? -flags.ManualAngle : 0;
  file.Src = shown;
  file.target = CutTarget(file);
  MeasureSource(file);
  const double angle = RuleAngle(file.settings, {file.W, file.H});
  if (flags.ManualRotated || angle == 0) return Step::Next;
  const host::Status turned = TurnSource(file, angle);
  return turned ? Step::Next : FailLoad(file, turned);
}

void TrashReplaced(CutFile& file, const std::string& output) {
  file.replaced.reset();
  if (file.run.ledger.IsForeign(file.listedPath, output)) file.replaced.emplace(file.program.host.files, output);
}

void PlaceRectangle(CutFile& file, Pass pass) {
  // The user may have changed it at the frame. The later steps follow, so that a picture that is left uncut is not
  // scaled to an exact size either.
  file.settings.geometry = ReadCutGeometry(file.program);
  file.rect = PlacedRectangle(file.settings.geometry, {file.W, file.H}, pass);
}

Step FindRectangle(CutFile& file) {
  if (!file.settings.frameOnly) PlaceRectangle(file, file.turnedFirst ? Pass::AfterRotation : Pass::First);
  return Step::Next;
}

}  // namespace quillon::job
