// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Listing a folder around the output folder: results of earlier runs are no sources.
#include "job/list/result_records.h"

#include <filesystem>

#include "host/posix/sqlite_journals.h"
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

using Names = std::vector<std::string>;

class ResultRecordsTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    program.journals = &journals;
    Put("CmbOutType", "0");
    Make("a.png");
    Make("b/c.png");
    WriteTo("in/out");
  }
  void WriteTo(const std::string& folder) {
    ASSERT_TRUE(world.files.MakeFolders(world.folder.Path(folder)));
    Put("LOutDir", world.folder.Path(folder));
  }
  // Lists the folder anew and returns the paths of the rows below it.
  Names Listed(const std::string& folder = "in") {
    program.files.Clear();
    recorder.filteredOut.clear();
    recorder.noted.clear();
    List({world.folder.Path(folder)});
    Names names;
    const std::size_t above = world.folder.Path(folder).size() + 1;
    for (std::size_t row = 0; row < program.files.RowCount(); ++row) {
      names.push_back(program.files.Row(row).Path().substr(above));
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  Names Journals() const { return world.folder.Exists("journals") ? world.folder.Names("journals") : Names(); }

  host::posix::SqliteJournals journals{world.folder.Path("journals")};
};

TEST_F(ResultRecordsTest, TheSameJobFindsTheSameSources) {
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png"}));
  EXPECT_TRUE(recorder.noted.empty());
  Cut();
  ASSERT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png"}));
  EXPECT_EQ(recorder.filteredOut.size(), 2u);
  EXPECT_EQ(recorder.filteredOut[0].second, "是以前写到输出目录的结果，没有加入列表");
  ASSERT_EQ(recorder.noted.size(), 1u);
  EXPECT_EQ(recorder.noted[0], std::pair(In("out"), std::string("输出目录中以前写出的结果：2 个，未加入")));
  EXPECT_TRUE(form.LStatus.Value().ends_with("  输出目录中以前写出的结果：2 个，未加入")) << form.LStatus.Value();
  Cut();
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Listed().size(), 2u) << "those that the second run has written are known too";
}

TEST_F(ResultRecordsTest, OtherFilesInTheOutputFolderAreListed) {
  Make("out/mine.png");
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png", "out/mine.png"}));
  program.files.Clear();
  List({In("a.png")});
  Cut();
  world.folder.Write("in/out/a.jpg", world.folder.Read("in/out/a.jpg") + "changed");
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png", "out/a.jpg", "out/mine.png"}));
}

TEST_F(ResultRecordsTest, AResultIsListedIfItIsNamed) {
  Listed();
  Cut();
  program.files.Clear();
  List({In("out/a.jpg"), In("b")});
  EXPECT_EQ(program.files.RowCount(), 2u);
}

TEST_F(ResultRecordsTest, ResultsAreSourcesOfAnotherOutputFolder) {
  Listed();
  Cut();
  WriteTo("in/second");
  EXPECT_EQ(Listed("in/out"), (Names{"a.jpg", "c.jpg"}));
}

TEST_F(ResultRecordsTest, TheOutputFolderMayBeTheListedOne) {
  WriteTo("in");
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png"}));
  EXPECT_EQ(recorder.noted.at(0),
            std::pair(world.folder.Path("in"), std::string("列出的文件夹就是输出目录，结果和原图在一起")));
  Cut();
  EXPECT_TRUE(world.folder.Exists("in/c.jpg"));
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png"}));
}

TEST_F(ResultRecordsTest, AreFoundThroughALink) {
  std::filesystem::create_directory_symlink(world.folder.Path("in"), world.folder.Path("link"));
  Listed();
  Cut();
  EXPECT_EQ(Listed("link"), (Names{"a.png", "b/c.png"}));
}

TEST_F(ResultRecordsTest, OutlastTheProgram) {
  Listed();
  Cut();
  Program second{world.host};
  Recorder seen;
  second.observer = &seen;
  second.journals = &journals;
  second.form1.LOutDir.SetText(In("out"));
  second.Intake().Admit({world.folder.Path("in")});
  EXPECT_EQ(second.files.RowCount(), 2u);
  EXPECT_EQ(seen.filteredOut.size(), 2u);
}

TEST_F(ResultRecordsTest, NothingIsRecordedOfAnOutputFolderElsewhere) {
  WriteTo("out");
  Listed();
  Cut();
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Journals(), Names{});
}

TEST_F(ResultRecordsTest, NothingIsRecordedOfNamedFiles) {
  Cut({In("a.png")});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Journals(), Names{});
}

TEST_F(ResultRecordsTest, ARunThatIsStoppedRecordsWhatItHasWritten) {
  Listed();
  recorder.onFileDone = [this](const FileResult&) { flags.StopRequested = true; };
  Cut();
  recorder.onFileDone = {};
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Listed(), (Names{"a.png", "b/c.png"}));
}

}  // namespace
}  // namespace quillon::job
