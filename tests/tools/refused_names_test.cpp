// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/utf8.h"
#include "tools/back_image.h"
#include "tools/helper_calls.h"
#include "tools/img_tool.h"
#include "tools/pic_handler.h"
#include "tools/tools_fixture.h"

namespace quillon::tools {
namespace {

// A name that a parameter text cannot hold starts nothing and is reported.
class RefusedNames : public ToolsFixture {
 protected:
  void ExpectRefused(const char* call, const host::Status& status, const std::string& why) {
    EXPECT_EQ(status.GetProblem(), host::Problem::Unsupported) << call;
    EXPECT_EQ(status.Why(), "文件名含有" + why) << call;
    EXPECT_TRUE(world.shell.Starts().empty()) << call;
  }
};

TEST_F(RefusedNames, OfEveryCall) {
  const auto silent = [](const std::string&) {};
  const FileValidator any = [](const std::string&) { return true; };
  PdfPages pages;
  int count = 0;
  std::string text;
  bool started = false;
  BinderFeed feed(tools);
  const std::string tool = "制表符或换行，无法交给 QxImgTool 处理：";
  for (const std::string odd : {"/a\tb", "/a\nb", "/a\rb"}) {
    const std::string why = tool + base::DisplayText(odd);
    ExpectRefused("CountPdfPages", CountPdfPages(tools, odd, 72, 90, pages), why);
    ExpectRefused("CountTiffPages", CountTiffPages(tools, odd, count), why);
    ExpectRefused("TiffPages", TiffPages(tools, odd, count), why);
    ExpectRefused("CutPdf source", CutPdf(tools, odd, "/o", {}, silent), why);
    ExpectRefused("CutPdf target", CutPdf(tools, "/i", odd, {}, silent), why);
    ExpectRefused("StartSplitPdf source", StartSplitPdf(tools, odd, "/o"), why);
    ExpectRefused("StartSplitPdf target", StartSplitPdf(tools, "/i", odd), why);
    ExpectRefused("StartMakeTiff source", StartMakeTiff(tools, odd, "/o", "lzw", 1), why);
    ExpectRefused("StartMakeTiff target", StartMakeTiff(tools, "/i", odd, "lzw", 1), why);
    ExpectRefused("BinderFeed picture", feed.Add(odd, {}), why);
    ExpectRefused("BinderFeed target", feed.Add("/i", {.out = odd}), why);
    ExpectRefused("BinderFeed back", feed.Add("/i", {.backImage = odd}), why);
    ExpectRefused("RecogniseText", RecogniseText(tools, odd, text),
                  "制表符或换行，无法交给 QxBackOCRer 处理：" + base::DisplayText(odd));
    const std::string circle = "制表符或换行，无法交给 PicCirleCut 处理：" + base::DisplayText(odd);
    ExpectRefused("CutCircle source", CutCircle(tools, odd, "/o", {}), circle);
    ExpectRefused("CutCircle target", CutCircle(tools, "/i", odd, {}), circle);
  }
  for (const std::string odd : {"/a\tb", "/a\nb", "/a|b"}) {
    const std::string why = "制表符、换行或“|”，无法交给 QxBackImg 处理：" + base::DisplayText(odd);
    ExpectRefused("LoadThroughBackImg", LoadThroughBackImg(tools, odd, started), why);
    ExpectRefused("CutThroughBackImg", CutThroughBackImg(tools, {}, odd, "80", started), why);
  }
  for (const std::string odd : {"/a\"b", "/a\nb"}) {
    const std::string named = base::DisplayText(odd);
    const std::string why = "引号或换行，无法交给 PicHandler 处理：" + named;
    ExpectRefused("ConvertToCmyk", ConvertToCmyk(tools, odd, any), why);
    ExpectRefused("MakePdf source", MakePdf(tools, odd, "/o", ""), why);
    ExpectRefused("MakePdf target", MakePdf(tools, "/i", odd, ""), why + ".pdf");
    ExpectRefused("MakeCmykPreview source", MakeCmykPreview(tools, odd, "p", "/o"), why);
    ExpectRefused("MakeCmykPreview profile", MakeCmykPreview(tools, "/i", odd, "/o"), why);
    ExpectRefused("MakeCmykPreview target", MakeCmykPreview(tools, "/i", "p", odd), why);
    ExpectRefused("RunCutMedia", RunCutMedia(tools, "", {"/i", odd}), "引号或换行，无法交给 CutMedia 处理：" + named);
  }
}

}  // namespace
}  // namespace quillon::tools
