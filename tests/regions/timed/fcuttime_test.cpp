// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The timed cut of a watched folder.
#include <cerrno>
#include <filesystem>

#include "job/marking_tools.h"
#include "regions/timed/watch_fixture.h"
#include "regions/transparent_png.h"

namespace quillon::regions {
namespace {

using controls::Kind;
using host::Reply;
using job::Painted;
using job::Picture;
using job::Slope;

// The question at the end is answered by the test.
class StopTest : public CutTimeTest {
 protected:
  void AnswerStop() override {}
};

TEST_F(RegionsTest, TheTimedWindowOpensWithTheInputFolderOfTheMainWindow) {
  FCutTime& timed = regions.fCutTime;
  form.LInDir.SetText(world.folder.Path("out"));
  timed.Show();
  EXPECT_EQ(timed.LDir.Value(), world.folder.Path("out"));
  EXPECT_EQ(timed.Title(), "Quillon—图片定时裁剪");
  EXPECT_EQ(timed.CmbType.Index(), 1);
  EXPECT_EQ(timed.TW.Value(), "215");
  EXPECT_EQ(timed.TH.Value(), "215");
  for (const char* name : {"ChFast", "ChBak", "ChSizeFilter", "ChBoth", "ChMul", "Chback"}) {
    EXPECT_EQ(timed.Find(name)->Value(), "0") << name;
  }
}

TEST_F(RegionsTest, TheTimedWindowHasItsControls) {
  struct Case {
    const char* name;
    Kind kind;
    const char* caption;
    const char* tooltip;
  };
  const Case cases[] = {
      {"CmdInDir", Kind::Button, "工作目录...", ""},
      {"CmbType", Kind::ComboBox, "图片类型：", ""},
      {"ChFast", Kind::CheckBox, "快速模式(不能处理超大图)",
       "不能处理过大的图像，比如超过四五千以上像素的文件；遇超大图自动切换到超大图处理模式"},
      {"ChBak", Kind::CheckBox, "本机异常，启用备用模式(处理缓慢)",
       "如果正常处理时，程序在你本机异常不能正常运行，请勾选备用模式；处理缓慢，适用任何图，包括超大图"},
      {"ChSizeFilter", Kind::CheckBox, "忽略小图片", ""},
      {"TW", Kind::TextBox, "宽<=", "30-1000"},
      {"TH", Kind::TextBox, "高<=", "30-1000"},
      {"ChBoth", Kind::CheckBox, "同时满足", ""},
      {"ChMul", Kind::CheckBox, "多区域裁剪", ""},
      {"Chback", Kind::CheckBox, "后台监控", "将程序最小化到任务栏"},
      {"CmdDo", Kind::Button, "开始定时裁剪", ""},
      {"CmdStop", Kind::Button, "终止", ""},
      {"LFiles", Kind::Label, "已裁剪数：0", ""},
  };
  for (const Case& one : cases) {
    const controls::Control* control = regions.fCutTime.Find(one.name);
    ASSERT_NE(control, nullptr) << one.name;
    EXPECT_EQ(control->GetKind(), one.kind) << one.name;
    EXPECT_EQ(control->Caption(), one.caption) << one.name;
    EXPECT_EQ(control->Tooltip(), one.tooltip) << one.name;
  }
  EXPECT_STREQ(kWatchingText, "定时裁剪器正在运行中...");
}

TEST_F(CutTimeTest, TheGridFollowsTheUnitAndTheLimitOfRegions) {
  const auto header = [this] { return window.MSFlexGrid1.Headers()[0]; };
  Put("FCutTime.ChMul", "1");
  EXPECT_EQ(header(), "上边距/像素");
  form.ChCutA.Set(false);
  EXPECT_EQ(header(), "上边距/%");
  world.dialogs.ChooseFiles({world.folder.Write("a.clt", "R\r\n1\t2\t3\t4\r\n")});
  Click("FCutTime.CmdInput");
  EXPECT_EQ(header(), "上边距/像素");
  EXPECT_EQ(window.MSFlexGrid1.RowCount(), 1u);
  for (int i = 1; i < 101; ++i) Region("200", std::to_string(i), "0", "0");
  EXPECT_EQ(window.MSFlexGrid1.RowCount(), 101u);
  EXPECT_EQ(Boxes("裁剪区域个数超出上限100！"), 0);
  Region("150", "0", "0", "0");
  EXPECT_EQ(window.MSFlexGrid1.RowCount(), 101u);
  EXPECT_EQ(Boxes("裁剪区域个数超出上限100！"), 1);
}

TEST_F(CutTimeTest, FastAndBackupModeExcludeEachOther) {
  Put("FCutTime.ChFast", "1");
  Put("FCutTime.ChBak", "1");
  EXPECT_FALSE(window.ChFast.On());
  Put("FCutTime.ChFast", "1");
  EXPECT_FALSE(window.ChBak.On());
}

TEST_F(CutTimeTest, FramesShowWithTheirBoxes) {
  EXPECT_FALSE(window.TW.Visible());
  Put("FCutTime.ChSizeFilter", "1");
  EXPECT_TRUE(window.TW.Visible());
  EXPECT_FALSE(window.CmdAdd.Visible());
  Put("FCutTime.ChMul", "1");
  EXPECT_TRUE(window.CmdAdd.Visible());
  Region("1", "2", "3", "4");
  EXPECT_EQ(window.MSFlexGrid1.RowCount(), 1u);
  Put("FCutTime.ChMul", "0");
  Put("FCutTime.ChMul", "1");
  EXPECT_EQ(window.MSFlexGrid1.RowCount(), 0u);
}

TEST_F(CutTimeTest, TheLimitsPutValuesBackIntoTheirRange) {
  Put("FCutTime.ChSizeFilter", "1");
  Put("FCutTime.TW", "29");
  EXPECT_EQ(window.TW.Value(), "30");
  Put("FCutTime.TH", "1001");
  EXPECT_EQ(window.TH.Value(), "1000");
  EXPECT_EQ(world.boxes.Beeps(), 2);
  Put("FCutTime.TW", "30");
  Put("FCutTime.TH", "1000");
  EXPECT_EQ(world.boxes.Beeps(), 2);
  for (const char* text : {"", "abc", "1e9", "NaN", "12.5"}) {
    EXPECT_FALSE(window.TW.UserEdit(text).Accepted()) << text;
    EXPECT_EQ(window.TW.Value(), "30") << text;
  }
}

TEST(WatchTypes, PassTheirExtensions) {
  EXPECT_EQ(WatchTypes(), (std::vector<std::string>{"jpg/bmp/png/gif/tif常用类型", "*.jpg/jpeg", "*.gif", "*.bmp",
                                                    "*.png", "*.tif/tiff"}));
  struct Case {
    const char* name;
    std::vector<int> types;
  };
  const std::vector<Case> cases = {
      {"a.jpg", {0, 1}},  {"a.JPEG", {0, 1}}, {"a.gif", {0, 2}},   {"a.bmp", {0, 3}}, {"a.Png", {0, 4}},
      {"a.tif", {0, 5}},  {"a.tiff", {0, 5}}, {"a.psd", {}},       {"a.jpe", {}},     {"jpg", {}},
      {"a.jpg.part", {}}, {".a.jpg", {}},     {"a.b.jpg", {0, 1}},
  };
  for (const Case& one : cases) {
    for (int type = -1; type < 7; ++type) {
      const bool passes = std::find(one.types.begin(), one.types.end(), type) != one.types.end();
      EXPECT_EQ(PassesType(type, one.name), passes) << one.name << " " << type;
    }
  }
}

TEST_F(CutTimeTest, EachNewPictureIsCutInItsPlaceOnce) {
  const Picture picture = Painted(100, 80, Slope);
  Make("a.bmp", picture);
  bool late = false;
  WatchUntil([&] {
    if (window.LFiles.Value() == "已裁剪数：1" && !late) {
      late = true;
      Make("b.bmp", 90, 80);
    }
    return window.LFiles.Value() == "已裁剪数：2" && world.clock.Seconds() > 10;
  });
  EXPECT_EQ(InNames(), (std::vector<std::string>{"a.bmp", "b.bmp"}));
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
  EXPECT_EQ(Read(In("a.bmp")).At(0, 0), Slope(20, 10));
  EXPECT_EQ(SizeOf(In("b.bmp")), (base::Size{40, 30}));
  EXPECT_EQ(recorder.done.size(), 2u);
}

TEST_F(CutTimeTest, StartingAgainForgetsWhatWasSeen) {
  Make("a.bmp", 100, 80);
  WatchFor(3);
  WatchFor(3);
  // 50 x 30 after the first time; the second leaves nothing of its height.
  EXPECT_EQ(recorder.done.size(), 2u);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
}

TEST_F(CutTimeTest, TheWindowsFollowTheWatch) {
  bool looked = false;
  WatchUntil([&] {
    EXPECT_FALSE(form.Visible());
    for (const char* name : {"FCutTime.CmbType", "FCutTime.CmdInDir", "FCutTime.CmdDo"}) EXPECT_FALSE(Enabled(name));
    EXPECT_TRUE(Enabled("FCutTime.CmdStop"));
    EXPECT_TRUE(Enabled("FCutTime.Chback"));
    return std::exchange(looked, true);
  });
  EXPECT_TRUE(looked);
  EXPECT_TRUE(form.Visible());
  for (const char* name : {"FCutTime.CmbType", "FCutTime.CmdInDir", "FCutTime.CmdDo"}) EXPECT_TRUE(Enabled(name));
  EXPECT_FALSE(Enabled("FCutTime.CmdStop"));
  EXPECT_FALSE(Enabled("FCutTime.Chback"));
}

TEST_F(CutTimeTest, StoppingAsksFirst) {
  host::testing::ScriptedBoxes& boxes = world.boxes;
  boxes.Forget();
  WatchFor(1);
  ASSERT_EQ(boxes.Count("终止定时裁剪？"), 1);
  EXPECT_EQ(boxes.All()[0].box.type, 305);
  EXPECT_FALSE(Totals().stopped);
  EXPECT_NEAR(Totals().seconds, 1, 0.6);
}

TEST_F(StopTest, CancelGoesOnWatching) {
  world.boxes.Answer("终止定时裁剪？", Reply::Cancel, 1);
  world.boxes.Answer("终止定时裁剪？", Reply::Ok);
  bool asked = false;
  WatchUntil([&] {
    if (!std::exchange(asked, true)) {
      Click("FCutTime.CmdStop");
      EXPECT_TRUE(Enabled("FCutTime.CmdStop"));
      EXPECT_FALSE(form.Visible());
      Make("a.bmp", 100, 80);
    }
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_EQ(Boxes("终止定时裁剪？"), 2);
}

// Two polls, half a second apart, then the cut.
TEST_F(CutTimeTest, TheFolderIsPolledTwiceASecond) {
  double made = 0;
  double cut = 0;
  recorder.onFileDone = [&](const job::FileResult&) { cut = world.clock.Seconds(); };
  WatchUntil([&] {
    if (made == 0) {
      Make("a.bmp", 100, 80);
      made = world.clock.Seconds();
    }
    return cut > 0;
  });
  EXPECT_GE(cut - made, 0.49);
  EXPECT_LE(cut - made, 1.1);
}

TEST_F(CutTimeTest, OneRegionIsMadeOfTheParameters) {
  Put("FCutTime.ChMul", "1");
  Region("1", "2", "3", "4");
  Region("5", "6", "7", "8");
  Put("FCutTime.ChMul", "0");
  Fill("10", "20", "30", "40");
  WatchFor(1);
  ASSERT_EQ(window.MSFlexGrid1.RowCount(), 1u);
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 0), "10");
  EXPECT_EQ(window.MSFlexGrid1.Cell(0, 1), "20");
}

TEST_F(CutTimeTest, ClosingAsksAndCancelStays) {
  world.boxes.Answer("图片定时裁剪进行中，确定终止?", Reply::Cancel, 1);
  world.boxes.Answer("图片定时裁剪进行中，确定终止?", Reply::Ok, 1);
  int step = 0;
  WatchUntil([&] {
    if (step++ < 2) {
      window.Close();
      EXPECT_EQ(window.Visible(), step == 1);
      EXPECT_EQ(window.Running() && window.CmdStop.Enabled(), step == 1);
    }
    return false;
  });
  EXPECT_EQ(Boxes("图片定时裁剪进行中，确定终止?"), 2);
  EXPECT_EQ(Boxes("终止定时裁剪？"), 0);
  EXPECT_FALSE(window.Running());
  EXPECT_FALSE(window.Visible());
  EXPECT_TRUE(form.Visible());
}

TEST_F(CutTimeTest, TheBackgroundHidesTheWindow) {
  int step = 0;
  WatchUntil([&] {
    switch (step++) {
      case 0:
        window.Chback.Set(true);
        EXPECT_FALSE(window.Visible());
        return false;
      case 1:
        window.Chback.Set(false);
        EXPECT_TRUE(window.Visible());
        return false;
      default:
        window.Chback.Set(true);
        return true;
    }
  });
  EXPECT_FALSE(window.Chback.On());
  EXPECT_TRUE(window.Visible()) << "the watch has ended";
}

TEST_F(CutTimeTest, AWindowClosedInTheBackgroundStaysClosed) {
  world.boxes.Answer("图片定时裁剪进行中，确定终止?", Reply::Ok);
  bool closed = false;
  WatchUntil([&] {
    if (!std::exchange(closed, true)) {
      window.Chback.Set(true);
      window.Close();
    }
    return false;
  });
  EXPECT_FALSE(window.Visible());
  EXPECT_FALSE(window.Loaded());
  EXPECT_TRUE(form.Visible());
}

TEST_F(CutTimeTest, TheSizeFilterLeavesSmallPicturesAlone) {
  Put("FCutTime.ChSizeFilter", "1");
  Put("FCutTime.TW", "100");
  Put("FCutTime.TH", "80");
  Make("both.bmp", 100, 80);
  Make("narrow.bmp", 100, 81);
  Make("low.bmp", 101, 80);
  Make("large.bmp", 101, 81);
  WatchFor(3);
  EXPECT_EQ(SizeOf(In("both.bmp")), (base::Size{100, 80}));
  EXPECT_EQ(SizeOf(In("narrow.bmp")), (base::Size{100, 81}));
  EXPECT_EQ(SizeOf(In("low.bmp")), (base::Size{101, 80}));
  EXPECT_EQ(SizeOf(In("large.bmp")), (base::Size{51, 31}));
  Put("FCutTime.ChBoth", "1");
  WatchFor(3);
  EXPECT_EQ(SizeOf(In("both.bmp")), (base::Size{100, 80}));
  EXPECT_EQ(SizeOf(In("narrow.bmp")), (base::Size{50, 31}));
  EXPECT_EQ(SizeOf(In("low.bmp")), (base::Size{51, 30}));
}

TEST_F(CutTimeTest, TheFastWayCutsTheSame) {
  Put("FCutTime.ChFast", "1");
  const Picture picture = Painted(100, 80, Slope);
  Make("a.bmp", picture);
  WatchFor(3);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
  EXPECT_EQ(Read(In("a.bmp")).At(3, 4), Slope(23, 14));
}

TEST_F(CutTimeTest, TheFastWayHasNoTransparency) {
  Fill("0", "0", "0", "0");
  for (const char* fast : {"0", "1"}) {
    Put("FCutTime.ChFast", fast);
    world.folder.Write("in/a.png", HalfTransparentPng());
    WatchFor(3);
    EXPECT_EQ(world.folder.Read("in/a.png")[kColourType], *fast == '1' ? kRgb : kRgbWithAlpha);
  }
}

TEST_F(CutTimeTest, TheQualityIsThatOfTheMainWindow) {
  std::vector<std::size_t> sizes;
  Put("ChJpgComp", "1");
  for (const char* quality : {"95", "40"}) {
    Put("TQuality", quality);
    Make("a.jpg", 100, 80);
    WatchFor(3);
    sizes.push_back(world.folder.Read("in/a.jpg").size());
  }
  EXPECT_GT(sizes[0], sizes[1]);
}

// Another program puts a new picture in the place of one that is being cut.
TEST_F(CutTimeTest, APictureReplacedDuringItsCutIsNotWrittenOver) {
  Make("a.bmp", 100, 80);
  const std::string other = job::BitmapBytes(Painted(90, 80, Slope));
  const std::string before = world.folder.Read("in/a.bmp");
  std::string after;
  world.faults.Before(host::testing::DiskCall::Write, 1, [&] { world.folder.Write("in/a.bmp", other); });
  WatchUntil([&] {
    const std::string now = world.folder.Read("in/a.bmp");
    if (after.empty() && now != before) after = now;
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_TRUE(after == other);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{40, 30})) << "the new one is cut once it has settled";
  EXPECT_EQ(recorder.done.size(), 1u);
}

TEST_F(CutTimeTest, ASourceReplacedWhileItsRegionsAreCutStays) {
  Put("FCutTime.ChMul", "1");
  Put("FCutTime.CmbType", "*.bmp");
  Region("0", "0", "50", "40");
  Put("FCutTime.ChSizeFilter", "1");
  Put("FCutTime.ChBoth", "1");
  Put("FCutTime.TW", "60");
  Make("a.bmp", 100, 80);
  const std::string other = job::BitmapBytes(Painted(90, 80, Slope));
  world.faults.Before(host::testing::DiskCall::Write, 1, [&] { world.folder.Write("in/a.bmp", other); });
  WatchUntil([&] { return window.LFiles.Value() == "已裁剪数：1"; });
  EXPECT_TRUE(world.folder.Read("in/a.bmp") == other);
  EXPECT_EQ(window.LNote.Value(), "a.bmp：图片在裁剪期间被改动，源文件已保留");
}

TEST_F(CutTimeTest, SeveralRegionsGoBesideTheSourceWhichLeaves) {
  Put("FCutTime.ChMul", "1");
  Region("0", "0", "50", "40");
  Region("40", "50", "0", "0");
  Put("FCutTime.CmbType", "*.png");
  Make("a.png", Painted(100, 80, Slope));
  Put("FCutTime.ChSizeFilter", "1");
  Put("FCutTime.TW", "60");
  Put("FCutTime.ChBoth", "1");
  WatchFor(4);
  EXPECT_EQ(InNames(), (std::vector<std::string>{"a_1.png", "a_2.png"}));
  EXPECT_EQ(SizeOf(In("a_1.png")), (base::Size{50, 40}));
  EXPECT_EQ(Read(In("a_2.png")).At(0, 0), Slope(50, 40));
  EXPECT_EQ(window.LFiles.Value(), "已裁剪数：1");
}

TEST_F(CutTimeTest, OutputsThatPassTheFilterAreCutAgain) {
  Put("FCutTime.ChMul", "1");
  Region("0", "0", "10", "0");
  Region("0", "10", "0", "0");
  Make("a.bmp", 100, 80);
  WatchUntil([&] { return world.folder.Exists("in/a_1_1.bmp") && world.folder.Exists("in/a_1_2.bmp"); });
  EXPECT_EQ(SizeOf(In("a_1_1.bmp")), (base::Size{80, 80}));
}

TEST_F(CutTimeTest, WithoutARegionNothingIsDoneButRemembering) {
  Put("FCutTime.ChMul", "1");
  Make("a.bmp", 100, 80);
  WatchFor(3);
  EXPECT_EQ(InNames(), (std::vector<std::string>{"a.bmp"}));
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{100, 80}));
}

TEST_F(CutTimeTest, ASourceStaysWhenARegionIsLost) {
  Put("FCutTime.ChMul", "1");
  Region("0", "0", "50", "40");
  Region("40", "50", "0", "0");
  Make("a.bmp", 100, 80);
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "a_2.bmp"});
  WatchFor(3);
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
  EXPECT_FALSE(world.folder.Exists("in/a_2.bmp"));
  EXPECT_FALSE(window.LNote.Value().empty());
}

TEST_F(CutTimeTest, ASourceStaysWhenARegionDoesNotReachTheDisk) {
  Put("FCutTime.ChMul", "1");
  Put("FCutTime.CmbType", "*.bmp");
  Region("0", "0", "50", "40");
  Region("40", "50", "0", "0");
  Make("a.bmp", 100, 80);
  (void)world.files.Flush();
  world.faults.Set({.call = host::testing::DiskCall::Sync,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "a_2.bmp"});
  WatchFor(2);
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
}

TEST_F(CutTimeTest, AFileOfARegionsNameGoesToTheTrashAndNotAway) {
  Put("FCutTime.ChMul", "1");
  Put("FCutTime.CmbType", "*.png");
  Region("0", "0", "50", "40");
  Make("a.png", Painted(100, 80, Slope));
  world.folder.Write("in/a_1.png", "something of the user's");
  WatchUntil([&] { return !world.folder.Exists("in/a.png"); });
  std::string found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(world.folder.Path())) {
    if (entry.path().filename() != "a_1.png") continue;
    if (entry.file_size() == std::string("something of the user's").size()) found = entry.path();
  }
  EXPECT_NE(found, "");
  EXPECT_NE(found, In("a_1.png"));
}

TEST_F(CutTimeTest, AHalfWrittenFileIsWaitedFor) {
  Make("a.jpg", 100, 80);
  const std::string whole = world.folder.Read("in/a.jpg");
  world.folder.Write("in/a.jpg", whole.substr(0, whole.size() * 2 / 3));
  int turns = 0;
  WatchUntil([&] {
    if (++turns == 300) {
      EXPECT_EQ(world.folder.Read("in/a.jpg").size(), whole.size() * 2 / 3);
      EXPECT_TRUE(recorder.done.empty());
      world.folder.Write("in/a.jpg", whole);
    }
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_EQ(SizeOf(In("a.jpg")), (base::Size{50, 30}));
}

TEST_F(CutTimeTest, WhatIsNoPictureStaysAsItIs) {
  world.folder.Write("in/a.jpg", "no picture");
  world.folder.Write("in/empty.jpg", "");
  WatchFor(3);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), "no picture");
  EXPECT_EQ(world.folder.Read("in/empty.jpg"), "");
  EXPECT_TRUE(recorder.done.empty());
}

TEST_F(CutTimeTest, ARegionThatLeavesNothingLeavesTheSource) {
  Fill("0", "60", "60", "0");
  Make("a.bmp", 100, 80);
  WatchFor(3);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{100, 80}));
  ASSERT_EQ(recorder.done.size(), 1u);
  EXPECT_EQ(recorder.done[0].result, job::Result::None);
}

TEST_F(CutTimeTest, AFolderThatDisappearsIsReportedAndWaitedFor) {
  int turns = 0;
  WatchUntil([&] {
    ++turns;
    if (turns == 60) std::filesystem::rename(world.folder.Path("in"), world.folder.Path("away"));
    if (turns == 200) {
      EXPECT_EQ(window.LNote.Value(), "工作目录打不开，恢复之后自动继续：" + world.folder.Path("in"));
      std::filesystem::rename(world.folder.Path("away"), world.folder.Path("in"));
      Make("a.bmp", 100, 80);
    }
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_EQ(window.LNote.Value(), "");
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
}

TEST_F(CutTimeTest, ADeletedFolderIsWaitedFor) {
  int turns = 0;
  WatchUntil([&] {
    ++turns;
    if (turns == 60) std::filesystem::remove_all(world.folder.Path("in"));
    if (turns == 200) {
      EXPECT_NE(window.LNote.Value(), "");
      Make("a.bmp", 100, 80);
    }
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
}

TEST_F(CutTimeTest, AMissingFolderIsReportedAndNothingStarts) {
  Put("FCutTime.LDir", "/nowhere");
  Click("FCutTime.CmdDo");
  EXPECT_EQ(Boxes("工作目录不存在：/nowhere"), 1);
  EXPECT_TRUE(form.Visible());
  window.LDir.SetText("");
  Click("FCutTime.CmdDo");
  EXPECT_EQ(Boxes("请先选择工作目录！"), 1);
}

TEST_F(CutTimeTest, TheFolderIsChosenInADialog) {
  world.dialogs.ChooseFolderNext(world.folder.Path("out") + "/");
  Click("FCutTime.CmdInDir");
  EXPECT_EQ(window.LDir.Value(), world.folder.Path("out"));
}

TEST_F(CutTimeTest, ADiskThatIsFullAsksAndCancelEndsTheWatch) {
  Make("a.bmp", 100, 80);
  const std::string before = world.folder.Read("in/a.bmp");
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "in/"});
  world.boxes.Answer("盘空间不足", Reply::Retry, 1);
  world.boxes.Answer("盘空间不足", Reply::Cancel);
  Click("FCutTime.CmdDo");
  EXPECT_EQ(Boxes("盘空间不足，请释放空间后重试保存！"), 2);
  EXPECT_EQ(world.folder.Read("in/a.bmp"), before);
  EXPECT_FALSE(window.Running());
  EXPECT_TRUE(Totals().stopped);
}

// What was reported as written and is lost after all counts no more.
TEST_F(CutTimeTest, ALostRegionIsReportedAndCountsNoMore) {
  Put("FCutTime.ChMul", "1");
  Put("FCutTime.CmbType", "*.bmp");
  Region("0", "0", "50", "40");
  Region("40", "50", "0", "0");
  Make("a.bmp", 100, 80);
  (void)world.files.Flush();
  world.faults.Set({.call = host::testing::DiskCall::Sync,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "a_2.bmp"});
  WatchUntil([&] { return !recorder.lost.empty(); });
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
  EXPECT_EQ(window.LFiles.Value(), "已裁剪数：0");
  EXPECT_EQ(window.LNote.Value().find("a.bmp："), 0u) << window.LNote.Value();
  EXPECT_EQ(recorder.lost[0].source, In("a.bmp"));
  EXPECT_EQ(Totals().none, 1u);
}

TEST_F(CutTimeTest, ABurstIsCutExactlyOnce) {
  constexpr int kFiles = 300;
  const std::string bytes = job::BitmapBytes(Painted(60, 60, Slope));
  for (int i = 0; i < kFiles; ++i) world.folder.Write("in/" + std::to_string(i) + ".bmp", bytes);
  WatchUntil([&] { return window.LFiles.Value() == "已裁剪数：" + std::to_string(kFiles); });
  EXPECT_EQ(recorder.done.size(), static_cast<std::size_t>(kFiles));
  for (int i = 0; i < kFiles; ++i) {
    ASSERT_EQ(SizeOf(In(std::to_string(i) + ".bmp")), (base::Size{10, 10})) << i;
  }
}

TEST_F(CutTimeTest, TheOriginalOfACutInPlaceGoesToTheTrash) {
  Make("a.bmp", 100, 80);
  const std::string original = world.folder.Read("in/a.bmp");
  WatchUntil([&] { return window.LFiles.Value() == "已裁剪数：1"; });
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
  EXPECT_TRUE(world.folder.Read("data/Trash/files/a.bmp") == original);
}

TEST_F(CutTimeTest, WithoutATrashNoOriginalIsReplaced) {
  Make("a.bmp", 100, 80);
  const std::string original = world.folder.Read("in/a.bmp");
  for (const host::testing::DiskCall call : {host::testing::DiskCall::Link, host::testing::DiskCall::RenameNew}) {
    world.faults.Set(
        {.call = call, .error = EACCES, .length = host::testing::Fault::Length::ForEver, .pathHolds = "in/a.bmp"});
  }
  WatchUntil([&] { return !recorder.done.empty(); });
  EXPECT_TRUE(world.folder.Read("in/a.bmp") == original);
  EXPECT_EQ(recorder.done.at(0).result, job::Result::None);
  EXPECT_EQ(window.LNote.Value().find("a.bmp：已有同名文件，没能移入回收站"), 0u) << window.LNote.Value();
}

TEST_F(CutTimeTest, TheWindowSaysWhatBecomesOfTheOriginals) {
  EXPECT_EQ(window.LPlace.Value(), "原地裁剪，原图移入回收站");
  Put("FCutTime.ChMul", "1");
  EXPECT_EQ(window.LPlace.Value(), "裁到原图旁边，原图移入回收站");
  Put("FCutTime.ChMul", "0");
  EXPECT_EQ(window.LPlace.Value(), "原地裁剪，原图移入回收站");
}

TEST_F(CutTimeTest, ExifIsKeptIfItIsAskedFor) {
  job::MarkingTools tools;
  program.outputTools = &tools;
  const std::string marks = "[exif " + In("a.bmp") + "]";
  for (const bool keeps : {false, true}) {
    flags.KeepExif = keeps;
    Make("a.bmp", 100, 80);
    const std::size_t done = recorder.done.size();
    WatchUntil([&] { return recorder.done.size() > done; });
    EXPECT_EQ(world.folder.Read("in/a.bmp").ends_with(marks), keeps);
    EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
  }
  tools.exifStatus = {host::Problem::Other, "没有"};
  Make("b.bmp", 100, 80);
  WatchUntil([&] { return recorder.done.back().source == In("b.bmp"); });
  EXPECT_EQ(recorder.done.back().result, job::Result::Written);
  EXPECT_EQ(window.LNote.Value(), "b.bmp：Exif没有保留：没有");
  program.outputTools = nullptr;
}

// Each process would cut every picture once more.
TEST(SharedWatch, DoesNotStart) {
  host::testing::TestHost world;
  job::Program program{world.host};
  program.shard = {0, 2, ""};
  Regions regions{program};
  const controls::EditResult pressed = regions.fCutTime.CmdDo.UserClick();
  EXPECT_FALSE(pressed.Accepted());
  EXPECT_NE(pressed.refusal.find("定时裁剪只能由一个进程做"), std::string::npos) << pressed.refusal;
}

}  // namespace
}  // namespace quillon::regions
