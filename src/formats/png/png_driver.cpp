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

std::string PngModeCut::FitRectangle(base::Rect& rect, base::Size picture) const {
  return job::NothingToCutText(rect, picture);
}

host::Status PngModeCut::CutPicture(job::CutFile& file, std::string&) {
  job::Program& program = GetProgram();
  imaging::PngCutRequest request{.source = file.Src, .destination = file.Dst};
  request.drawing.rect = file.rect;
  return program.saver.Save(file.Dst, [&] { return program.images.PngCut(request); });
}

}  // namespace quillon::formats
