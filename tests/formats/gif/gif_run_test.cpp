// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Runs of cut mode 1 that meet a full disk, are stopped, or are killed and resumed.
#include <filesystem>

#include "formats/gif/gif_fixture.h"
#include "host/posix/sqlite_journals.h"

namespace quillon::formats {
namespace {

using base::Size;
using host::Reply;
using host::testing::DiskCall;
using host::testing::Fault;

constexpr const char* kFull = "盘空间不足，请释放空间后重试保存！";

class GifRunTest : public GifTest {
 protected:
  void SetUp() override {
    GifTest::SetUp();
    PixelMargins(10, 20, 30, 40);
  }
};

TEST_F(GifRunTest, AFullDiskOfTheHelperIsAskedAbout) {
  int starts = 0;
  world.shell.OnStart([&](const auto& start) {
    Answer("");
    if (++starts <= 2) return Answer(tools::kFullDisk);
    Obey(start.arguments.at(0));
  });
  world.boxes.Answer(kFull, Reply::Retry, 2);
  Run({Film("a.gif")});
  EXPECT_EQ(world.boxes.Count(kFull), 2);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{60, 20}));
}

TEST_F(GifRunTest, AUserWhoGivesUpOnAFullDiskStopsTheRun) {
  world.shell.OnStart([&](const auto&) { Answer(tools::kFullDisk); });
  world.boxes.Answer(kFull, Reply::Cancel);
  Put("ChOver", "1");
  const std::string film = Film("a.gif");
  const std::string before = world.folder.Read("in/a.gif");
  Run({film, Film("b.gif")});
  EXPECT_EQ(world.boxes.Count(kFull), 1);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(Totals().written, 0u) << Whys();
  EXPECT_TRUE(world.folder.Read("in/a.gif") == before);
}

// With and without ChOver.
class GifFullDisk : public GifRunTest, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    GifRunTest::SetUp();
    Put("ChOver", GetParam() ? "1" : "0");
    film_ = Film("a.gif");
    before_ = world.folder.Read("in/a.gif");
    List({film_});
  }
  void FillDiskOfResult(Fault::Length length) {
    const std::string folder = GetParam() ? world.folder.Path("in") : outFolder;
    world.faults.Set({.call = DiskCall::Write, .error = ENOSPC, .length = length, .pathHolds = folder});
  }

  std::string film_;
  std::string before_;
};

TEST_P(GifFullDisk, IsAskedAboutUntilTheUserGivesUp) {
  FillDiskOfResult(Fault::Length::ForEver);
  world.boxes.Answer(kFull, Reply::Retry, 1);
  world.boxes.Answer(kFull, Reply::Cancel);
  Click("MenuGifCut");
  EXPECT_EQ(world.boxes.Count(kFull), 2);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_TRUE(world.folder.Read("in/a.gif") == before_);
  EXPECT_TRUE(OutNames().empty());
}

TEST_P(GifFullDisk, IsTriedAgain) {
  FillDiskOfResult(Fault::Length::Once);
  world.boxes.Answer(kFull, Reply::Retry);
  Click("MenuGifCut");
  EXPECT_EQ(world.boxes.Count(kFull), 1);
  EXPECT_EQ(SizeOf(GetParam() ? film_ : Out("a.gif")), (Size{60, 20})) << Whys();
}

INSTANTIATE_TEST_SUITE_P(Over, GifFullDisk, ::testing::Bool());

TEST_F(GifRunTest, AStopEndsTheHelper) {
  Put("ChOver", "1");
  const std::string film = Film("a.gif");
  const std::string before = world.folder.Read("in/a.gif");
  world.shell.OnStart([&](const auto& start) {
    Obey(start.arguments.at(0));
    world.processes.Add({.id = 7, .name = "CutMedia.exe", .folder = world.host.programFolder, .own = true});
  });
  world.pump.EveryTurn([&] {
    if (world.processes.Ended().empty() && !world.processes.Running().empty()) flags.StopRequested = true;
  });
  Run({film, Film("b.gif")});
  EXPECT_EQ(world.processes.Ended(), std::vector<int>{7});
  EXPECT_EQ(Totals().written, 0u) << Whys();
  EXPECT_TRUE(Totals().stopped);
  EXPECT_TRUE(world.folder.Read("in/a.gif") == before);
}

// A picture that was cut twice would fail, since it has no 10 pixels on the left and 30 on the right any more.
TEST_F(GifRunTest, AKilledRunOverSourcesIsContinued) {
  constexpr int kFilms = 5;
  const std::string journal = world.folder.Path("journals");
  host::posix::SqliteJournals journals(journal);
  program.journals = &journals;
  for (int i = 0; i < kFilms; ++i) Film(std::to_string(i) + ".gif");
  Put("LInDir", world.folder.Path("in"));
  Put("ChBig", "1");
  Put("ChOver", "1");
  recorder.onFileDone = [&](const job::FileResult&) {
    if (recorder.done.size() != 3) return;
    std::filesystem::copy(journal, world.folder.Path("copy"));
    flags.StopRequested = true;
  };
  Click("MenuGifCut");
  EXPECT_EQ(Totals().written, 3u) << Whys();
  // This is what a kill leaves: the journal between two checkpoints.
  std::filesystem::remove_all(journal);
  std::filesystem::rename(world.folder.Path("copy"), journal);
  recorder.done.clear();
  recorder.onFileDone = {};
  world.boxes.Answer("上次的这项任务没有做完", Reply::Yes);
  Click("MenuGifCut");
  EXPECT_EQ(world.boxes.Count("上次的这项任务没有做完"), 1);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().none, 0u);
  for (int i = 0; i < kFilms; ++i) {
    EXPECT_EQ(SizeOf(In(std::to_string(i) + ".gif")), (Size{60, 20})) << i;
    EXPECT_EQ(FramesOf(In(std::to_string(i) + ".gif")), 3) << i;
  }
}

}  // namespace
}  // namespace quillon::formats
