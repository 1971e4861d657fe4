// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/omitted_folders.h"

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class OmittedTest : public ProgramTest {
 protected:
  OmittedFolders omitted{program.context};
  std::string Folder(const std::string& name) {
    const std::string path = world.folder.Path(name);
    EXPECT_TRUE(world.files.MakeFolders(path));
    return path;
  }
};

TEST_F(OmittedTest, LinesThatAreStillFoldersAreRead) {
  const std::string here = Folder("here");
  const std::string there = Folder("with blank");
  const std::string file = world.folder.Write("file", "x");
  WriteApp("OmitSubfolds.dat", here + "\r\n/gone/away\r\n" + file + "\r\n\r\n" + there);
  omitted.Read();
  EXPECT_EQ(flags.OmittedFolders, here + "\r\n" + there + "\r\n");
  EXPECT_FALSE(omitted.Add(here));
  EXPECT_FALSE(omitted.Add(there));
  EXPECT_TRUE(omitted.Add(file));
}

TEST_F(OmittedTest, NoFileOmitsNothing) {
  omitted.Read();
  EXPECT_EQ(flags.OmittedFolders, "");
  EXPECT_TRUE(omitted.Add("/a"));
}

// A folder is a whole line, never the end of a longer one.
TEST_F(OmittedTest, PartsOfLinesDoNotCount) {
  EXPECT_TRUE(omitted.Add("/x/a/b"));
  EXPECT_TRUE(omitted.Add("/a/b"));
  EXPECT_FALSE(omitted.Add("/a/b"));
}

TEST_F(OmittedTest, WrittenBackAndEmptied) {
  omitted.Add("/a");
  omitted.Add("/b c");
  EXPECT_TRUE(omitted.WriteBack());
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), "/a\r\n/b c\r\n");
  EXPECT_FALSE(AppHas("OmitSubfolds.txt"));
  EXPECT_EQ(flags.OmittedFolders, "");
  EXPECT_TRUE(omitted.Add("/a"));
}

TEST_F(OmittedTest, AFailedWriteKeepsTheOldList) {
  WriteApp("OmitSubfolds.dat", "/old\r\n");
  omitted.Add("/a");
  world.faults.Set({.call = host::testing::DiskCall::Rename, .error = EIO});
  EXPECT_FALSE(omitted.WriteBack());
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), "/old\r\n");
}

// Runs of a list and of a folder report the failure; their pictures are cut all the same.
class OmittedRunTest : public CutTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(OmittedRunTest, AListThatIsNotWrittenBackIsReported) {
  const std::string path = Make("x/a.png", 20, 10);
  Option("ChOmitFolds", "1");
  Put("ChBig", GetParam());
  Put("ChSubFold", "1");
  Put("LInDir", world.folder.Path("in"));
  List({path});
  WriteApp("OmitSubfolds.dat", "/old\r\n");
  world.faults.Set({.call = host::testing::DiskCall::Rename,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "OmitSubfolds.dat"});
  Cut();
  EXPECT_GE(world.faults.Fired(), 1);
  ASSERT_FALSE(world.boxes.All().empty());
  const host::Box& shown = world.boxes.All().back().box;
  EXPECT_TRUE(shown.text.starts_with("已处理文件夹的记录没有保存：")) << shown.text;
  EXPECT_GT(shown.text.size(), std::string("已处理文件夹的记录没有保存：").size()) << "the reason";
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Totals().none + Totals().skipped, 0u);
  EXPECT_FALSE(Totals().stopped);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), "/old\r\n");
  EXPECT_FALSE(flags.Busy);
  // The folder is done again once its record can be kept.
  world.faults.Clear();
  world.boxes.Forget();
  Cut();
  EXPECT_EQ(world.boxes.Count("已处理文件夹的记录没有保存"), 0);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), In("x") + "\r\n");
}

INSTANTIATE_TEST_SUITE_P(Runs, OmittedRunTest, ::testing::Values("0", "1"),
                         [](const auto& large) { return large.param[0] == '1' ? "OfAFolder" : "OfAList"; });

}  // namespace
}  // namespace quillon::job
