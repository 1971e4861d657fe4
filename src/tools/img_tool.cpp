// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/img_tool.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

#include "base/number_text.h"
#include "imaging/codecs/tiff_pages.h"
#include "tools/carried.h"
#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/sound_result.h"

namespace quillon::tools {
namespace {

constexpr const char* kProgram = "QxImgTool.exe";
constexpr const char* kEnd = "end";

// No count and no size is below zero, whatever a helper says.
int Number(Tools& tools, const char* key) {
  return std::max(0, base::ParseInteger(ReadKey(tools.World(), key)).value_or(0));
}

// An answer of an earlier run is none to this one.
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
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {pdf, tools.App()}); !fits) return fits;
  Clear(tools, {key::kGetPdfPages, key::kPdfW, key::kPdfH});
  if (host::Status started = Start(tools, CountPdfPagesText(pdf, tools.App(), dpi, quality)); !started) return started;
  if (tools.Wait(kProgram) == Waited::Stopped) return Interrupted();
  pages = {Number(tools, key::kGetPdfPages), Number(tools, key::kPdfW), Number(tools, key::kPdfH)};
  return host::Status::Ok();
}

host::Status TiffPages(Tools& tools, const std::string& tiff, int& pages, int number) {
  if (imaging::CountTiffPages(tools.World().files, tiff, pages) && pages > 0) return host::Status::Ok();
  return CountTiffPages(tools, tiff, pages, number);
}

host::Status CountTiffPages(Tools& tools, const std::string& tiff, int& pages, int number) {
  pages = 0;
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {tiff, tools.App()}); !fits) return fits;
  Clear(tools, {key::kGetTiffPages});
  static_cast<void>(tools.World().files.RemoveOwn(tools.AppPath("Tmp.jpg")));
  if (host::Status started = Start(tools, CountTiffPagesText(tiff, tools.App(), number)); !started) return started;
  if (tools.Wait(kProgram) == Waited::Stopped) return Interrupted();
  pages = Number(tools, key::kGetTiffPages);
  return host::Status::Ok();
}

host::Status CutPdf(Tools& tools, const std::string& pdf, const std::string& out, const CutTexts& margins,
                    const std::function<void(const std::string&)>& show) {
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {pdf, out}); !fits) return fits;
  Clear(tools, {key::kCutPdf});
  const ExpectedFile expected(tools, out, {pdf});
  if (host::Status started = Start(tools, CutPdfText(pdf, out, margins)); !started) return started;
  const Waited waited = tools.Wait(kProgram, [&] {
    show(ReadKey(tools.World(), key::kCutPdf));
    return false;
  });
  return expected.Result(waited, "没有得到裁剪后的PDF", IsWholePdf);
}

host::Status StartSplitPdf(Tools& tools, const std::string& pdf, const std::string& out) {
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {pdf, out, tools.App()}); !fits) return fits;
  Clear(tools, {key::kSplitPdf});
  return Start(tools, SplitPdfText(pdf, out, tools.App()));
}

host::Status StartMakeTiff(Tools& tools, const std::string& pageFolder, const std::string& out,
                           const std::string& compression, int pages) {
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {pageFolder, out}); !fits) return fits;
  return Start(tools, MakeTiffText(pageFolder, out, compression, pages));
}

Waited WaitMakeTiff(Tools& tools, const std::string& out, const std::function<void(std::uint64_t)>& show) {
  return tools.Wait(kProgram, [&] {
    show(tools.World().files.SizeWithDrafts(out));
    return false;
  });
}

host::Status BinderFeed::Give(const std::string& picture, const BindOrder& order) {
  if (host::Status fits = MayStand(Carrier::Fields, kImgTool, {picture, order.out, order.backImage}); !fits)
    return fits;
  if (host::Status started = started_ ? host::Status::Ok() : Start(order); !started) return started;
  if (!WriteKey(tools_.World(), key::kQxImgTool, picture)) return NotHeard(kImgTool);
  return Taken();
}

host::Status BinderFeed::Start(const BindOrder& order) {
  if (!WriteKey(tools_.World(), key::kQxImgTool, "")) return NotHeard(kImgTool);
  host::Status started = tools::Start(tools_, BindPdfText(order));
  started_ = static_cast<bool>(started);
  return started;
}

host::Status BinderFeed::Taken() {
  std::string answer;
  const Waited waited = tools_.Wait(kProgram, [&] {
    answer = ReadKey(tools_.World(), key::kQxImgTool);
    return answer.empty() || (answer != kEnd && !tools_.World().files.IsFile(answer));
  });
  if (waited == Waited::Stopped) return Interrupted();
  if (waited != Waited::Done) return {host::Problem::Other, "QxImgTool 已中断"};
  return answer.empty() ? host::Status::Ok() : host::Status(host::Problem::Other, answer);
}

host::Status BinderFeed::End() {
  const bool said = !started_ || WriteKey(tools_.World(), key::kQxImgTool, kEnd);
  started_ = false;
  return said ? host::Status::Ok() : NotHeard(kImgTool);
}

}  // namespace quillon::tools
