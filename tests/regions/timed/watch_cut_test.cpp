// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What is prefetched for a watched folder: always the same bytes as without.
#include "regions/timed/watch_cut.h"

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

#include "host/testing/fakes.h"
#include "job/list/dead_disk.h"
#include "job/run/run_ledger.h"
#include "job/several_pages.h"
#include "job/turned_picture.h"
#include "regions/timed/watch_fixture.h"
#include "regions/transparent_png.h"

namespace quillon::regions {
namespace {

using job::Painted;
using job::Slope;

class WatchPlanTest : public CutTimeTest, public ::testing::WithParamInterface<std::tuple<bool, bool>> {
 protected:
  void SetUp() override {
    CutTimeTest::SetUp();
    const auto [fast, several] = GetParam();
    Put("FCutTime.ChFast", fast ? "1" : "0");
    if (!several) return;
    Put("FCutTime.ChMul", "1");
    Region("0", "0", "50", "40");
    Region("40", "50", "0", "0");
    // What a round has made stays as it is in the next.
    Put("FCutTime.ChSizeFilter", "1");
    Put("FCutTime.ChBoth", "1");
    Put("FCutTime.TW", "60");
  }
  // All files that a watch of new pictures has left, by name.
  std::map<std::string, std::string> WatchAll() {
    std::filesystem::remove_all(In(""));
    int width = 100;
    for (const char* name : {"a.jpg", "b.png", "c.gif", "d.tif", "e.bmp"}) Make(name, Painted(width++, 80, Slope));
    world.folder.Write("in/f.png", HalfTransparentPng());
    WatchFor(5);
    std::map<std::string, std::string> files;
    for (const std::string& name : InNames()) files[name] = world.folder.Read("in/" + name);
    return files;
  }
};

TEST_P(WatchPlanTest, AForeseenWatchWritesTheSameBytes) {
  program.recovering = true;  // nothing is prefetched
  const auto plain = WatchAll();
  EXPECT_GE(plain.size(), 6u);
  program.recovering = false;
  const auto prefetched = WatchAll();
  ASSERT_EQ(plain.size(), prefetched.size());
  for (const auto& [name, bytes] : plain) EXPECT_TRUE(bytes == prefetched.at(name)) << name;
}

// Without this, the test above would compare one way with itself.
TEST_P(WatchPlanTest, ThePlanIsWhatTheCutAsksFor) {
  const auto [fast, several] = GetParam();
  std::vector<regions::Margins> marked{{10, 10, 10, 10}};
  if (several) marked.push_back({0, 0, 50, 40});
  WatchCut cut(program, {.fast = fast, .several = several, .regions = marked, .unit = Unit::Pixels});
  job::RunLedger ledger(program.context, 0);
  cut.Begin(ledger);
  for (const char* name : {"a.jpg", "b.png", "c.gif", "d.tif", "e.bmp"}) {
    SCOPED_TRACE(name);
    const std::string path = Make(name, Painted(100, 80, Slope));
    const auto plan = cut.Foresee(path, {100, 80});
    ASSERT_TRUE(plan.has_value());
    for (const bool afterCut : {false, true}) {
      program.images.PlanWork({*plan});
      job::Result result = job::Result::Written;
      if (afterCut) {
        cut.Cut({0, path, 1, StampOf(world.files, path)}, [&](const auto& one) { result = one.result; });
      }
      EXPECT_EQ(result, job::Result::Written);
      std::optional<imaging::Services::PrefetchedFiles> ready;
      EXPECT_TRUE(program.images.PopPrefetched(*plan, ready));
      EXPECT_EQ(ready.has_value(), !afterCut);
    }
  }
  cut.EndPrefetch();
}

INSTANTIATE_TEST_SUITE_P(All, WatchPlanTest, ::testing::Combine(::testing::Bool(), ::testing::Bool()));

// The content of a file decides, not its name: these are photographs that are named like bitmaps.
TEST_F(CutTimeTest, WatchedBitmapsOfTurnedPhotographsAreUpright) {
  Fill("2", "4", "6", "8");
  Make("stored.jpg", Painted(60, 40, job::Quarters));
  const std::string jpeg = world.folder.Read("in/stored.jpg");
  std::filesystem::remove(In("stored.jpg"));
  for (int orientation = 1; orientation <= 8; ++orientation) {
    world.folder.Write("in/" + std::to_string(orientation) + ".bmp", job::WithOrientation(jpeg, orientation));
  }
  WatchUntil([&] { return window.LFiles.Value() == "已裁剪数：8"; });
  const job::Picture stored = Read(In("1.bmp"));
  EXPECT_EQ(stored.width, 50);
  EXPECT_EQ(stored.height, 30);
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const std::string name = std::to_string(orientation) + ".bmp";
    EXPECT_EQ(job::Difference(Read(In(name)), job::Upright(stored, orientation)), 0) << name;
  }
}

TEST_F(CutTimeTest, AFileOfSeveralPagesStaysInTheFolder) {
  const std::string tiff = world.folder.Write("in/a.tif", job::TwoPages(100, 80));
  const std::string before = world.folder.Read("in/a.tif");
  for (const char* several : {"0", "1"}) {
    Put("FCutTime.ChMul", several);
    if (*several == '1') Region("0", "0", "50", "40");
    WatchFor(5);
    ASSERT_FALSE(recorder.done.empty());
    EXPECT_EQ(recorder.done.back().result, job::Result::None);
    EXPECT_EQ(recorder.done.back().why, "源文件有 2 页，普通裁剪只取第一页，未覆盖；请用模式 5");
    EXPECT_EQ(InNames(), std::vector<std::string>{"a.tif"});
    EXPECT_EQ(world.folder.Read("in/a.tif"), before);
  }
}

TEST_F(CutTimeTest, APictureThatIsReplacedInPlaceKeepsItsTime) {
  const std::string path = Make("a.bmp", 100, 80);
  std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000));
  const auto before = std::filesystem::last_write_time(path);
  WatchUntil([&] { return window.LFiles.Value() == "已裁剪数：1"; });
  EXPECT_EQ(SizeOf(path), (base::Size{50, 30}));
  EXPECT_EQ(std::filesystem::last_write_time(path), before);
}

// Cuts the picture in place, as a watch does that has just seen it.
job::FileResult CutRegionInPlace(job::Program& program, const std::string& path, const Margins& region) {
  job::RunLedger ledger(program.context, 0);
  WatchCut cut(program, {.regions = {region}});
  cut.Begin(ledger);
  job::FileResult result;
  cut.Cut({0, path, 1, host::StampOf(program.host.files, path)}, [&](job::FileResult one) { result = std::move(one); });
  return result;
}

TEST_F(CutTimeTest, ARegionWhollyOutsideThePictureReplacesNothing) {
  const std::string path = Make("a.bmp", 100, 80);
  const std::string before = world.folder.Read("in/a.bmp");
  const job::FileResult result = CutRegionInPlace(program, path, {.left = 150, .right = -100});
  EXPECT_EQ(result.result, job::Result::None);
  EXPECT_EQ(result.why, "区域整个在图片之外（左 150，上 0，图片 100x80）");
  EXPECT_TRUE(world.folder.Read("in/a.bmp") == before);
  EXPECT_FALSE(world.folder.Exists("data/Trash"));
}

TEST_F(CutTimeTest, ARegionThatReachesOutOfThePictureIsWhiteThere) {
  const std::string path = Make("a.bmp", 100, 80);
  EXPECT_EQ(CutRegionInPlace(program, path, {.left = 50, .right = -20}).result, job::Result::Written);
  EXPECT_EQ(SizeOf(path), (base::Size{70, 80}));
}

TEST_F(CutTimeTest, OfSeveralRegionsOneWhollyOutsideKeepsTheOriginal) {
  Make("a.bmp", 100, 80);
  Put("FCutTime.ChMul", "1");
  world.dialogs.ChooseFiles({world.folder.Write("a.clt", "R\r\n0\t50\t0\t0\r\n0\t150\t-100\t0\r\n")});
  Click("FCutTime.CmdInput");
  WatchUntil([&] { return !recorder.done.empty(); });
  EXPECT_EQ(recorder.done[0].result, job::Result::None);
  EXPECT_EQ(recorder.done[0].why, "区域整个在图片之外（左 150，上 0，图片 100x80）");
  EXPECT_TRUE(world.folder.Exists("in/a.bmp"));
  EXPECT_FALSE(world.folder.Exists("in/a_2.bmp"));
}

class SilentWatchTest : public CutTimeTest {};

TEST_F(SilentWatchTest, ADiskThatIsSilentForAWhileLosesNoPicture) {
  Make("a.bmp", 100, 80);
  job::DeadDisk dead;
  dead.HangAt(world.faults, host::testing::DiskCall::Stat, "in/a.bmp");
  world.pump.EveryTurn([&] {
    if (host::testing::OtherThreadsWait()) world.clock.Advance(1);
  });
  const double start = world.clock.Seconds();
  bool answers = false;
  std::set<pid_t> hung;
  WatchUntil([&] {
    if (!answers && dead.Hangs() && world.clock.Seconds() > start + 100) {
      EXPECT_TRUE(recorder.done.empty());
      hung = dead.LetGo();
      answers = true;
    }
    return window.LFiles.Value() == "已裁剪数：1";
  });
  EXPECT_TRUE(answers);
  // The thread that hung last was not abandoned and serves the program on.
  EXPECT_TRUE(program.diskThread.Run([&](const auto&) {
    hung.erase(gettid());
    return host::Status::Ok();
  }));
  job::DeadDisk::AwaitEnd(hung);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{50, 30}));
}

}  // namespace
}  // namespace quillon::regions
