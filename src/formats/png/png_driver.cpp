// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/png/png_driver.h"

#include "job/cut/cut_outcome.h"

namespace quillon::formats {

job::Step PngModeCut::CheckSource(job::CutFile& file) {
  if (file.settings.over && file.format != imaging::Format::Png) {
    return Fail(file, "文件内容不是 png，不能覆盖；请输出到别的文件夹");
  }
  return job::KeepPages(file);
}

std::string PngModeCut::FitRectangle(job::CutFile& file) const {
  return job::NothingToCutText(file.rect, {file.W, file.H});
}

imaging::PngCutRequest PngModeCut::Request(const job::CutFile& file) {
  return {.source = file.Src, .destination = file.Dst, .drawing = {.rect = file.rect}};
}

host::Status PngModeCut::CutPicture(job::CutFile& file, std::string&) {
  job::Program& program = GetProgram();
  return program.saver.Save(file.Dst, [&] { return program.images.PngCut(Request(file)); });
}

}  // namespace quillon::formats
