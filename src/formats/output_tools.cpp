// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/output_tools.h"

#include "base/path_text.h"
#include "formats/tools/command_lines.h"
#include "formats/tools/exif.h"
#include "formats/tools/pic_handler.h"
#include "formats/tools/twins.h"

namespace quillon::formats {

OutputTools::OutputTools(job::Program& program) : program_(program) {
  if (program.host.files.IsFile(TwinPath(program.host, "PicHandler"))) program.outputTools = this;
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
  return ConvertToCmyk(program_.tools, file, [&](const std::string& made) { return sizeOf(made) == size; });
}

host::Status OutputTools::CopyExif(const std::string& source, const std::string& target) {
  return formats::CopyExif(program_.tools, source, target);
}

host::Status OutputTools::ToPdf(const std::string& picture, const std::string& pdf) {
  const base::PathParts parts = base::SplitPath(pdf);
  const std::string base = base::JoinPath(parts.folder, parts.name);
  return MakePdf(program_.tools, picture, base, PdfText(picture, base));
}

}  // namespace quillon::formats
