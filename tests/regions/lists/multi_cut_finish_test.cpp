// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What the helper programs do to regions, and what a region run leaves of the window.
#include "job/marking_tools.h"
#include "regions/regions_fixture.h"

namespace quillon::regions {
namespace {

using host::Reply;

constexpr const char* kTwoRegions = "R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n";

class MultiCutFinishTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    program.outputTools = &tools;
    program.ShowWindow("FMultCut");
    Import(Clt("regions.clt", kTwoRegions));
    world.boxes.Forget();
  }
  void CutRegionsOf(const std::vector<std::string>& paths) {
    List(paths);
    world.boxes.Answer("为每一张底图新建", Reply::No);
    world.boxes.Answer("要打开输出目录吗？", Reply::No);
    Click("FMultCut.CmdOk");
  }
  bool EndsWith(const std::string& name, const std::string& marks) const {
    return world.folder.Read("out/" + name).ends_with(marks);
  }

  job::MarkingTools tools;
};

TEST_F(MultiCutFinishTest, APdfOfEachRegion) {
  form.CmbOutType.SetText("pdf");
  for (int run = 0; run < 2; ++run) {
    CutRegionsOf({Make("a.bmp")});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.pdf", "a_裁剪区域2.pdf"}));
    EXPECT_TRUE(EndsWith("a_裁剪区域2.pdf", "[pdf]"));
    EXPECT_EQ(form.CmbOutType.Text(), "pdf") << "of the next run too";
    program.files.Clear();
  }
  EXPECT_EQ(tools.pdfs, 4);
  EXPECT_FALSE(AppHas("Tmp.pdf"));
  EXPECT_FALSE(AppHas("Tmp2.jpg"));
}

TEST_F(MultiCutFinishTest, WithoutTheHelpersThereIsNoPdf) {
  form.CmbOutType.SetText("pdf");
  program.outputTools = nullptr;
  CutRegionsOf({Make("a.bmp")});
  EXPECT_EQ(Boxes("本机缺失资源文件"), 1);
  EXPECT_TRUE(recorder.started.empty());
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(MultiCutFinishTest, APdfThatFailsCostsItsRegion) {
  form.CmbOutType.SetText("pdf");
  world.folder.Write("out/a_裁剪区域2.pdf", "older");
  tools.failingPdf = 2;
  CutRegionsOf({Make("a.bmp")});
  EXPECT_EQ(Why(1), "区域2：pdf 没有生成");
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a_裁剪区域1.pdf"});
  EXPECT_EQ(recorder.done[0].more, std::vector<std::string>{Out("a_裁剪区域1.pdf")});
  EXPECT_EQ(world.folder.Read("data/Trash/files/a_裁剪区域2.pdf"), "older");
}

TEST_F(MultiCutFinishTest, ExifAndCmykCountForEachRegion) {
  job::LayOutProfiles(program);
  Option("ChKeepExif", "1");
  Option("ChToCMYK", "1");
  const std::string source = Make("a.jpg");
  CutRegionsOf({source});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  for (const char* name : {"a_裁剪区域1.jpg", "a_裁剪区域2.jpg"}) {
    EXPECT_TRUE(EndsWith(name, job::MarkingTools::Marks(source))) << name;
  }
  EXPECT_EQ(recorder.done[0].why, "");
}

TEST_F(MultiCutFinishTest, WhatCannotBeConvertedIsNotedOnce) {
  job::LayOutProfiles(program);
  Option("ChKeepExif", "1");
  Option("ChToCMYK", "1");
  tools.exifStatus = {host::Problem::Other, "超时"};
  tools.cmykStatus = {host::Problem::Other, "失败"};
  CutRegionsOf({Make("a.jpg")});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Why(1), "颜色没有转换：失败；Exif没有保留：超时");
}

TEST_F(MultiCutFinishTest, WithoutItsProfilesNothingIsConverted) {
  job::LayOutProfiles(program);
  Option("ChToCMYK", "1");
  world.folder.Write("app/ColorConfigs/Default.icm", "no profile");
  CutRegionsOf({Make("a.jpg")});
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Why(1).find("无法转CMYK"), 0u) << Why(1);
}

// ChMulCut blocks the normal cut until its run.
TEST_F(MultiCutFinishTest, TheNormalCutComesBackAfterTheRun) {
  Option("ChMulCut", "1");
  EXPECT_FALSE(Enabled("menuNormalCut"));
  CutRegionsOf({Make("a.bmp")});
  EXPECT_TRUE(Enabled("menuNormalCut"));
  Put("ChJpgComp", "1");
  EXPECT_TRUE(Enabled("menuNormalCut")) << "also after another parameter";
  Cut();
  EXPECT_TRUE(world.folder.Exists("out/a.jpg"));
  Option("ChMulCut", "0");
  Option("ChMulCut", "1");
  EXPECT_FALSE(Enabled("menuNormalCut")) << "until the next run";
}

}  // namespace
}  // namespace quillon::regions
