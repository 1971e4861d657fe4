// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/img_tool.h"

#include <cstdint>
#include <initializer_list>

#include "base/number_text.h"
#include "formats/tools/carried.h"
#include "formats/tools/expected_file.h"
#include "formats/tools/keys.h"
#include "imaging/tiff_pages.h"

namespace quillon::formats {
namespace {

constexpr const char* kProgram = "QxImgTool.exe";
constexpr const char* kEnd = "end";

int Number(Tools& tools, const char* key) { return base::ParseInteger(ReadKey(tools.World(), key)).value_or(0); }

// An answer of an earlier run is none to this one.
void Clear(Tools& tools, std::initializer_list<const char*> keys) {
  for (const char* key : keys) WriteKey(tools.World(), key, "");
}

}  // namespace

PdfPages CountPdfPages(Tools& tools, const std::string& pdf, int dpi, int quality) {
  if (!MayStand(Carrier::Fields, kImgTool, {pdf, tools.App()})) return {};
  Clear(tools, {key::kGetPdfPages, key::kPdfW, key::kPdfH});
  if (tools.EnsureAndStart(kImgTool, CountPdfPagesText(pdf, tools.App(), dpi, quality)) != host::kStarted) return {};
  tools.Wait(kProgram);
  return {Number(tools, key::kGetPdfPages), Number(tools, key::kPdfW), Number(tools, key::kPdfH)};
}

int TiffPages(Tools& tools, const std::string& tiff, int number) {
  int pages = 0;
  if (imaging::CountTiffPages(tools.World().files, tiff, pages) && pages > 0) return pages;
  return CountTiffPages(tools, tiff, number);
}

int CountTiffPages(Tools& tools, const std::string& tiff, int number) {
  if (!MayStand(Carrier::Fields, kImgTool, {tiff, tools.App()})) return 0;
  Clear(tools, {key::kGetTiffPages});
  static_cast<void>(tools.World().files.RemoveOwn(tools.AppPath("Tmp.jpg")));
  if (tools.EnsureAndStart(kImgTool, CountTiffPagesText(tiff, tools.App(), number)) != host::kStarted) return 0;
  tools.Wait(kProgram);
  return Number(tools, key::kGetTiffPages);
}

host::Status CutPdf(Tools& tools, const std::string& pdf, const std::string& out, const CutTexts& margins,
                    const std::function<void(const std::string&)>& show) {
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {pdf, out}); !fits) return fits;
  Clear(tools, {key::kCutPdf});
  const ExpectedFile expected(tools, out, {pdf});
  const int started = tools.EnsureAndStart(kImgTool, CutPdfText(pdf, out, margins));
  if (started != host::kStarted) return {host::Problem::Other, "无法启动 QxImgTool"};
  const Waited waited = tools.Wait(kProgram, [&] {
    show(ReadKey(tools.World(), key::kCutPdf));
    return false;
  });
  return expected.Result(waited, "没有得到裁剪后的PDF");
}

bool StartSplitPdf(Tools& tools, const std::string& pdf, const std::string& out) {
  if (!MayStand(Carrier::Fields, kImgTool, {pdf, out, tools.App()})) return false;
  Clear(tools, {key::kSplitPdf});
  return tools.EnsureAndStart(kImgTool, SplitPdfText(pdf, out, tools.App())) == host::kStarted;
}

bool StartMakeTiff(Tools& tools, const std::string& parameters) {
  return tools.EnsureAndStart(kImgTool, parameters) == host::kStarted;
}

Waited WaitMakeTiff(Tools& tools, const std::string& out, const std::function<void(std::uint64_t)>& show) {
  return tools.Wait(kProgram, [&] {
    show(tools.World().files.SizeWithDrafts(out));
    return false;
  });
}

bool BinderFeed::Give(const std::string& picture, const BindOrder& order) {
  if (!MayStand(Carrier::Fields, kImgTool, {picture, order.out, order.backImage})) return false;
  if (!started_) {
    Clear(tools_, {key::kQxImgTool});
    started_ = tools_.EnsureAndStart(kImgTool, BindPdfText(order)) == host::kStarted;
    if (!started_) return false;
  }
  WriteKey(tools_.World(), key::kQxImgTool, picture);
  return Taken();
}

bool BinderFeed::Taken() {
  std::string answer;
  const Waited waited = tools_.Wait(kProgram, [&] {
    answer = ReadKey(tools_.World(), key::kQxImgTool);
    return answer.empty() || (answer != kEnd && !tools_.World().files.IsFile(answer));
  });
  return waited == Waited::Done && answer.empty();
}

void BinderFeed::End() {
  if (started_) WriteKey(tools_.World(), key::kQxImgTool, kEnd);
  started_ = false;
}

}  // namespace quillon::formats
