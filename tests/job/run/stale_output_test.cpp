// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What earlier runs left in the output folder: results that would pass for those of this run, and drafts.
#include <filesystem>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class StaleOutputsTest : public CutTest {
 protected:
  void Break(const std::string& name) const {
    const std::string whole = world.folder.Read("in/" + name);
    world.folder.Write("in/" + name, whole.substr(0, whole.size() / 2));
  }
  // Cuts a file that breaks off between its listing and the run, over an older result.
  void CutBroken(const std::string& name) {
    const std::string path = Make(name);
    world.folder.Write("out/a.jpg", "older");
    List({path});
    Break(name);
    Cut();
    EXPECT_EQ(Totals().none, 1u) << name;
  }
  bool TrashUsed() const { return world.folder.Exists("data/Trash"); }
  void ExpectInTrash() {
    EXPECT_TRUE(OutNames().empty());
    EXPECT_EQ(world.folder.Read("data/Trash/files/a.jpg"), "older");
  }
};

TEST_F(StaleOutputsTest, GoToTheTrashWhenThePlainCutFails) {
  CutBroken("a.png");
  ExpectInTrash();
}

TEST_F(StaleOutputsTest, GoToTheTrashWhenAGifFails) {
  CutBroken("a.gif");
  ExpectInTrash();
}

TEST_F(StaleOutputsTest, GoToTheTrashWhenTheEffectsFail) {
  Option("ChInvert", "1");
  CutBroken("a.png");
  ExpectInTrash();
}

TEST_F(StaleOutputsTest, GoToTheTrashWhenTheRotationFails) {
  Option("CmbRotate", "1");
  CutBroken("a.png");
  ExpectInTrash();
}

TEST_F(StaleOutputsTest, GoToTheTrashWhenTheCutBeforeABorderFails) {
  Option("ChAddBoard", "1");
  CutBroken("a.png");
  ExpectInTrash();
}

TEST_F(StaleOutputsTest, GoToTheTrashWhenASaveFails) {
  for (const char* effects : {"0", "1"}) {
    SCOPED_TRACE(effects);
    Option("ChInvert", effects);
    program.files.Clear();
    List({Make("a.png")});
    world.folder.Write("out/a.jpg", "older");
    std::filesystem::remove_all(world.folder.Path("data/Trash"));
    world.faults.Set({.call = host::testing::DiskCall::Write,
                      .error = ENOSPC,
                      .length = host::testing::Fault::Length::ForEver,
                      .pathHolds = "out/.a"});
    world.boxes.Answer("盘空间不足", host::Reply::Cancel);
    Cut();
    EXPECT_GE(world.faults.Fired(), 1);
    world.faults.Clear();
    ExpectInTrash();
  }
}

// Another worker of the same run, say, was quicker.
TEST_F(StaleOutputsTest, StayIfTheyAppearedDuringTheSave) {
  bool appeared = false;
  world.faults.Before(host::testing::DiskCall::RenameNew, 1, [&] {
    appeared = true;
    world.folder.Write("out/a.jpg", "somebody else's");
  });
  Cut({Make("a.png")});
  EXPECT_TRUE(appeared);
  EXPECT_EQ(Why(1), "保存期间出现了同名文件");
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "somebody else's");
}

TEST_F(StaleOutputsTest, StayIfTheSourceIsGone) {
  for (const char* effects : {"0", "1"}) {
    Option("ChInvert", effects);
    program.files.Clear();
    const std::string path = Make("a.png");
    List({path});
    world.folder.Write("out/a.jpg", "older");
    std::filesystem::remove(path);
    Cut();
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_EQ(Why(1).find("裁剪框"), std::string::npos) << Why(1);
    EXPECT_EQ(world.folder.Read("out/a.jpg"), "older");
  }
}

TEST_F(StaleOutputsTest, StayIfTheParametersLeaveNothing) {
  Margins(60, 0, 60, 0);
  for (const char* effects : {"0", "1"}) {
    Option("ChInvert", effects);
    program.files.Clear();
    world.folder.Write("out/a.jpg", "older");
    Cut({Make("a.png")});
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_EQ(world.folder.Read("out/a.jpg"), "older");
  }
}

// The second of one name fails: what the first one gave is a result of this run.
TEST_F(StaleOutputsTest, OfThisRunStay) {
  for (const char* effects : {"0", "1"}) {
    SCOPED_TRACE(effects);
    Option("ChInvert", effects);
    program.files.Clear();
    List({Make("1/a.png", 20, 10), Make("2/a.png", 30, 15)});
    Break("2/a.png");
    Cut();
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_TRUE(recorder.lost.empty());
    EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{20, 10}));
  }
}

// Two sources have one output name. The first fails and the second replaces the stale output, which can be restored.
TEST_F(StaleOutputsTest, ReplacedLaterInTheRunAreInTheTrash) {
  for (const char* effects : {"0", "1"}) {
    SCOPED_TRACE(effects);
    Option("ChInvert", effects);
    program.files.Clear();
    std::filesystem::remove_all(world.folder.Path("data/Trash"));
    world.folder.Write("out/a.jpg", "older");
    List({Make("1/a.png", 20, 10), Make("2/a.png", 30, 15)});
    Break("1/a.png");
    Cut();
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_TRUE(recorder.lost.empty());
    EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{30, 15}));
    EXPECT_EQ(world.folder.Read("data/Trash/files/a.jpg"), "older");
  }
}

TEST_F(StaleOutputsTest, GoAtTheMomentOfTheFailure) {
  world.folder.Write("out/a.jpg", "older");
  List({Make("a.png"), Make("b.png")});
  Break("a.png");
  recorder.onFileDone = [&](const FileResult&) { EXPECT_FALSE(world.folder.Exists("out/a.jpg")); };
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"b.jpg"});
  EXPECT_EQ(world.folder.Read("data/Trash/files/a.jpg"), "older");
  EXPECT_TRUE(recorder.staleOutputsLeft.empty());
}

TEST_F(StaleOutputsTest, ThatSomebodyElseReplacedMeanwhileStay) {
  world.folder.Write("out/a.jpg", "older");
  List({Make("a.png"), Make("b.png")});
  Break("a.png");
  recorder.onFileDone = [&](const FileResult&) { world.folder.Write("out/a.jpg", "another program's"); };
  Cut();
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "another program's");
}

// Another listed picture that lies under the name of an output.
TEST_F(StaleOutputsTest, ThatAreSourcesStay) {
  const std::string source = world.folder.Write("out/a.jpg", "");
  std::filesystem::copy_file(Make("other.jpg"), source, std::filesystem::copy_options::overwrite_existing);
  const std::string before = world.folder.Read("out/a.jpg");
  Option("CmbRotate", "1");
  List({Make("a.png"), source});
  Break("a.png");
  recorder.onFileDone = [&](const FileResult&) { flags.StopRequested = true; };
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), before);
  EXPECT_FALSE(TrashUsed());
}

// Listed twice, and broken off after the first time: its result is one of this run.
TEST_F(StaleOutputsTest, OfTheSameSourceInThisRunStay) {
  Option("CmbRotate", "1");
  const std::string path = Make("a.png", 30, 20);
  List({path, path});
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 1) Break("a.png");
  };
  Cut();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_TRUE(recorder.lost.empty());
  EXPECT_FALSE(TrashUsed());
  EXPECT_TRUE(world.folder.Exists("out/a.jpg"));
}

// It may be an output of another shard.
TEST_F(StaleOutputsTest, StayInAShardAndAreReported) {
  for (const std::uint64_t index : {0, 1}) {
    program.files.Clear();
    program.shard = {index, 2, ""};
    world.folder.Write("out/a.jpg", "older");
    List({Make("a.png")});
    if (program.files.RowCount() == 0) continue;
    Break("a.png");
    Cut();
  }
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(recorder.staleOutputsLeft, std::vector<std::string>{Out("a.jpg")});
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "older");
  EXPECT_FALSE(TrashUsed());
}

TEST_F(StaleOutputsTest, AnOverwrittenSourceIsNone) {
  Put("ChOver", "1");
  const std::string path = Make("a.png");
  List({path});
  Break("a.png");
  const std::string before = world.folder.Read("in/a.png");
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(world.folder.Read("in/a.png"), before);
  EXPECT_FALSE(TrashUsed());
}

TEST_F(StaleOutputsTest, WorkFilesNeverGoToTheTrash) {
  Put("ChOver", "1");
  WriteApp("Tmp2.png", "older");
  CutBroken("a.png");
  EXPECT_FALSE(world.folder.Exists("data/Trash/files/Tmp2.png"));
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "older");
}

constexpr const char* kDraft = ".a.jpg.quillon-ab3de9";

TEST_F(StaleOutputsTest, DraftsAreSweptFromTheOutputFolder) {
  const std::string path = Make("a.bmp");
  world.folder.Write(std::string("out/") + kDraft, "torn");
  world.folder.Write("out/mine.jpg", "mine");
  Cut({path});
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "mine.jpg"}));
}

TEST_F(StaleOutputsTest, DraftsAreSweptFromKeptFolders) {
  const std::string path = Make("deep/a.bmp");
  const std::string folder = "out" + world.folder.Path("in/deep");
  world.folder.Write(folder + "/" + kDraft, "torn");
  Put("ChKeepDir", "1");
  Cut({path});
  EXPECT_EQ(world.folder.Names(folder), std::vector<std::string>{"a.jpg"});
}

TEST_F(StaleOutputsTest, DraftsAreSweptFromTheFolderOfAnOverwrittenSource) {
  const std::string path = Make("a.bmp");
  world.folder.Write(std::string("in/") + kDraft, "torn");
  Put("ChOver", "1");
  Cut({path});
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.bmp"});
}

TEST_F(StaleOutputsTest, AFolderIsSweptOnce) {
  std::vector<std::string> paths;
  for (int i = 0; i < 5; ++i) paths.push_back(Make(std::to_string(i) + ".bmp", 10, 10));
  List(paths);
  world.faults.Clear();
  Cut();
  EXPECT_EQ(world.faults.Count(host::testing::DiskCall::List), 1);
}

}  // namespace
}  // namespace quillon::job
