// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut/conversions.h"

#include <utility>

#include "base/path_text.h"
#include "job/settings/lists.h"
#include "job/work_files.h"
#include "tools/keys.h"

namespace quillon::job {
namespace {

using host::Status;

bool HoldsCmyk(const std::string& extension) {
  const imaging::Encoder encoder = imaging::EncoderFor(extension);
  return encoder == imaging::Encoder::Jpeg || encoder == imaging::Encoder::Tiff;
}

}  // namespace

void AddNote(std::string& notes, const std::string& note) {
  if (note.empty() || notes.find(note) != std::string::npos) return;
  notes += (notes.empty() ? "" : "；") + note;
}

Status CheckCmykProfiles(Program& program) {
  using Colours = imaging::Services::ProfileColours;
  for (const auto& [name, colours] : {std::pair("sRGB.icc", Colours::Rgb), std::pair("Default.icm", Colours::Cmyk)}) {
    const std::string relative = base::JoinPath(kColorConfigs, name);
    const Status status = program.images.CheckProfile(program.AppPath(relative), colours);
    if (!status) return {status.GetProblem(), "无法转CMYK，" + relative + "：" + status.Why()};
  }
  return Status::Ok();
}

Status WorkToCmyk(Program& program, const std::string& picture, std::string& notes) {
  Status converted = program.outputTools->ToCmyk(picture);
  if (converted.DiskFull() || converted.GetProblem() == host::Problem::Stopped) return converted;
  if (!converted) AddNote(notes, "颜色没有转换：" + converted.Why());
  const std::string format = base::SplitPath(picture).extension;
  if (converted && !HoldsCmyk(format)) AddNote(notes, format + " 不能保存 CMYK，印刷效果的颜色存成了 RGB");
  return Status::Ok();
}

void CopyExifToWork(Program& program, const std::string& source, const std::string& picture, std::string& notes) {
  const Status copied = program.outputTools->CopyExif(source, picture);
  if (!copied) AddNote(notes, "Exif没有保留：" + copied.Why());
}

Status WorkToPdf(Program& program, std::string& picture) {
  const std::string pdf = program.AppPath(work_files::kPdf);
  Status made = program.outputTools->ToPdf(picture, pdf);
  (void)program.host.files.RemoveOwn(picture);
  if (made) picture = pdf;
  return made;
}

Status DeliverWork(Program& program, const std::string& picture, const std::string& output, const char* title) {
  Status copied = program.saver.Deliver(picture, output, {.title = title});
  // A removed work file need not be synced, and the next save creates it anew.
  (void)program.host.files.RemoveOwn(picture);
  return copied;
}

Status FinishWork(Program& program, const Conversions& wanted, const std::string& exifSource, std::string picture,
                  const std::string& output, std::string& notes) {
  if (wanted.cmyk) {
    if (Status converted = WorkToCmyk(program, picture, notes); !converted) return converted;
  }
  if (wanted.exif) CopyExifToWork(program, exifSource, picture, notes);
  if (wanted.pdf) {
    if (Status made = WorkToPdf(program, picture); !made) return made;
  }
  return DeliverWork(program, picture, output, tools::kTitle);
}

}  // namespace quillon::job
