// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/output_tools.h"

#include "base/path_text.h"
#include "job/work_files.h"
#include "tools/command_lines.h"
#include "tools/helper_calls.h"
#include "tools/pic_handler.h"
#include "tools/twins.h"

namespace quillon::formats {

OutputTools::OutputTools(job::Program& program) : program_(program) {
  if (program.host.files.IsFile(tools::TwinPath(program.host, "PicHandler"))) program.outputTools = this;
}

OutputTools::~OutputTools() {
  if (program_.outputTools == this) program_.outputTools = nullptr;
}

host::Status OutputTools::ToCmyk(const std::string& file) {
  const auto sizeOf = [this](const std::string& path) {
    imaging::ImageFacts facts;
    return program_.images.ImageInfo(path, facts) ? base::Size{facts.width, facts.height} : base::Size{};
  };
  const base::Size size = sizeOf(file);
  return tools::ConvertToCmyk(program_.tools, file, [&](const std::string& made) { return sizeOf(made) == size; });
}

host::Status OutputTools::CopyExif(const std::string& source, const std::string& target) {
  host::Files& files = program_.host.files;
  const auto facts = files.Stat(target);
  // A helper that is late is not ended and may still write: the name that it knows must never be that of a later
  // picture, whose work file has the name of this one.
  const std::string stem = job::work_files::ExifTargetStem(facts ? facts->changed : 0);
  const std::string own = base::JoinPath(program_.host.programFolder, stem, base::SplitPath(target).extension);
  host::Status status = files.CopyOwn(target, own);
  if (status) status = tools::CopyExif(program_.tools, source, own);
  if (status) status = files.CopyOwn(own, target);
  static_cast<void>(files.RemoveOwn(own));
  return status;
}

host::Status OutputTools::ToPdf(const std::string& picture, const std::string& pdf) {
  const base::PathParts parts = base::SplitPath(pdf);
  const std::string base = base::JoinPath(parts.folder, parts.name);
  return tools::MakePdf(program_.tools, picture, base, tools::PdfText(picture, base));
}

}  // namespace quillon::formats
