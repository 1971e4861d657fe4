// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The texts that helpers are called with, to the letter.
#include "tools/command_lines.h"

#include <gtest/gtest.h>

namespace quillon::tools {
namespace {

TEST(ImgToolText, CountsPages) {
  EXPECT_EQ(CountPdfPagesText("/in/a b.pdf", "/app", 72, 90),
            "Quillon\t/in/a b.pdf\t/app\tGetPdfPages\tgetpdfpages\t72\t90");
  EXPECT_EQ(CountTiffPagesText("/in/a.tif", "/app"), "Quillon\t/in/a.tif\t/app\tGetTiffPages\tgettiffpages\tlzw\t0\t1");
  EXPECT_EQ(CountTiffPagesText("/in/a.tif", "/app", 7),
            "Quillon\t/in/a.tif\t/app\tGetTiffPages\tgettiffpages\tlzw\t0\t7");
}

TEST(ImgToolText, CutsAndSplits) {
  EXPECT_EQ(CutPdfText("/in/a.pdf", "/out/a.pdf", {"0", "1.5", "0", "5"}),
            "Quillon\t/in/a.pdf\t/out/a.pdf\tCutPdf\tcutpdf\t0|1.5|0|5");
  EXPECT_EQ(SplitPdfText("/in/a.pdf", "/out/a.pdf", "/app"),
            "Quillon\t/in/a.pdf\t/out/a.pdf\tSplitPdf\tsplitpdf\t/app/Images/");
}

TEST(ImgToolText, AssemblesAndBinds) {
  EXPECT_EQ(MakeTiffText("/app/Images", "/out/a.tif", "ccitt4", 12),
            "Quillon\t/app/Images\t/out/a.tif\tMakeTiff\tmaketiff\tccitt4\t4\t12");
  EXPECT_EQ(BindPdfText({"f", "/out/a.pdf", "/app/Back.jpg", "", "x", "y", "z"}),
            "Quillon\tf\t/out/a.pdf\tQxImgTool\tbindpdf\t/app/Back.jpg\t\tx\ty\tz");
}

TEST(BackText, LoadsAndCuts) {
  EXPECT_EQ(FirstBackText("/in/a.jpg"), "Quillon\tQxBackImg\t/in/a.jpg\tload|/in/a.jpg|0");
  EXPECT_EQ(LoadBackText("/in/a.jpg"), "load|/in/a.jpg|0");
  EXPECT_EQ(CutBackText("/app", {1, 2.5, 300, 0.125}, "/out/a.jpg", "80"),
            "cut|/app/Tmp.jpg|1|2.5|300|0.125|/out/a.jpg|80");
}

TEST(PicHandlerText, ConvertsColours) {
  EXPECT_EQ(CmykText("/out/a b.jpg", "/app", ".jpg"),
            "\"/out/a b.jpg\"  -profile \"/app/ColorConfigs/sRGB.icc\" -profile \"/app/ColorConfigs/Default.icm\" "
            "\"/app/Tmp.jpg\"");
  EXPECT_EQ(CmykPreviewText("/in/a.jpg", "/app", "Press.icm", "/out/p.jpg"),
            "\"/in/a.jpg\" -profile \"/app/ColorConfigs/sRGB.icc\" -profile \"/app/ColorConfigs/Press.icm\" "
            "\"/out/p.jpg\"");
}

TEST(PicHandlerText, MakesPdf) {
  EXPECT_EQ(PdfText("/out/a.jpg", "/out/a"),
            "\"/out/a.jpg\"  -interlace none -verbose -quality 100 -units pixelsperinch -density 300x300 -depth 24 "
            "-colorspace RGB \"/out/a.pdf\"");
  EXPECT_EQ(PdfText("/out/a.jpg", "/out/a", "85", 0),
            "\"/out/a.jpg\"  -interlace none -verbose -quality  85  -units pixelsperinch  -depth 24 -colorspace RGB "
            "\"/out/a.pdf\"");
  EXPECT_EQ(PdfText("/out/a.jpg", "/out/a", "85", 150),
            "\"/out/a.jpg\"  -interlace none -verbose -quality 85 -units pixelsperinch -density 150x150 -depth 24 "
            "-colorspace RGB \"/out/a.pdf\"");
}

TEST(OtherTexts, StandAsGiven) {
  EXPECT_EQ(OcrText("/in/a.jpg"), "Quillon\r\n/in/a.jpg");
  EXPECT_EQ(CircleText("/in/a.jpg", "/out/a.png", {1, -2, 30, 40}), "/in/a.jpg\t/out/a.png\t1\t-2\t30\t40");
  EXPECT_EQ(GifText("/app", {60, 40}, "/out/a.gif"), "/app\t0\t0\t98\t0\t60\t40\t100\t/out/a.gif");
  EXPECT_EQ(ExifText("/in/a.jpg", "/out/a.jpg"), "/in/a.jpg|/out/a.jpg|Tessa批量处理系列软件");
}

TEST(CheckPaths, RefusesWhatATextCannotHold) {
  EXPECT_TRUE(CheckPaths(TextFormat::Tabs, "X", {"/a b/\"c\"|d", "/e"}));
  EXPECT_FALSE(CheckPaths(TextFormat::Tabs, "X", {"/a", "/b\tc"}));
  EXPECT_FALSE(CheckPaths(TextFormat::Tabs, "X", {"/a\n"}));
  EXPECT_TRUE(CheckPaths(TextFormat::TabsAndBars, "X", {"/a\"b"}));
  EXPECT_FALSE(CheckPaths(TextFormat::TabsAndBars, "X", {"/a|b"}));
  EXPECT_TRUE(CheckPaths(TextFormat::Quotes, "X", {"/a|b\tc"}));
  const host::Status refused = CheckPaths(TextFormat::Quotes, "PicHandler", {"/a\"b.jpg"});
  EXPECT_EQ(refused.GetProblem(), host::Problem::Unsupported);
  EXPECT_EQ(refused.Why(), "文件名含有引号或换行，无法交给 PicHandler 处理：/a\"b.jpg");
}

}  // namespace
}  // namespace quillon::tools
