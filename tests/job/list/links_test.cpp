// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Links and second names of files, which must not make a run replace pictures elsewhere, or one picture twice.
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class LinksTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Margins(50, 0, 0, 0);
    Make("a.png", 40, 30);
    Make("../elsewhere/b.png", 40, 30);
    Put("ChSubFold", "1");
    Put("LInDir", world.folder.Path("in"));
  }
  void LinkFolder() { fs::create_directory_symlink(world.folder.Path("elsewhere"), In("away")); }
  std::string Elsewhere() const { return world.folder.Path("elsewhere/b.png"); }
  base::Size SizeOfA() { return SizeOf(In("a.png")); }
  void CutFolder(bool large) {
    recorder.done.clear();
    recorder.filteredOut.clear();
    Put("ChBig", large ? "1" : "0");
    if (!large) List({world.folder.Path("in")});
    Cut();
    Put("ChBig", "0");
  }

  const base::Size whole_{40, 30};
  const base::Size cut_{20, 30};
};

TEST_F(LinksTest, APictureInALinkedFolderIsNotReplaced) {
  LinkFolder();
  Put("ChOver", "1");
  for (const bool large : {false, true}) {
    SCOPED_TRACE(large);
    Make("a.png", 40, 30);
    CutFolder(large);
    EXPECT_EQ(SizeOfA(), cut_);
    EXPECT_EQ(SizeOf(Elsewhere()), whole_);
    ASSERT_EQ(recorder.filteredOut.size(), 1u);
    EXPECT_EQ(
        recorder.filteredOut[0],
        std::pair(In("away"),
                  std::string("是指向文件夹的链接：覆盖原图时不进入链接，以免改动别处的图片；这样的文件夹都已跳过")));
    program.Intake().Clear();
  }
}

TEST_F(LinksTest, SeveralLinkedFoldersAreReportedOnce) {
  LinkFolder();
  fs::create_directories(In("deep"));
  fs::create_directory_symlink(world.folder.Path("elsewhere"), In("deep/away"));
  Put("ChOver", "1");
  CutFolder(false);
  EXPECT_EQ(recorder.filteredOut.size(), 1u);
}

TEST_F(LinksTest, IntoAnOutputFolderLinkedFoldersAreFollowed) {
  LinkFolder();
  for (const bool large : {false, true}) {
    SCOPED_TRACE(large);
    CutFolder(large);
    EXPECT_EQ(OutNames(), (Names{"a.jpg", "b.jpg"}));
    EXPECT_TRUE(recorder.filteredOut.empty());
    fs::remove(Out("a.jpg"));
    fs::remove(Out("b.jpg"));
    program.Intake().Clear();
  }
}

// The list may be older than the choice to overwrite.
TEST_F(LinksTest, RowsInALinkedFolderAreNotReplacedEither) {
  LinkFolder();
  List({world.folder.Path("in")});
  ASSERT_EQ(program.files.RowCount(), 2u);
  Put("ChOver", "1");
  Cut();
  EXPECT_EQ(SizeOfA(), cut_);
  EXPECT_EQ(SizeOf(Elsewhere()), whole_);
  EXPECT_EQ(Why(2), "在指向文件夹的链接里：覆盖原图时不处理，以免改动别处的图片");
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
}

// A folder that a link leads to and that is there by itself comes by its own name.
TEST_F(LinksTest, LinkedFoldersComeLast) {
  fs::create_directories(In("1"));
  fs::create_directory_symlink(In("z"), In("1/link"));
  Make("z/c.png");
  CutFolder(false);
  Names listed;
  for (std::size_t row = 0; row < program.files.RowCount(); ++row) listed.push_back(program.files.Row(row).Path());
  EXPECT_EQ(listed, (Names{In("a.png"), In("z/c.png")}));
}

// A folder that was named itself may be a link.
TEST_F(LinksTest, ANamedLinkIsFollowed) {
  LinkFolder();
  Put("ChOver", "1");
  Cut({In("away")});
  EXPECT_EQ(SizeOf(Elsewhere()), cut_);
}

TEST_F(LinksTest, AFileOfTwoNamesIsReplacedOnce) {
  fs::create_symlink(In("a.png"), world.folder.Path("link.png"));
  fs::create_hard_link(In("a.png"), world.folder.Path("twin.png"));
  Put("ChOver", "1");
  for (const char* name : {"link.png", "twin.png"}) {
    SCOPED_TRACE(name);
    Make("a.png", 40, 30);
    const std::string second = world.folder.Path(name);
    fs::remove(second);
    if (second.ends_with("link.png")) fs::create_symlink(In("a.png"), second);
    if (second.ends_with("twin.png")) fs::create_hard_link(In("a.png"), second);
    Cut({In("a.png"), second});
    EXPECT_EQ(SizeOfA(), cut_);
    EXPECT_EQ(Why(2), "和“" + In("a.png") + "”是同一个文件，已经处理过，不再裁一次");
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().skipped, 1u);
    program.Intake().Clear();
  }
}

// Nothing was cut by the first name.
TEST_F(LinksTest, ASecondNameIsCutIfTheFirstOneFailed) {
  const std::string twin = world.folder.Path("twin.png");
  fs::create_hard_link(In("a.png"), twin);
  Put("ChOver", "1");
  List({In("a.png"), twin});
  fs::remove(In("a.png"));
  Cut();
  EXPECT_EQ(Totals().none, 1u) << Why(1);
  EXPECT_EQ(Totals().written, 1u) << Why(2);
  EXPECT_EQ(SizeOf(twin), cut_);
}

// A picture that took a listed name later may have the number of a file that was replaced.
TEST_F(LinksTest, ANewFileOfAUsedNumberIsCut) {
  const std::string twin = world.folder.Path("twin.png");
  fs::create_hard_link(In("a.png"), twin);
  Put("ChOver", "1");
  List({In("a.png"), twin});
  recorder.onFileDone = [&](const FileResult&) {
    if (recorder.done.size() != 1) return;
    // Written in place, so that it keeps the number.
    Make("new.png", 60, 30);
    world.folder.Write("twin.png", world.folder.Read("in/new.png"));
  };
  Cut();
  EXPECT_EQ(Totals().written, 2u) << Why(2);
  EXPECT_EQ(SizeOf(twin), (base::Size{30, 30}));
}

TEST_F(LinksTest, AFileOfTwoNamesHasTwoOutputs) {
  fs::create_symlink(In("a.png"), world.folder.Path("link.png"));
  fs::create_hard_link(In("a.png"), world.folder.Path("twin.png"));
  Cut({In("a.png"), world.folder.Path("link.png"), world.folder.Path("twin.png")});
  EXPECT_EQ(OutNames(), (Names{"a.jpg", "link.jpg", "twin.jpg"}));
}

// Neither the rows nor the memory of one process hold all files then.
TEST_F(LinksTest, ALinkToAFileOfTheFolderIsLeftToItsName) {
  fs::create_symlink("a.png", In("link.png"));
  fs::create_directories(In("deep"));
  fs::create_symlink("../a.png", In("deep/link.png"));
  Put("ChOver", "1");
  CutFolder(true);
  EXPECT_EQ(SizeOfA(), cut_);
  EXPECT_EQ(recorder.done.size(), 1u);
  ExpectCounted(1);
  ASSERT_EQ(recorder.filteredOut.size(), 2u);
  EXPECT_EQ(recorder.filteredOut[0].second, "是链接，和“" + In("a.png") + "”是同一个文件，只裁一次");
}

TEST_F(LinksTest, ALinkToAFileElsewhereIsWrittenThrough) {
  fs::create_symlink(Elsewhere(), In("link.png"));
  Put("ChOver", "1");
  CutFolder(true);
  EXPECT_EQ(SizeOf(Elsewhere()), cut_);
  EXPECT_TRUE(fs::is_symlink(In("link.png")));
}

TEST_F(LinksTest, AFileElsewhereIsReplacedOnceByTwoLinks) {
  for (const std::uint64_t shards : {1, 2}) {
    SCOPED_TRACE(shards);
    Make("../elsewhere/b.png", 40, 30);
    Names passed;
    for (const char* name : {"link.png", "other.png", "third.png"}) {
      fs::remove(In(name));
      fs::create_symlink(Elsewhere(), In(name));
    }
    Put("ChOver", "1");
    for (std::uint64_t index = 0; index < shards; ++index) {
      program.shard = {index, shards, ""};
      CutFolder(true);
      for (const auto& [path, why] : recorder.filteredOut) passed.push_back(path);
    }
    EXPECT_EQ(SizeOf(Elsewhere()), cut_);
    EXPECT_EQ(passed.size(), 2u);
  }
}

// Two processes handle a list of one picture by two names.
TEST_F(LinksTest, OneShardOwnsBothNamesOfAFile) {
  const Names names{In("a.png"), world.folder.Path("link.png")};
  fs::create_symlink(names[0], names[1]);
  Put("ChOver", "1");
  std::vector<std::size_t> rows;
  for (std::uint64_t index = 0; index < 8; ++index) {
    program.shard = {index, 8, world.folder.Path("in")};
    List(names);
    if (program.files.RowCount() > 0) rows.push_back(program.files.RowCount());
    program.Intake().Clear();
  }
  EXPECT_EQ(rows, std::vector<std::size_t>{2});
}

// Each of several processes meets the link.
TEST_F(LinksTest, ALinkedFolderIsReportedByOneShard) {
  LinkFolder();
  Put("ChOver", "1");
  std::size_t reported = 0;
  for (std::uint64_t index = 0; index < 3; ++index) {
    program.shard = {index, 3, ""};
    CutFolder(true);
    reported += recorder.filteredOut.size();
  }
  EXPECT_EQ(reported, 1u);
  EXPECT_TRUE(recorder.notListed.empty());
}

TEST_F(LinksTest, ALinkIntoTheOutputFolderIsNotFollowed) {
  Put("LOutDir", In("out"));
  Make("out/deep/c.png", 40, 30);
  fs::create_directory_symlink(In("out/deep"), In("link"));
  CutFolder(true);
  EXPECT_EQ(recorder.done.size(), 1u);
}

// What the walk does not reach by its own name.
TEST_F(LinksTest, ALinkToAFileThatIsNotWalkedIsFollowed) {
  Make("deep/c.png", 40, 30);
  fs::create_symlink("deep/c.png", In("link.png"));
  Put("ChSubFold", "0");
  Put("ChOver", "1");
  CutFolder(true);
  EXPECT_EQ(SizeOf(In("deep/c.png")), cut_);
  EXPECT_TRUE(recorder.filteredOut.empty());
}

}  // namespace
}  // namespace quillon::job
