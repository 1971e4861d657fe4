// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <string>
#include <utility>

#include "base/path_text.h"
#include "job/cut/cut_steps.h"
#include "job/settings/lists.h"
#include "job/work_files.h"
#include "tools/keys.h"

namespace quillon::job {
namespace {

// Notes what an output lacks that is written nevertheless.
void Note(CutFile& file, const std::string& why) { file.result.why += (file.result.why.empty() ? "" : "；") + why; }

// Fails unless both profiles of a conversion to CMYK exist and can be used. The reason names the profile.
host::Status CheckCmykProfiles(Program& program) {
  using Colours = imaging::Services::ProfileColours;
  for (const auto& [name, colours] : {std::pair("sRGB.icc", Colours::Rgb), std::pair("Default.icm", Colours::Cmyk)}) {
    const std::string relative = base::JoinPath(kColorConfigs, name);
    const host::Status status = program.images.CheckProfile(program.AppPath(relative), colours);
    if (!status) return {status.GetProblem(), "无法转CMYK，" + relative + "：" + status.Why()};
  }
  return host::Status::Ok();
}

bool HoldsCmyk(const std::string& extension) {
  const imaging::Encoder encoder = imaging::EncoderFor(extension);
  return encoder == imaging::Encoder::Jpeg || encoder == imaging::Encoder::Tiff;
}

}  // namespace

Step StopHere(CutFile& file) {
  file.program.host.pump.Turn();
  const bool unfinished = file.BorderFollows() || file.settings.split || file.settings.toCmyk || file.run.pdf;
  return file.program.flags.StopRequested && unfinished ? Fail(file, "已停止，未处理完") : Step::Next;
}

Step ConvertToCmyk(CutFile& file) {
  if (!file.settings.toCmyk) return Step::Next;
  if (const host::Status usable = CheckCmykProfiles(file.program); !usable) return Fail(file, usable);
  const host::Status converted = file.program.outputTools->ToCmyk(file.latestFile);
  if (converted.DiskFull() || converted.GetProblem() == host::Problem::Stopped) return Fail(file, converted);
  if (!converted) Note(file, "颜色没有转换：" + converted.Why());
  const std::string format = base::SplitPath(file.latestFile).extension;
  if (converted && !HoldsCmyk(format)) Note(file, format + " 不能保存 CMYK，印刷效果的颜色存成了 RGB");
  return Step::Next;
}

Step CopyExif(CutFile& file) {
  const bool wanted = file.settings.keepExif && !file.run.OnBackSide() && file.program.outputTools;
  if (!wanted) return Step::Next;
  const host::Status copied = file.program.outputTools->CopyExif(file.exifSource, file.latestFile);
  if (!copied) Note(file, "Exif没有保留：" + copied.Why());
  return Step::Next;
}

Step MakePdf(CutFile& file) {
  if (!file.run.pdf) return Step::Next;
  const std::string pdf = file.program.AppPath(work_files::kPdf);
  const host::Status made = file.program.outputTools->ToPdf(file.latestFile, pdf);
  (void)file.program.host.files.RemoveOwn(file.latestFile);
  if (!made) return Fail(file, made);
  file.latestFile = pdf;
  return Step::Next;
}

Step Deliver(CutFile& file) {
  Program& program = file.program;
  file.result.output = ResultPath(file);
  if (file.latestFile == file.result.output) return Step::Next;
  // A file that helpers have changed is copied, so that the program itself writes the output.
  const char* title = file.ConversionFollows() ? tools::kTitle : host::kBoxTitle;
  const host::Status copied = program.saver.Copy(file.latestFile, file.result.output, {.title = title});
  // A removed work file need not be synced, and the next save creates it anew.
  (void)program.host.files.RemoveOwn(file.latestFile);
  return copied ? Step::Next : Fail(file, copied);
}

// A result with another name replaces its source too.
Step RemoveSource(CutFile& file) {
  const bool beside = !file.program.host.files.SameFile(file.result.output, file.listedPath);
  if (file.settings.over && beside && !file.run.OnBackSide()) {
    file.run.ledger.DiscardAtEnd({file.row, file.listedPath, {file.result.output}});
  }
  return Step::Next;
}

Step PlaceOnSheet(CutFile& file) {
  if (file.run.withArray) file.program.sheets->Place(file.result.output);
  return Step::Next;
}

}  // namespace quillon::job
