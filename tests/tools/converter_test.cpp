// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/converter.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "host/testing/test_host.h"
#include "tools/tools_fixture.h"

namespace quillon::tools {
namespace {

using host::testing::RecordingShell;

std::string Lines(std::initializer_list<const char*> lines) {
  std::string text;
  for (const char* line : lines) text += std::string(line) + "\n";
  return text;
}

class ConverterTest : public ::testing::Test {
 protected:
  ConverterTest() {
    world.folder.Write("app/PicCutConverter.dll", "the twin");
    world.shell.OnStart([this](const RecordingShell::Started&) { order = world.folder.Read("app/Param.txt"); });
  }
  std::string Path(const std::string& name) const { return world.folder.Path(name); }
  // The helper writes the target.
  void Makes(const std::string& target) {
    world.shell.OnStart([this, target](const RecordingShell::Started&) { world.folder.Write(target, TinyPicture()); });
  }

  host::testing::TestHost world;
  bool stop = false;
  Tools tools{world.host, {.stopped = [this] { return stop; }}};
  Converter converter{tools, Path("system")};
  std::string order;
};

TEST_F(ConverterTest, ZoomHugeWritesItsOrderLineByLine) {
  converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 6000, 2000, 98, 36000, 12000, true);
  EXPECT_EQ(order, Lines({"OnlyZoom=True",
                          "OnlyConverter=False",
                          "NeedZoomS=False",
                          "NeedZoomB=False",
                          "/in/a.jpg",
                          "",
                          "",
                          "",
                          "False",
                          "False",
                          "0",
                          "0",
                          "0",
                          "0",
                          "False",
                          "0",
                          "0",
                          "60",
                          "6000",
                          "2000",
                          "98",
                          "/out/b.jpg",
                          "NeedConverter=False",
                          "36000",
                          "12000",
                          "0",
                          "0",
                          "False",
                          "CutPic=False",
                          "0",
                          "0",
                          "PicRotate=False",
                          "90",
                          "0",
                          "0",
                          "0",
                          "0",
                          "SpreadSy=False",
                          "0",
                          "0",
                          "ToGray=True",
                          "30",
                          "CoupleArray=False",
                          "DrawTxtMode=False",
                          "BackSY=False",
                          ""}));
}

TEST_F(ConverterTest, ConvertHugeWritesItsOrderLineByLine) {
  converter.ConvertHuge("/in/a b.tif", "/out/b.jpg", 120, 3400, 3120, 9000, 98, false, 32, 32, true, false, true);
  EXPECT_EQ(order, Lines({"OnlyZoom=False",
                          "OnlyConverter=False",
                          "NeedZoomS=False",
                          "NeedZoomB=False",
                          "/in/a b.tif",
                          "",
                          "",
                          "",
                          "True",
                          "False",
                          "0",
                          "0",
                          "0",
                          "0",
                          "True",
                          "0",
                          "0",
                          "60",
                          "3120",
                          "9000",
                          "98",
                          "/out/b.jpg",
                          "NeedConverter=False",
                          "32",
                          "32",
                          "0",
                          "0",
                          "False",
                          "CutPic=True",
                          "120",
                          "3400",
                          "PicRotate=False",
                          "90",
                          "0",
                          "0",
                          "0",
                          "0",
                          "SpreadSy=False",
                          "0",
                          "0",
                          "ToGray=False",
                          "30",
                          "CoupleArray=False",
                          "DrawTxtMode=False",
                          "BackSY=False",
                          ""}));
}

// With CoupleArray the items follow, one a line; every field comes back.
TEST_F(ConverterTest, TheFullOrderComesBack) {
  ConverterOrder full;
  full.OnlyConverter = full.NeedZoomS = full.NeedZoomB = full.NeedConverter = full.PicRotate = true;
  full.SpreadSy = full.CoupleArray = full.DrawTxtMode = full.BackSY = full.flag15 = full.flag28 = true;
  full.source = "/图片 1.jpg";
  full.paths6 = {"a", "b", "c"};
  full.flags9 = {true, true};
  full.numbers11 = {1, -2, 3, 4};
  full.numbers16 = {5, 6, 7};
  full.size = {8, 9};
  full.quality = 10;
  full.target = "/t";
  full.least = {11, 12};
  full.numbers26 = {13, 14};
  full.cutX = -15;
  full.cutY = 16;
  full.angle = 270;
  full.numbers34 = {17, 18, 19, 20};
  full.numbers39 = {21, 22};
  full.number42 = 23;
  full.text46 = "-FontSZ#0#0#0#LW#FIT#0#0#1#0#0#2#0#TRANS#";
  full.items = {"first", "", "third"};
  converter.RunConverter(full);
  EXPECT_TRUE(order.ends_with("BackSY=True\n-FontSZ#0#0#0#LW#FIT#0#0#1#0#0#2#0#TRANS#\nfirst\n\nthird\n"));
  EXPECT_EQ(ParseOrder(order), full);
  // Line ends of the other kind are read too; without CoupleArray there are no items.
  std::string other;
  for (const char c : order) other += c == '\n' ? std::string("\r\n") : std::string(1, c);
  EXPECT_EQ(ParseOrder(other), full);
  full.CoupleArray = false;
  converter.RunConverter(full);
  EXPECT_TRUE(order.ends_with("#TRANS#\n"));
}

TEST_F(ConverterTest, TheCoupleOrderHasAFileOfItsOwn) {
  world.shell.OnStart([this](const RecordingShell::Started&) {
    order = world.folder.Read("app/CoupleParam.txt");
    EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
  });
  const CoupleOrder couple{"/in/a.jpg", "/out/b.jpg", {1, 2}, 3, true, 4, {5, 6}, {"x", "y"}};
  converter.RunConverter(couple);
  EXPECT_EQ(order, Lines({"/in/a.jpg", "/out/b.jpg", "1", "2", "3", "True", "#4#5#6", "x", "y"}));
  EXPECT_FALSE(world.folder.Exists("app/CoupleParam.txt"));
  EXPECT_EQ(ParseCoupleOrder(order), couple);
  // Seven lines are the least.
  for (std::size_t size = 0; size < order.size() - 4; ++size) EXPECT_FALSE(ParseCoupleOrder(order.substr(0, size)));
  for (const char* line : {"#4#5", "#4#5#6#7", "4#5#6", "#4#5#x", "#4#5#6 ", ""}) {
    std::string odd = order;
    odd.replace(odd.find("#4#5#6"), 6, line);
    EXPECT_FALSE(ParseCoupleOrder(odd)) << line;
  }
}

TEST_F(ConverterTest, PartsAreNamedOneByOne) {
  EXPECT_EQ(PartOf("#1#-2#30#40"), (base::Rect{1, -2, 30, 40}));
  for (const char* none :
       {"", "#1#2#3", "#1#2#3#4#5", "1#2#3#4", "#1#2#0#4", "#1#2#3#-4", "#a#2#3#4", "#99999999999#2#3#4"}) {
    EXPECT_FALSE(PartOf(none)) << none;
  }
  CoupleOrder couple{.source = "/in/a.jpg", .target = "/out/b.c.jpg"};
  EXPECT_EQ(TargetsOf(couple), std::vector<std::string>{"/out/b.c.jpg"});
  couple.items = {"#0#0#1#1", "#1#0#1#1"};
  EXPECT_EQ(TargetsOf(couple), (std::vector<std::string>{"/out/b.c_01.jpg", "/out/b.c_02.jpg"}));
  ConverterOrder full{.target = "/out/b.tif", .items = {"#0#0#1#1"}};
  EXPECT_EQ(TargetsOf(full), std::vector<std::string>{"/out/b.tif"});
  full.CoupleArray = true;
  EXPECT_EQ(TargetsOf(full), std::vector<std::string>{"/out/b_01.tif"});
}

TEST_F(ConverterTest, AllPartsHaveToBeMade) {
  CoupleOrder couple{.source = "/in/a.jpg", .target = Path("out/b.jpg"), .items = {"#0#0#1#1", "#1#0#1#1"}};
  Makes("out/b_02.jpg");
  EXPECT_FALSE(converter.RunConverter(couple));
  world.shell.OnStart([this](const RecordingShell::Started&) {
    world.folder.Write("out/b_01.jpg", TinyPicture());
    world.folder.Write("out/b_02.jpg", TinyPicture() + "later");
  });
  EXPECT_TRUE(converter.RunConverter(couple));
}

TEST_F(ConverterTest, AStopEndsTheHelperAndTheWait) {
  world.folder.Write("out/b.jpg", "older");
  world.processes.Add({1, "PicCutConverter.exe", world.host.programFolder, true});
  world.pump.OnTurn(3, [this] { stop = true; });
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_EQ(world.processes.Ended(), std::vector<int>{1});
  EXPECT_EQ(world.pump.Turns(), 3);
  EXPECT_EQ(world.folder.Read("out/b.jpg"), "older");
  EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
}

// A click that the wait lets in must not write over the order of the helper that runs.
TEST_F(ConverterTest, AnOrderInsideAnotherIsNotCarriedOut) {
  Makes("out/b.jpg");
  world.processes.Add({1, "PicCutConverter.exe", world.host.programFolder, true}, 3);
  bool inner = true;
  world.pump.OnTurn(2, [&] { inner = converter.ZoomHuge("/in/c.jpg", Path("out/c.jpg"), 6, 2, 98, 32, 32, false); });
  EXPECT_TRUE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_FALSE(inner);
  EXPECT_EQ(world.shell.Starts().size(), 1u);
}

TEST_F(ConverterTest, TornOrdersAreNotRead) {
  converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false);
  const std::string whole = order;
  ASSERT_TRUE(ParseOrder(whole));
  for (std::size_t size = 0; size < whole.size(); ++size) EXPECT_FALSE(ParseOrder(whole.substr(0, size))) << size;
  EXPECT_FALSE(ParseOrder(whole + "more\n"));
  std::string odd = whole;
  odd.replace(odd.find("True"), 4, "true");
  EXPECT_FALSE(ParseOrder(odd));
  odd = whole;
  odd.replace(odd.find("\n60\n"), 4, "\n6x\n");
  EXPECT_FALSE(ParseOrder(odd));
}

TEST_F(ConverterTest, AFileNameThatNoOrderCanCarryIsRefused) {
  EXPECT_FALSE(converter.ZoomHuge("/in/a\nb.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false));
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", "/out/b\r.jpg", 60, 20, 98, 32, 32, false));
  EXPECT_TRUE(world.shell.Starts().empty());
}

TEST_F(ConverterTest, StartsTheProgramWithoutParametersAndWaitsForItsEnd) {
  Makes("out/b.jpg");
  world.processes.Add({1, "PicCutConverter.exe", "/elsewhere", true}, 3);
  bool busy = false;
  world.pump.EveryTurn([&] { busy = converter.Busy; });
  EXPECT_TRUE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  ASSERT_EQ(world.shell.Starts().size(), 1u);
  EXPECT_EQ(world.shell.Starts()[0].program, "PicCutConverter.exe");
  EXPECT_TRUE(world.shell.Starts()[0].arguments.empty());
  EXPECT_EQ(world.shell.Starts()[0].folder, world.host.programFolder);
  EXPECT_EQ(world.processes.Scans(), 4);
  EXPECT_TRUE(busy);
  EXPECT_FALSE(converter.Busy);
  EXPECT_FALSE(converter.ConverterFailed);
  EXPECT_EQ(world.folder.Read("app/PicCutConverter.exe"), "the twin");
  EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
}

TEST_F(ConverterTest, AnOrderOfACrashedRunIsWrittenOver) {
  world.folder.Write("app/Param.txt", "torn");
  world.folder.Write("app/CoupleParam.txt", "torn");
  converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false);
  EXPECT_TRUE(order.starts_with("OnlyZoom=True\n"));
  EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
  EXPECT_FALSE(world.folder.Exists("app/CoupleParam.txt"));
}

// Missing in the folder, twin and all, but present in the system's.
TEST_F(ConverterTest, TheSystemsProgramIsUsedAtTheSecondTry) {
  (void)world.host.files.RemoveOwn(Path("app/PicCutConverter.dll"));
  for (const char* name : {"system/PicCutConverter.dll", "system/PicCutConverter.exe"}) {
    world.folder.Write(name, name);
    (void)world.host.files.RemoveOwn(Path("app/PicCutConverter.exe"));
    const std::size_t before = world.shell.Starts().size();
    world.shell.SetResult("PicCutConverter", host::kStartMissing);
    converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false);
    EXPECT_EQ(world.folder.Read("app/PicCutConverter.exe"), name);
    EXPECT_EQ(world.shell.Starts().size(), before + 3);
  }
}

TEST_F(ConverterTest, AfterThreeStartsItFails) {
  world.shell.SetResult("PicCutConverter", host::kStartDenied);
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false));
  EXPECT_EQ(world.shell.Starts().size(), 3u);
  EXPECT_TRUE(converter.ConverterFailed);
  EXPECT_EQ(converter.Retries, 1);
  EXPECT_EQ(world.processes.Scans(), 0);
  EXPECT_FALSE(world.folder.Exists("app/Param.txt"));
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false));
  EXPECT_EQ(converter.Retries, 2);
}

// The first starts fail, the others succeed.
class LateShell final : public host::Shell {
 public:
  int failures = 0;
  int starts = 0;

  int Start(const std::string&, const std::vector<std::string>&, const std::string&) override {
    return starts++ < failures ? host::kStartMissing : host::kStarted;
  }
  void OpenFolder(const std::string&) override {}
  void Reveal(const std::string&) override {}
  void OpenBrowser(const std::string&) override {}
};

TEST_F(ConverterTest, EveryTryMaySucceedAndClearsTheFlag) {
  for (const int failures : {0, 1, 2, 3}) {
    LateShell shell;
    shell.failures = failures;
    host::Host host{world.boxes,
                    world.dialogs,
                    world.pump,
                    world.clock,
                    world.files,
                    world.settings,
                    world.processes,
                    shell,
                    world.screen,
                    world.instance,
                    world.host.programFolder};
    Tools lateTools(host);
    Converter late(lateTools, Path("system"));
    late.ConverterFailed = true;
    late.ZoomHuge("/in/a.jpg", "/out/b.jpg", 60, 20, 98, 32, 32, false);
    EXPECT_EQ(shell.starts, std::min(failures + 1, 3));
    EXPECT_EQ(late.ConverterFailed, failures == 3);
    EXPECT_EQ(late.Retries, failures == 3 ? 1 : 0);
  }
}

// An older file must not be mistaken for the result of a helper that died.
TEST_F(ConverterTest, AStaleTargetIsNotMistakenForTheNewOne) {
  world.folder.Write("app/Tmp.jpg", "older");
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", Path("app/Tmp.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_FALSE(world.folder.Exists("app/Tmp.jpg"));
  world.folder.Write("out/b.jpg", "older");
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_FALSE(world.folder.Exists("out/b.jpg"));
  bool inTrash = false;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(world.folder.Path())) {
    inTrash = inTrash || entry.path().filename() == "b.jpg";
  }
  EXPECT_TRUE(inTrash);
  Makes("out/b.jpg");
  EXPECT_TRUE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_EQ(world.folder.Read("out/b.jpg"), TinyPicture());
}

TEST_F(ConverterTest, GarbageIsNoPicture) {
  world.shell.OnStart([this](const RecordingShell::Started&) { world.folder.Write("out/b.jpg", "garbage"); });
  EXPECT_FALSE(converter.ZoomHuge("/in/a.jpg", Path("out/b.jpg"), 60, 20, 98, 32, 32, false));
  EXPECT_FALSE(world.folder.Exists("out/b.jpg"));
}

// If a helper dies or does not start, the source that it was to replace stays.
TEST_F(ConverterTest, ASourceThatWasToBeReplacedStays) {
  const std::string file = world.folder.Write("in/a.jpg", "source");
  const std::string part = world.folder.Write("in/b_01.jpg", "source");
  world.shell.OnStart([](const RecordingShell::Started&) {});
  for (const bool starts : {true, false}) {
    if (!starts) world.shell.SetResult("PicCutConverter", host::kStartMissing);
    EXPECT_FALSE(converter.ZoomHuge(file, file, 60, 20, 98, 32, 32, false));
    EXPECT_FALSE(converter.ConvertHuge(file, file, 0, 0, 60, 20, 98, false));
    EXPECT_FALSE(
        converter.RunConverter(CoupleOrder{.source = part, .target = Path("in/b.jpg"), .items = {"#0#0#1#1"}}));
    EXPECT_EQ(world.folder.Read("in/a.jpg"), "source");
    EXPECT_EQ(world.folder.Read("in/b_01.jpg"), "source");
    EXPECT_EQ(converter.ConverterFailed, !starts);
  }
}

}  // namespace
}  // namespace quillon::tools
