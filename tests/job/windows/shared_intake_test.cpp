// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What is listed if several processes share the pictures of a folder.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "job/cut_fixture.h"
#include "job/windows/file_intake.h"

namespace quillon::job {
namespace {

class SharedIntakeTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    for (int i = 0; i < 8; ++i) Make(std::to_string(i) + ".bmp", 4, 4);
    Make("out/result.bmp", 4, 4);
  }
  // What both of two shares list.
  std::vector<std::string> ListShares(const std::vector<std::string>& paths) {
    std::vector<std::string> all;
    for (const std::uint64_t index : {0, 1}) {
      program.shard = {index, 2, ""};
      program.files.Clear();
      List(paths);
      for (const std::string& name : ListedNames()) all.push_back(name);
    }
    std::sort(all.begin(), all.end());
    return all;
  }
};

TEST_F(SharedIntakeTest, ResultsOfOthersAreNotListed) {
  Put("LOutDir", In("out"));
  EXPECT_EQ(ListShares({world.folder.Path("in")}).size(), 8u);
  EXPECT_EQ(ListShares({In("out/result.bmp")}), std::vector<std::string>{"result.bmp"}) << "it was named";
  EXPECT_TRUE(recorder.notListed.empty());
  program.shard = {};
  program.files.Clear();
  List({world.folder.Path("in")});
  EXPECT_EQ(program.files.RowCount(), 9u) << "one process lists before it cuts";
  Put("ChOver", "1");
  EXPECT_EQ(ListShares({world.folder.Path("in")}).size(), 9u) << "nothing goes to the output folder";
}

TEST_F(SharedIntakeTest, AFolderThatCannotBeReachedIsReportedByEachShare) {
  const std::string circle = world.folder.Path("circle");
  std::filesystem::create_symlink(circle, circle);
  EXPECT_TRUE(ListShares({circle}).empty());
  ASSERT_EQ(recorder.notListed.size(), 2u) << "each has a part of it";
  EXPECT_EQ(recorder.notListed[0].first, circle);
  EXPECT_NE(recorder.notListed[0].second, "找不到这个文件或文件夹");
}

TEST_F(SharedIntakeTest, AMissingFolderIsReportedOnce) {
  EXPECT_TRUE(ListShares({world.folder.Path("nothing")}).empty());
  EXPECT_EQ(recorder.notListed.size(), 1u);
}

TEST_F(SharedIntakeTest, AFolderThatReceivesTheResultsIsRefusedOnce) {
  Put("LOutDir", world.folder.Path("in"));
  EXPECT_TRUE(ListShares({world.folder.Path("in")}).empty());
  ASSERT_EQ(recorder.notListed.size(), 1u);
  EXPECT_EQ(recorder.notListed[0], (std::pair<std::string, std::string>(world.folder.Path("in"), kSharedOutput)));
  EXPECT_GT(program.leftToOthers, 0u);
  EXPECT_EQ(ListShares({In("1.bmp"), In("2.bmp")}).size(), 2u) << "no folder is walked";
  Put("LInDir", world.folder.Path("in"));
  program.files.Clear();
  recorder.notListed.clear();
  for (const std::uint64_t index : {0, 1}) {
    program.shard = {index, 2, ""};
    Click("MenuReadFiles");
  }
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(recorder.notListed.size(), 1u);
}

TEST_F(SharedIntakeTest, OnlyNamedFilesMayGetAnotherNameBesideThem) {
  Put("ChOver", "1");
  Option("CmbExtCase", "1");
  const std::string path = In("1.bmp");
  program.shard = {0, 2, ""};
  if (!program.Intake().IsOurs(path)) program.shard.index = 1;
  Cut({path});
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_TRUE(world.folder.Exists("in/1.BMP"));
  program.files.Clear();
  Cut({world.folder.Path("in")});
  EXPECT_GT(Totals().planned, 0u);
  EXPECT_EQ(Totals().none + Totals().written, Totals().planned);
  for (const FileResult& file : recorder.done) {
    const bool named = file.source == path || file.source.ends_with(".BMP");
    EXPECT_EQ(file.result == Result::Written, named) << file.source << file.why;
  }
}

TEST_F(SharedIntakeTest, FilesOfAFolderGoTogetherIfOneOfThemIsHandled) {
  Option("ChOmitFolds", "1");
  for (const std::uint64_t index : {0, 1, 2, 3}) {
    program.shard = {index, 4, world.folder.Path()};
    std::size_t ours = 0;
    for (int i = 0; i < 8; ++i) ours += program.Intake().IsOurs(In(std::to_string(i) + ".bmp"));
    EXPECT_TRUE(ours == 0 || ours == 8) << ours;
    program.files.Clear();
    List({world.folder.Path("in")});
    const std::size_t rows = program.files.RowCount();
    EXPECT_TRUE(rows == 0 || rows == 1 || rows == 8 || rows == 9) << rows;
  }
}

}  // namespace
}  // namespace quillon::job
