// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/command_lines.h"

#include <string_view>

#include "base/number_text.h"
#include "base/utf8.h"
#include "tools/keys.h"

namespace quillon::tools {
namespace {

constexpr const char* kMarker = "Tessa批量处理系列软件";

struct Forbidden {
  const char* bytes;
  const char* description;
};

Forbidden ForbiddenIn(TextFormat format) {
  switch (format) {
    case TextFormat::Tabs:
      return {"\t\r\n", "制表符或换行"};
    case TextFormat::TabsAndBars:
      return {"\t\r\n|", "制表符、换行或“|”"};
    case TextFormat::Bars:
      return {"|", "“|”"};
    case TextFormat::Quotes:
      return {"\"\r\n", "引号或换行"};
  }
  return {"", ""};
}

std::string Joined(char separator, std::initializer_list<std::string_view> parts) {
  std::string text;
  bool first = true;
  for (const std::string_view part : parts) {
    if (!first) text += separator;
    text += part;
    first = false;
  }
  return text;
}

std::string Tabbed(std::initializer_list<std::string_view> fields) { return Joined('\t', fields); }
std::string Barred(std::initializer_list<std::string_view> fields) { return Joined('|', fields); }

std::string Quoted(const std::string& path) { return '"' + path + '"'; }

std::string Profile(const std::string& app, const std::string& name) { return Quoted(app + "/ColorConfigs/" + name); }

}  // namespace

host::Status CheckPaths(TextFormat format, const std::string& helper, std::initializer_list<std::string> paths) {
  const auto [bytes, description] = ForbiddenIn(format);
  for (const std::string& path : paths) {
    if (path.find_first_of(bytes) == std::string::npos) continue;
    return {host::Problem::Unsupported,
            "文件名含有" + std::string(description) + "，无法交给 " + helper + " 处理：" + base::DisplayText(path)};
  }
  return host::Status::Ok();
}

std::string CountPdfPagesText(const std::string& pdf, const std::string& app, int dpi, int quality) {
  return Tabbed({kTitle, pdf, app, key::kGetPdfPages, "getpdfpages", std::to_string(dpi), std::to_string(quality)});
}

std::string CountTiffPagesText(const std::string& tiff, const std::string& app, int number) {
  return Tabbed({kTitle, tiff, app, key::kGetTiffPages, "gettiffpages", "lzw", "0", std::to_string(number)});
}

std::string CutPdfText(const std::string& pdf, const std::string& out, const CutTexts& margins) {
  return Tabbed(
      {kTitle, pdf, out, key::kCutPdf, "cutpdf", Barred({margins.left, margins.top, margins.right, margins.bottom})});
}

std::string SplitPdfText(const std::string& pdf, const std::string& out, const std::string& app) {
  return Tabbed({"Quillon", pdf, out, key::kSplitPdf, "splitpdf", app + "/Images/"});
}

std::string MakeTiffText(const std::string& pageFolder, const std::string& out, const std::string& compression,
                         int pages) {
  return Tabbed({kTitle, pageFolder, out, key::kMakeTiff, "maketiff", compression, "4", std::to_string(pages)});
}

std::string BindPdfText(const BindOrder& order) {
  return Tabbed({kTitle, order.flag, order.out, key::kQxImgTool, "bindpdf", order.backImage, order.empty, order.a,
                 order.b, order.c});
}

std::string FirstBackText(const std::string& file) {
  return Tabbed({kTitle, key::kQxBackImg, file, LoadBackText(file)});
}

std::string LoadBackText(const std::string& file) { return Barred({"load", file, "0"}); }

std::string CutBackText(const std::string& app, const BackCut& cut, const std::string& out,
                        const std::string& quality) {
  return Barred({"cut", app + "/Tmp.jpg", base::NumberText(cut.x), base::NumberText(cut.y), base::NumberText(cut.width),
                 base::NumberText(cut.height), out, quality});
}

std::string CmykText(const std::string& file, const std::string& app, const std::string& extension) {
  return Quoted(file) + "  -profile " + Profile(app, "sRGB.icc") + " -profile " + Profile(app, "Default.icm") + ' ' +
         Quoted(app + "/Tmp" + extension);
}

std::string PdfText(const std::string& file, const std::string& base) {
  return Quoted(file) +
         "  -interlace none -verbose -quality 100 -units pixelsperinch -density 300x300 -depth 24 -colorspace RGB " +
         Quoted(base + ".pdf");
}

std::string PdfText(const std::string& file, const std::string& base, const std::string& quality, int dpi) {
  const std::string start = Quoted(file) + "  -interlace none -verbose -quality ";
  const std::string end = " -depth 24 -colorspace RGB " + Quoted(base + ".pdf");
  if (dpi == 0) return start + ' ' + quality + "  -units pixelsperinch " + end;
  const std::string density = std::to_string(dpi);
  return start + quality + " -units pixelsperinch -density " + density + 'x' + density + end;
}

std::string CmykPreviewText(const std::string& file, const std::string& app, const std::string& profile,
                            const std::string& out) {
  return Quoted(file) + " -profile " + Profile(app, "sRGB.icc") + " -profile " + Profile(app, profile) + ' ' +
         Quoted(out);
}

std::string OcrText(const std::string& picture) { return std::string(kTitle) + "\r\n" + picture; }

std::string CircleText(const std::string& source, const std::string& target, const base::Rect& box) {
  return Tabbed({source, target, std::to_string(box.left), std::to_string(box.top), std::to_string(box.width),
                 std::to_string(box.height)});
}

std::string GifText(const std::string& folder, base::Size canvas, const std::string& target) {
  return Tabbed(
      {folder, "0", "0", "98", "0", std::to_string(canvas.width), std::to_string(canvas.height), "100", target});
}

std::string ExifText(const std::string& source, const std::string& target) { return Barred({source, target, kMarker}); }

}  // namespace quillon::tools
