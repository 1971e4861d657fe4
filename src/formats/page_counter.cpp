// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/page_counter.h"

#include "tools/img_tool.h"

namespace quillon::formats {
namespace {

constexpr int kJpegQuality = 90;  // of the pages that the tool draws

// Returns why the file is not of the kind that the mode lists; "" if it is.
std::string WrongKind(imaging::Services& images, job::CutMode mode, const std::string& path) {
  imaging::ImageFacts facts;
  const imaging::Format wanted = mode == job::CutMode::Gif ? imaging::Format::Gif : imaging::Format::Tiff;
  if (const host::Status measured = images.ImageInfo(path, facts); !measured) return measured.Why();
  if (facts.format == wanted) return {};
  return wanted == imaging::Format::Gif ? "内容不是 gif，只是用了它的扩展名" : "内容不是 tif，只是用了它的扩展名";
}

}  // namespace

PageCounter::~PageCounter() {
  if (program_.pageCounter == this) program_.pageCounter = nullptr;
}

job::Pages PageCounter::Count(int mode, const std::string& path, int dpi) {
  job::Pages pages;
  const auto cutMode = static_cast<job::CutMode>(mode);
  if (cutMode != job::CutMode::Pdf) {
    pages.why = WrongKind(program_.images, cutMode, path);
    if (pages.why.empty()) pages.why = program_.images.FramesIn(path, pages.count).Why();
    return pages;
  }
  tools::PdfPages pdf;
  pages.why = tools::CountPdfPages(program_.tools, path, dpi, kJpegQuality, pdf).Why();
  pages.count = pdf.count;
  pages.first = {pdf.width, pdf.height};
  if (pages.why.empty() && pages.count == 0) pages.why = "没有得到 Pdf 的页数，文件可能有密码或已损坏";
  return pages;
}

}  // namespace quillon::formats
