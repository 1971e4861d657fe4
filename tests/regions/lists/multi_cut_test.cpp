// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The cut of all regions out of every picture.
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "host/disk_thread.h"
#include "host/posix/sqlite_journals.h"
#include "host/testing/fakes.h"
#include "job/list/dead_disk.h"
#include "job/several_pages.h"
#include "job/turned_picture.h"
#include "regions/regions_fixture.h"
#include "regions/transparent_png.h"

namespace quillon::regions {
namespace {

using host::Reply;
using job::Painted;
using job::Picture;
using job::Result;
using job::Slope;

constexpr const char* kFolders = "为每一张底图新建以底图文件名的新建文件夹并将裁剪的小图存入该文件夹中？";
constexpr const char* kDone = "处理完毕！要打开输出目录吗？";

// The part of a picture that a box leaves.
Picture Part(const Picture& whole, base::Rect box) {
  return Painted(box.width, box.height, [&](int x, int y) { return whole.At(box.left + x, box.top + y); });
}

class MultiCutTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    program.ShowWindow("FMultCut");
    form.CmbOutType.SetText("bmp");
  }
  void Regions(const std::string& lines) {
    Import(Clt("regions.clt", lines));
    world.boxes.Forget();
  }
  void CutListed(Reply folders = Reply::No, Reply open = Reply::No) {
    world.boxes.Answer(kFolders, folders, 1);
    world.boxes.Answer(kDone, open, 1);
    Click("FMultCut.CmdOk");
  }
  void CutRegionsOf(const std::vector<std::string>& paths) {
    List(paths);
    CutListed();
  }
};

TEST_F(MultiCutTest, EachSourceGivesOneFileForEachRegion) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  const Picture picture = Painted(100, 80, Slope);
  CutRegionsOf({Make("a.bmp", picture), Make("b.bmp", picture)});
  EXPECT_EQ(OutNames(),
            (std::vector<std::string>{"a_裁剪区域1.bmp", "a_裁剪区域2.bmp", "b_裁剪区域1.bmp", "b_裁剪区域2.bmp"}));
  EXPECT_EQ(job::Difference(Read(Out("a_裁剪区域1.bmp")), Part(picture, {20, 10, 50, 55})), 0);
  EXPECT_EQ(job::Difference(Read(Out("b_裁剪区域2.bmp")), Part(picture, {0, 0, 40, 30})), 0);
  EXPECT_EQ(Totals().planned, 2u);
  EXPECT_EQ(program.Setting("LOutDir"), form.LOutDir.Value());
  EXPECT_EQ(program.Setting("LInDir"), form.LInDir.Value());
  EXPECT_EQ(Totals().written, 2u);
  ASSERT_EQ(recorder.done.size(), 2u) << "one result for each source";
  EXPECT_EQ(recorder.done[0].output, Out("a_裁剪区域1.bmp"));
  EXPECT_EQ(recorder.done[0].more, std::vector<std::string>{Out("a_裁剪区域2.bmp")});
  ASSERT_EQ(world.boxes.All().size(), 2u);
  EXPECT_EQ(world.boxes.All()[0].box.text, kFolders);
  EXPECT_EQ(world.boxes.All()[0].box.type & 7, 4);
  EXPECT_EQ(world.boxes.All()[1].box.text, kDone);
  EXPECT_TRUE(world.shell.Folders().empty());
}

TEST_F(MultiCutTest, ASourceOfSeveralPagesIsNotedOnce) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  CutRegionsOf({world.folder.Write("in/a.tif", job::TwoPages(100, 80)), Make("b.bmp")});
  ASSERT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(recorder.done[0].why, "源文件有 2 页，只取第一页");
  EXPECT_EQ(recorder.done[1].why, "");
}

TEST_F(MultiCutTest, AFileUnderTheNameOfARegionIsKeptIfTheUserSaysSo) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  world.folder.Write("out/a_裁剪区域2.bmp", "the user's");
  world.boxes.Answer("已有同名的文件，不是这次写出的：", Reply::No);
  CutRegionsOf({Make("a.bmp")});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.bmp", "a_裁剪区域2(2).bmp", "a_裁剪区域2.bmp"}));
  EXPECT_EQ(Totals().written, 1u);
  program.onExisting = job::OnExisting::Skip;
  CutListed();
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_EQ(OutNames().size(), 3u);
  EXPECT_EQ(world.folder.Read("out/a_裁剪区域2.bmp"), "the user's");
}

TEST_F(MultiCutTest, RegionsOfTurnedPhotographsAreUprightInABitmap) {
  Regions("R\r\n5\t20\t0\t15\r\n0\t0\t10\t0\r\n");
  Make("0.jpg", Painted(60, 40, job::Quarters));
  std::vector<std::string> sources{In("0.jpg")};
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const std::string turned = job::WithOrientation(world.folder.Read("in/0.jpg"), orientation);
    sources.push_back(world.folder.Write("in/" + std::to_string(orientation) + ".jpg", turned));
  }
  CutRegionsOf(sources);
  EXPECT_EQ(Totals().written, 9u);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    for (const char* region : {"_裁剪区域1.bmp", "_裁剪区域2.bmp"}) {
      const Picture shown = job::Upright(Read(Out(std::string("0") + region)), orientation);
      const std::string turned = std::to_string(orientation) + region;
      EXPECT_EQ(job::Difference(Read(Out(turned)), shown), 0) << turned;
    }
  }
}

TEST_F(MultiCutTest, DraftsOfAKilledRunAreRemoved) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  world.folder.Write("out/.b_裁剪区域1.bmp.quillon-ab3de9", "half a picture");
  world.folder.Write("out/a/.a_裁剪区域1.bmp.quillon-ab3de9", "half a picture");
  const std::string source = Make("a.bmp", Painted(100, 80, Slope));
  CutRegionsOf({source});
  EXPECT_FALSE(world.folder.Exists("out/.b_裁剪区域1.bmp.quillon-ab3de9"));
  world.boxes.Forget();
  CutListed(Reply::Yes);
  EXPECT_EQ(world.folder.Names("out/a"), (std::vector<std::string>{"a_裁剪区域1.bmp", "a_裁剪区域2.bmp"}));
}

TEST_F(MultiCutTest, AFileUnderTheNameOfARegionGoesToTheTrash) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  world.folder.Write("out/a_裁剪区域2.bmp", "the user's");
  CutRegionsOf({Make("a.bmp", Painted(100, 80, Slope))});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(world.folder.Names("data/Trash/files"), std::vector<std::string>{"a_裁剪区域2.bmp"});
  EXPECT_EQ(world.folder.Read("data/Trash/files/a_裁剪区域2.bmp"), "the user's");
}

TEST_F(MultiCutTest, PercentRegionsFollowEachPicture) {
  Regions("D\r\n10\t20\t30\t40\r\n0\t0\t50\t50\r\n");
  CutRegionsOf({Make("a.bmp", 100, 80), Make("b.bmp", 40, 30)});
  EXPECT_EQ(SizeOf(Out("a_裁剪区域1.bmp")), (base::Size{50, 40}));
  EXPECT_EQ(SizeOf(Out("b_裁剪区域1.bmp")), (base::Size{20, 15}));
  EXPECT_EQ(SizeOf(Out("b_裁剪区域2.bmp")), (base::Size{20, 15}));
}

TEST_F(MultiCutTest, JpegsAreCutAsOneByOne) {
  form.CmbOutType.SetText("jpg");
  form.TQuality.SetText("85");
  Regions("R\r\n8\t8\t20\t20\r\n0\t0\t60\t50\r\n41\t33\t20\t11\r\n");
  const std::string source = Make("a.jpg", 100, 80);
  CutRegionsOf({source});
  const base::Rect boxes[] = {{8, 8, 72, 52}, {0, 0, 40, 30}, {33, 41, 47, 28}};
  for (std::size_t i = 0; i < std::size(boxes); ++i) {
    imaging::CropRequest request;
    request.source = source;
    request.destination = world.folder.Path("alone.jpg");
    request.rect = boxes[i];
    request.encoder = imaging::Encoder::Jpeg;
    request.quality = 85;
    ASSERT_TRUE(program.images.CropToFile(request));
    EXPECT_EQ(world.folder.Read("out/a_裁剪区域" + std::to_string(i + 1) + ".jpg"), world.folder.Read("alone.jpg"))
        << i;
  }
}

TEST_F(MultiCutTest, TheExtensionFollowsItsCaseOption) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  Option("CmbExtCase", "后缀名全大写");
  CutRegionsOf({Make("a.bmp")});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.BMP", "a_裁剪区域2.BMP"}));
  Option("CmbExtCase", "后缀名全小写");
  world.boxes.Forget();
  CutListed();
  EXPECT_EQ(OutNames().size(), 4u);
  EXPECT_TRUE(world.folder.Exists("out/a_裁剪区域2.bmp"));
}

TEST_F(MultiCutTest, PngKeepsItsTransparency) {
  const std::string source = world.folder.Write("in/a.png", HalfTransparentPng());
  form.CmbOutType.SetText("png");
  Regions("R\r\n0\t0\t0\t0\r\n1\t2\t3\t4\r\n");
  CutRegionsOf({source});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  for (const char* name : {"out/a_裁剪区域1.png", "out/a_裁剪区域2.png"}) {
    EXPECT_EQ(world.folder.Read(name)[kColourType], kRgbWithAlpha) << name;
  }
  // Seen on white: the left half is clear, the right one is not.
  const Picture seen = Read(Out("a_裁剪区域1.png"));
  EXPECT_EQ(seen.At(0, 0), job::kWhitePixel);
  EXPECT_EQ(seen.At(7, 7), (job::Pixel{200, 100, 50}));
}

TEST_F(MultiCutTest, AFolderForEachPictureOnRequest) {
  world.folder.Write("out/a/kept.txt", "x");
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  List({Make("a.bmp"), Make("b.bmp")});
  CutListed(Reply::Yes);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(world.folder.Names("out/a"), (std::vector<std::string>{"a_裁剪区域1.bmp", "a_裁剪区域2.bmp", "kept.txt"}));
  EXPECT_EQ(world.folder.Names("out/b").size(), 2u);
}

TEST_F(MultiCutTest, TheTopFolderIsOpenedAndNoOther) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  form.LOutDir.SetText(world.folder.Path() + "//out");
  List({Make("a.bmp")});
  CutListed(Reply::Yes, Reply::Yes);
  EXPECT_EQ(world.shell.Folders(), (std::vector<std::string>{world.folder.Path() + "/out"}));
}

TEST_F(MultiCutTest, FewerThanTwoRegionsAreNotCut) {
  List({Make("a.bmp")});
  window.CmdOk_Click();
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_TRUE(world.boxes.All().empty());
  AddRegion(10, 20, 30, 40);
  window.CmdOk_Click();
  EXPECT_EQ(Boxes("至少添加2个裁剪区域！"), 1);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_TRUE(recorder.started.empty());
}

TEST_F(MultiCutTest, RegionsThatLeaveNothingAreReportedInTheRow) {
  Regions("D\r\n0\t60\t60\t0\r\n0\t0\t50\t50\r\n101\t0\t0\t0\r\n");
  CutRegionsOf({Make("a.bmp", 200, 100)});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域2.bmp"}));
  EXPECT_EQ(Totals().planned, 1u);
  EXPECT_EQ(Totals().written, 0u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(recorder.done[0].output, "");
  EXPECT_EQ(recorder.done[0].more, std::vector<std::string>{Out("a_裁剪区域2.bmp")});
  EXPECT_EQ(Why(1), "区域1：区域的宽或高小于 1 像素（-40x100）；区域3：区域的宽或高小于 1 像素（200x-1）");
  EXPECT_EQ(program.files.Row(0).result, Result::None);
}

TEST_F(MultiCutTest, WhatLiesOutsideThePictureIsWhite) {
  Regions("R\r\n-10\t-10\t70\t60\r\n0\t0\t60\t50\r\n");
  CutRegionsOf({Make("a.bmp", 100, 80)});
  const Picture cut = Read(Out("a_裁剪区域1.bmp"));
  EXPECT_EQ(cut.width, 40);
  EXPECT_EQ(cut.height, 30);
  EXPECT_EQ(cut.At(0, 0), job::kWhitePixel);
  EXPECT_EQ(cut.At(12, 11), Slope(2, 1));
}

TEST_F(MultiCutTest, RegionsBesideThePictureAndBeyondAllSizesHarmNothing) {
  Regions("R\r\n0\t150\t-100\t0\r\n-2000000000\t0\t0\t-2000000000\r\n1e300\t0\t0\t-1e300\r\n0\t0\t60\t50\r\n");
  CutRegionsOf({Make("a.bmp", 100, 80)});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a_裁剪区域4.bmp"});
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Why(1).find("区域1：区域整个在图片之外（左 150，上 0，图片 100x80）；"), 0u) << Why(1);
  EXPECT_NE(Why(1).find("区域2："), std::string::npos) << Why(1);
  EXPECT_NE(Why(1).find("区域3："), std::string::npos) << Why(1);
}

TEST_F(MultiCutTest, MalformedRowsCountAsNought) {
  Regions("R\r\nabc\r\n0\t0\t60\t50\r\n");
  CutRegionsOf({Make("a.bmp", 100, 80)});
  EXPECT_EQ(SizeOf(Out("a_裁剪区域1.bmp")), (base::Size{100, 80}));
}

TEST_F(MultiCutTest, AReplacedOrLostSourceIsReported) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  List({Make("a.bmp", 100, 80), Make("b.bmp", 100, 80), Make("c.bmp", 100, 80)});
  Make("a.bmp", 60, 50);
  world.folder.Write("in/b.bmp", "no picture");
  ASSERT_EQ(std::remove(In("c.bmp").c_str()), 0);
  CutListed();
  EXPECT_EQ(Why(1), "图片已被换成另一张（列表中 100x80，现在 60x50），请重新添加");
  EXPECT_FALSE(Why(2).empty());
  EXPECT_EQ(Why(3), "找不到这个文件");
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 3u);
}

TEST_F(MultiCutTest, AnotherListedPictureIsNotWrittenOver) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  form.LOutDir.SetText(world.folder.Path("in"));
  const std::string other = Make("a_裁剪区域2.bmp", 100, 80);
  const std::string before = world.folder.Read("in/a_裁剪区域2.bmp");
  CutRegionsOf({Make("a.bmp", 100, 80), other});
  EXPECT_EQ(world.folder.Read("in/a_裁剪区域2.bmp"), before);
  EXPECT_EQ(Why(1), "区域2：会覆盖另一个文件 " + other + "，已跳过");
  EXPECT_EQ(recorder.done[0].more, std::vector<std::string>{In("a_裁剪区域1.bmp")});
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(MultiCutTest, TheStatusShowsRegionAndPicture) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  std::vector<std::string> texts;
  form.Observe([&](controls::Control& control, controls::Aspect aspect) {
    if (&control == &form.LStatus && aspect == controls::Aspect::Value) texts.push_back(form.LStatus.Value());
  });
  List({Make("a.bmp"), Make("b.bmp")});
  const std::string normal = program.files.StatusText();
  texts.clear();
  CutListed();
  EXPECT_EQ(texts, (std::vector<std::string>{normal + "  正在裁剪1/2 之1/2", normal + "  正在裁剪2/2 之1/2",
                                             normal + "  正在裁剪1/2 之2/2", normal + "  正在裁剪2/2 之2/2", normal}));
}

TEST_F(MultiCutTest, TheInterfaceIsLockedForTheRun) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  options.Load();
  int checked = 0;
  recorder.onFileDone = [&](const job::FileResult&) {
    for (const char* name : {"FMultCut.CmdAdd", "FMultCut.CmdCancel", "FMultCut.MSFlexGrid1", "FMultCut.CmdOk",
                             "FMultCut.CmdInput", "FMultCut.CmdOut", "Frame1", "MSF", "MenuFiles", "FBaseOpt.ChFilter"})
      EXPECT_FALSE(Enabled(name)) << name;
    EXPECT_TRUE(Enabled("MenuStop"));
    ++checked;
  };
  CutRegionsOf({Make("a.bmp")});
  EXPECT_EQ(checked, 1);
  for (const char* name : {"FMultCut.CmdAdd", "FMultCut.CmdCancel", "FMultCut.MSFlexGrid1", "FMultCut.CmdOk",
                           "FMultCut.CmdInput", "FMultCut.CmdOut", "Frame1", "MSF", "MenuFiles", "FBaseOpt.ChFilter"})
    EXPECT_TRUE(Enabled(name)) << name;
  EXPECT_FALSE(Enabled("MenuStop"));
  EXPECT_EQ(form.MSF.Selected(), 1u);
}

TEST_F(MultiCutTest, AStopEndsBothLoopsAndCountsTheRest) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  form.Observe([&](controls::Control& control, controls::Aspect aspect) {
    const bool shown = &control == &form.LStatus && aspect == controls::Aspect::Value;
    if (shown && form.LStatus.Value().find("正在裁剪1/2") != std::string::npos) flags.StopRequested = true;
  });
  CutRegionsOf({Make("a.bmp"), Make("b.bmp")});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.bmp"}));
  EXPECT_EQ(Why(1), "已停止，其余区域没有处理");
  EXPECT_EQ(recorder.done[0].more, std::vector<std::string>{Out("a_裁剪区域1.bmp")});
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(MultiCutTest, ADiskThatDoesNotAnswerIsReported) {
  Regions("R\r\n0\t0\t60\t50\r\n0\t0\t10\t10\r\n");
  List({Make("x/a.bmp", 100, 80), Make("y/b.bmp", 100, 80), Make("z/c.bmp", 100, 80)});
  world.clock.Advance(1);
  job::DeadDisk dead;
  dead.HangAt(world.faults, host::testing::DiskCall::OpenRead, "b.bmp");
  world.pump.EveryTurn([&] {
    if (host::testing::OtherThreadsWait()) world.clock.Advance(1);
  });
  CutListed();
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Why(2), host::kDiskUnresponsive);
  EXPECT_EQ(OutNames().size(), 4u);
}

TEST_F(MultiCutTest, EachPictureIsReportedBeforeItIsCut) {
  Regions("R\r\n0\t0\t60\t50\r\n0\t0\t10\t10\r\n");
  const std::string a = Make("a.bmp", 100, 80);
  const std::string b = Make("b.bmp", 100, 80);
  CutRegionsOf({a, b});
  EXPECT_EQ(recorder.begun, (std::vector<std::string>{a, b}));
}

TEST_F(MultiCutTest, ClosingDuringTheRunAsksAndStays) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  world.boxes.Answer("正在处理中，要强制终止吗？", Reply::Cancel, 1);
  world.boxes.Answer("正在处理中，要强制终止吗？", Reply::Ok, 1);
  int done = 0;
  recorder.onFileDone = [&](const job::FileResult&) {
    if (++done > 2) return;
    window.Close();
    EXPECT_TRUE(window.Visible());
    EXPECT_EQ(flags.StopRequested, done == 2);
  };
  CutRegionsOf({Make("a.bmp"), Make("b.bmp"), Make("c.bmp")});
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Boxes("正在处理中，要强制终止吗？"), 2);
  EXPECT_TRUE(window.Visible());
}

TEST_F(MultiCutTest, AFullDiskAsksAndMayEndTheRun) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "裁剪区域2"});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Retry, 1);
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Cancel);
  CutRegionsOf({Make("a.bmp"), Make("b.bmp")});
  EXPECT_EQ(Boxes("盘空间不足，请释放空间后重试保存！"), 2);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.bmp"}));
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(MultiCutTest, ADamagedSourceGivesNothing) {
  Regions("R\r\n0\t0\t10\t10\r\n0\t0\t60\t50\r\n");
  const std::string path = Make("a.jpg", 100, 80);
  const std::string bytes = world.folder.Read("in/a.jpg");
  List({path});
  world.folder.Write("in/a.jpg", bytes.substr(0, bytes.size() / 2));
  for (const char* name : {"a_裁剪区域1.bmp", "a_裁剪区域2.bmp", "b.bmp"}) {
    world.folder.Write(std::string("out/") + name, "older");
  }
  CutListed();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"b.bmp"}) << "older results go to the trash";
  EXPECT_EQ(world.folder.Read("data/Trash/files/a_裁剪区域2.bmp"), "older");
}

TEST_F(MultiCutTest, WithoutListOrFolderItAsksForThem) {
  Regions("R\r\n10\t20\t30\t15\r\n0\t0\t60\t50\r\n");
  Click("FMultCut.CmdOk");
  EXPECT_EQ(Boxes("请先添加文件列表！"), 1);
  EXPECT_TRUE(recorder.started.empty());
  List({Make("a.bmp")});
  form.LOutDir.SetText("/nowhere/at/all");
  Click("FMultCut.CmdOk");
  EXPECT_EQ(Boxes("输出目录"), 1);
  EXPECT_TRUE(recorder.started.empty());
  EXPECT_TRUE(Enabled("FMultCut.CmdOk"));
}

// --- Without a list.

class LargeMultiCutTest : public MultiCutTest {
 protected:
  void SetUp() override {
    MultiCutTest::SetUp();
    flags.LargeCapacityMode = true;
    Regions("D\r\n0\t0\t50\t50\r\n50\t50\t0\t0\r\n");
    Make("a.bmp", 40, 30);
    Make("sub/b.bmp", 60, 50);
    world.folder.Write("in/notes.txt", "x");
    form.LInDir.SetText(world.folder.Path("in"));
  }

  // Cuts three pictures of one name, each in a folder of its own, into one output folder. Each takes that many seconds.
  void CutThreeOfOneName(double seconds) {
    recorder.onFileDone = [this, seconds](const job::FileResult&) { world.clock.Advance(seconds); };
    recorder.lost.clear();
    std::filesystem::remove_all(In(""));
    for (const char* folder : {"x", "y", "z"}) Make(std::string(folder) + "/a.bmp", 40, 30);
    CutListed();
  }
};

TEST_F(LargeMultiCutTest, TheFolderIsWalked) {
  std::vector<std::string> texts;
  form.Observe([&](controls::Control& control, controls::Aspect aspect) {
    if (&control == &form.LStatus && aspect == controls::Aspect::Value) texts.push_back(form.LStatus.Value());
  });
  CutListed();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a_裁剪区域1.bmp", "a_裁剪区域2.bmp"}));
  EXPECT_EQ(SizeOf(Out("a_裁剪区域2.bmp")), (base::Size{20, 15}));
  EXPECT_EQ(texts, (std::vector<std::string>{"  正在裁剪1/2，已处理1", "  正在裁剪2/2，已处理1", ""}));
  EXPECT_EQ(Totals().planned, 1u);
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(LargeMultiCutTest, WithItsSubfoldersOnRequest) {
  form.ChSubFold.Set(true);
  CutListed();
  EXPECT_EQ(OutNames().size(), 4u);
  EXPECT_EQ(SizeOf(Out("b_裁剪区域1.bmp")), (base::Size{30, 25}));
}

TEST_F(LargeMultiCutTest, SmallPicturesAreLeftOut) {
  form.ChSubFold.Set(true);
  Option("ChFilter", "1");
  Put("FBaseOpt.TSmalS(0)", "50");
  Put("FBaseOpt.TSmalS(1)", "50");
  CutListed();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"b_裁剪区域1.bmp", "b_裁剪区域2.bmp"}));
  EXPECT_EQ(Totals().skipped, 1u);
}

TEST_F(LargeMultiCutTest, AStopEndsTheWalk) {
  form.ChSubFold.Set(true);
  recorder.onFileDone = [&](const job::FileResult&) { flags.StopRequested = true; };
  CutListed();
  // The file under way is finished.
  EXPECT_EQ(OutNames().size(), 2u);
  EXPECT_EQ(Totals().planned, 1u);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_TRUE(Totals().stopped);
}

// ChOver does not count for regions: they always go to the output folder.
TEST_F(LargeMultiCutTest, ResultsAreNoSources) {
  form.ChSubFold.Set(true);
  form.ChOver.Set(true);
  for (const char* out : {"in/out", "in"}) {
    ASSERT_TRUE(world.files.MakeFolders(world.folder.Path(out)));
    form.LOutDir.SetText(world.folder.Path(out));
    recorder.done.clear();
    CutListed();
    EXPECT_EQ(Totals().written, 2u) << out;
    EXPECT_EQ(Totals().skipped, 0u) << out;
    EXPECT_EQ(Totals().none, 0u) << out;
    if (std::string(out) == "in/out") std::filesystem::remove_all(world.folder.Path(out));
  }
}

TEST_F(LargeMultiCutTest, ResultsOfAStoppedRunAreNotCutAgain) {
  host::posix::SqliteJournals journals(world.folder.Path("journals"));
  program.journals = &journals;
  form.ChSubFold.Set(true);
  form.LOutDir.SetText(world.folder.Path("in"));
  recorder.onFileDone = [&](const job::FileResult&) { flags.StopRequested = true; };
  CutListed();
  EXPECT_EQ(Totals().written, 1u);
  recorder.onFileDone = {};
  world.boxes.Answer("上次的这项任务没有做完", Reply::Yes);
  CutListed();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 3u) << "a source and its two regions";
  EXPECT_EQ(world.folder.Names("in").size(), 7u);
}

// One region of a picture fails; the result of the other is still one of this run beyond a checkpoint.
TEST_F(LargeMultiCutTest, AResultBesideAFailedRegionIsNoStaleOutput) {
  host::posix::SqliteJournals journals(world.folder.Path("journals"));
  program.journals = &journals;
  form.ChSubFold.Set(true);
  recorder.onFileDone = [&](const job::FileResult&) { world.clock.Advance(5); };
  for (const char* broken : {"in/x/a.png", "in/sub/a.png"}) {
    SCOPED_TRACE(broken);
    std::filesystem::remove_all(In(""));
    for (const char* folder : {"x", "sub"}) Make(std::string(folder) + "/a.png", 40, 30);
    world.folder.Write(broken, world.folder.Read(broken).substr(0, 100));
    world.faults.Set({.call = host::testing::DiskCall::RenameNew, .error = EIO, .pathHolds = "a_裁剪区域2.bmp"});
    CutListed();
    EXPECT_EQ(Totals().written, 0u);
    EXPECT_EQ(Totals().none, 2u);
    EXPECT_EQ(OutNames(), std::vector<std::string>{"a_裁剪区域1.bmp"});
    std::filesystem::remove(Out("a_裁剪区域1.bmp"));
    world.faults.Clear();
  }
}

TEST_F(LargeMultiCutTest, NoShardIsCutIntoTheInputFolder) {
  form.LOutDir.SetText(world.folder.Path("in"));
  program.shard = {0, 2, ""};
  CutListed();
  EXPECT_EQ(Boxes(job::kSharedOutput), 1);
  EXPECT_TRUE(recorder.started.empty());
}

TEST_F(LargeMultiCutTest, AFurtherFileCanBeCutMeanwhile) {
  const std::string further = Make("sub/b.bmp", 60, 50);
  std::vector<std::string> texts;
  form.Observe([&](controls::Control& control, controls::Aspect aspect) {
    if (&control == &form.LStatus && aspect == controls::Aspect::Value) texts.push_back(form.LStatus.Value());
  });
  bool once = true;
  recorder.onFileDone = [&](const job::FileResult&) {
    if (std::exchange(once, false)) window.LargeMulCut(further, "7");
  };
  CutListed();
  EXPECT_EQ(OutNames().size(), 4u);
  EXPECT_EQ(SizeOf(Out("b_裁剪区域2.bmp")), (base::Size{30, 25}));
  EXPECT_NE(std::find(texts.begin(), texts.end(), "  正在裁剪2/2，已处理7"), texts.end());
  EXPECT_EQ(Totals().written, 2u);
}

// Files of one name in several folders replace the outputs of each other. None of them counts twice, also if the ledger
// has forgotten the outputs of the earlier ones.
TEST_F(LargeMultiCutTest, ResultsThatAreReplacedAreLostOnce) {
  host::posix::SqliteJournals journals(world.folder.Path("journals"));
  program.journals = &journals;
  form.ChSubFold.Set(true);
  for (const double seconds : {0.0, 5.0}) {
    CutThreeOfOneName(seconds);
    EXPECT_EQ(Totals().written, 1u) << seconds;
    EXPECT_EQ(Totals().none, 2u) << seconds;
    EXPECT_EQ(recorder.lost.size(), 2u) << seconds;
    EXPECT_EQ(OutNames().size(), 2u);
  }
}

TEST_F(LargeMultiCutTest, PartialResultsThatAreReplacedCountOnce) {
  host::posix::SqliteJournals journals(world.folder.Path("journals"));
  program.journals = &journals;
  form.ChSubFold.Set(true);
  Regions("D\r\n0\t0\t50\t50\r\n50\t60\t60\t0\r\n");
  for (const double seconds : {0.0, 5.0}) {
    CutThreeOfOneName(seconds);
    EXPECT_EQ(Totals().none, 3u) << seconds;
    EXPECT_EQ(Totals().written, 0u) << seconds;
    EXPECT_TRUE(recorder.lost.empty()) << seconds;
    EXPECT_EQ(OutNames(), std::vector<std::string>{"a_裁剪区域1.bmp"});
  }
}

TEST_F(LargeMultiCutTest, WithoutARunNothingIsCut) {
  window.LargeMulCut(In("a.bmp"), "1");
  EXPECT_TRUE(OutNames().empty());
  EXPECT_TRUE(recorder.done.empty());
}

}  // namespace
}  // namespace quillon::regions
