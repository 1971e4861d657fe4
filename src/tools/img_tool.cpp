// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/img_tool.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

#include "base/number_text.h"
#include "imaging/codecs/tiff_pages.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"

namespace quillon::tools {
namespace {

constexpr const char* kProgram = "QxImgTool.exe";
constexpr const char* kEnd = "end";

// Counts and sizes are never negative, whatever the helper reports.
int Number(Tools& tools, const char* key) {
  return std::max(0, base::ParseInteger(ReadKey(tools.World(), key)).value_or(0));
}

// Clears the answers of an earlier run.
void Clear(Tools& tools, std::initializer_list<const char*> keys) {
  for (const char* key : keys) WriteKey(tools.World(), key, "");
}

host::Status Start(Tools& tools, const std::string& parameters) {
  const int started = tools.EnsureAndStart(kImgTool, parameters);
  return started == host::kStarted ? host::Status::Ok() : NotStarted(kImgTool);
}

}  // namespace

host::Status CountPdfPages(Tools& tools, const std::string& pdf, int dpi, int quality, PdfPages& pages) {
  pages = {};
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {pdf, tools.App()}); !fits) return fits;
  Clear(tools, {key::kGetPdfPages, key::kPdfW, key::kPdfH});
  if (host::Status started = Start(tools, CountPdfPagesText(pdf, tools.App(), dpi, quality)); !started) return started;
  if (tools.Wait(kProgram) == WaitResult::Stopped) return Interrupted();
  const std::string answer = ReadKey(tools.World(), key::kGetPdfPages);
  if (!answer.empty() && !base::ParseInteger(answer)) return {host::Problem::Other, answer};
  pages = {Number(tools, key::kGetPdfPages), Number(tools, key::kPdfW), Number(tools, key::kPdfH)};
  return host::Status::Ok();
}

host::Status TiffPages(Tools& tools, const std::string& tiff, int& pages, int number) {
  if (imaging::CountTiffPages(tools.World().files, tiff, pages) && pages > 0) return host::Status::Ok();
  return CountTiffPages(tools, tiff, pages, number);
}

host::Status CountTiffPages(Tools& tools, const std::string& tiff, int& pages, int number) {
  pages = 0;
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {tiff, tools.App()}); !fits) return fits;
  Clear(tools, {key::kGetTiffPages});
  static_cast<void>(tools.World().files.RemoveOwn(tools.AppPath("Tmp.jpg")));
  if (host::Status started = Start(tools, CountTiffPagesText(tiff, tools.App(), number)); !started) return started;
  if (tools.Wait(kProgram) == WaitResult::Stopped) return Interrupted();
  pages = Number(tools, key::kGetTiffPages);
  return host::Status::Ok();
}

host::Status CutPdf(Tools& tools, const std::string& pdf, const std::string& out, const CutTexts& margins,
                    const std::function<void(const std::string&)>& show) {
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {pdf, out}); !fits) return fits;
  Clear(tools, {key::kCutPdf});
  const ExpectedFile expected(tools, out, {pdf});
  if (host::Status started = Start(tools, CutPdfText(pdf, out, margins)); !started) return started;
  const WaitResult waited = tools.Wait(kProgram, [&] {
    show(ReadKey(tools.World(), key::kCutPdf));
    return false;
  });
  return expected.Result(waited, "没有得到裁剪后的PDF", IsWholePdf);
}

host::Status StartSplitPdf(Tools& tools, const std::string& pdf, const std::string& out) {
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {pdf, out, tools.App()}); !fits) return fits;
  Clear(tools, {key::kSplitPdf});
  return Start(tools, SplitPdfText(pdf, out, tools.App()));
}

host::Status StartMakeTiff(Tools& tools, const std::string& pageFolder, const std::string& out,
                           const std::string& compression, int pages) {
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {pageFolder, out}); !fits) return fits;
  return Start(tools, MakeTiffText(pageFolder, out, compression, pages));
}

WaitResult WaitMakeTiff(Tools& tools, const std::string& out, const std::function<void(std::uint64_t)>& show) {
  return tools.Wait(kProgram, [&] {
    show(tools.World().files.SizeWithDrafts(out));
    return false;
  });
}

host::Status BinderFeed::Add(const std::string& picture, const BindOrder& order) {
  if (host::Status fits = CheckPaths(TextFormat::Tabs, kImgTool, {picture, order.out, order.backImage}); !fits)
    return fits;
  if (host::Status started = started_ ? host::Status::Ok() : Start(order); !started) return started;
  if (!WriteKey(tools_.World(), key::kQxImgTool, picture)) return CommandNotWritten(kImgTool);
  return WaitUntilAccepted();
}

host::Status BinderFeed::Start(const BindOrder& order) {
  if (!WriteKey(tools_.World(), key::kQxImgTool, "")) return CommandNotWritten(kImgTool);
  host::Status started = tools::Start(tools_, BindPdfText(order));
  started_ = static_cast<bool>(started);
  return started;
}

// The tool answers with an empty value once it has the picture. A value that is no path of a file is an error message.
host::Status BinderFeed::WaitUntilAccepted() {
  std::string answer;
  const WaitResult waited = tools_.Wait(kProgram, [&] {
    answer = ReadKey(tools_.World(), key::kQxImgTool);
    return answer.empty() || (answer != kEnd && !tools_.World().files.IsFile(answer));
  });
  if (waited == WaitResult::Stopped) return Interrupted();
  if (waited != WaitResult::Done) return {host::Problem::Other, "QxImgTool 已中断"};
  return answer.empty() ? host::Status::Ok() : host::Status(host::Problem::Other, answer);
}

host::Status BinderFeed::End() {
  const bool reported = !started_ || WriteKey(tools_.World(), key::kQxImgTool, kEnd);
  started_ = false;
  return reported ? host::Status::Ok() : CommandNotWritten(kImgTool);
}

}  // namespace quillon::tools
