// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The large-capacity run: what differs from a run over the list.
#include <filesystem>

#include "job/collaborator_doubles.h"
#include "job/psd_bytes.h"
#include "job/turned_picture.h"

namespace quillon::job {
namespace {

using host::Reply;

class LargeRunTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    ASSERT_TRUE(world.files.MakeFolders(world.folder.Path("in")));
    Put("ChBig", "1");
    Put("ChSubFold", "1");
    Put("LInDir", world.folder.Path("in"));
  }
  // The files handled so far, as they lie below the input folder.
  std::vector<std::string> Handled() const {
    std::vector<std::string> names;
    for (const FileResult& file : recorder.done) names.push_back(file.source.substr(In("").size()));
    return names;
  }
};

TEST_F(LargeRunTest, AnEmptyFolderEndsAtOnceWithTheListEmptied) {
  const std::string listed = world.folder.Write("elsewhere.bmp", BitmapBytes(Painted(5, 5, Slope)));
  List({listed});
  ASSERT_EQ(program.files.RowCount(), 1u);
  Cut();
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(form.LStatus.Value(), "");
  EXPECT_TRUE(world.boxes.All().empty());
  EXPECT_TRUE(recorder.done.empty());
  EXPECT_EQ(Totals().planned, 0u);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_FALSE(flags.Busy);
}

TEST_F(LargeRunTest, HandsTheFilesOfTheFolderToTheCut) {
  Margins(50, 0, 0, 0);
  Make("a.jpg", 40, 30);
  Make("deep/b.png", 60, 20);
  world.folder.Write("in/notes.txt", "x");
  Cut();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "b.jpg"}));
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{20, 30}));
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{30, 20}));
  EXPECT_EQ(Handled(), (std::vector<std::string>{"a.jpg", "deep/b.png"}));
  EXPECT_EQ(recorder.started, std::vector<std::size_t>{0});
  EXPECT_EQ(recorder.done[0].row, 0u);
  EXPECT_EQ(Totals().planned, 2u);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(program.Setting("LInDir"), world.folder.Path("in"));
}

TEST_F(LargeRunTest, ABitmapOfATurnedPhotographIsUpright) {
  Margins(20, 5, 0, 10);
  form.CmbOutType.SetText("bmp");
  Make("stored.jpg", Painted(60, 40, Quarters));
  world.folder.Write("in/turned.jpg", WithOrientation(world.folder.Read("in/stored.jpg"), 6));
  Cut();
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Difference(Read(Out("turned.bmp")), Upright(Read(Out("stored.bmp")), 6)), 0);
}

TEST_F(LargeRunTest, SubfoldersOnlyWhenAskedFor) {
  Make("a.jpg");
  Make("deep/b.jpg");
  Put("ChSubFold", "0");
  Cut();
  EXPECT_EQ(Handled(), std::vector<std::string>{"a.jpg"});
}

TEST_F(LargeRunTest, TheRecursionIsAsDeepAsTheTree) {
  std::string name;
  for (int i = 0; i < 120; ++i) name += "d/";
  Make(name + "a.bmp", 5, 5);
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
}

TEST_F(LargeRunTest, ReportsItsCountAndLeavesTheWindowUsable) {
  for (int i = 0; i < 3; ++i) Make(std::to_string(i) + ".bmp", 10, 10);
  std::vector<std::string> titles;
  recorder.onFileDone = [&](const FileResult&) {
    titles.push_back(form.Title());
    EXPECT_TRUE(Enabled("Frame1"));
    EXPECT_TRUE(Enabled("MenuStop"));
    EXPECT_TRUE(flags.Busy);
    EXPECT_EQ(form.MSF.Selected(), 0u);
  };
  Cut();
  EXPECT_EQ(titles, (std::vector<std::string>{"  已处理...1Quillon", "  已处理...2Quillon", "  已处理...3Quillon"}));
  EXPECT_EQ(form.Title(), "Quillon");
  EXPECT_FALSE(Enabled("MenuStop"));
  EXPECT_TRUE(world.boxes.All().empty()) << "neither failures nor the output folder are asked about";
}

TEST_F(LargeRunTest, AMissingInputFolderIsAskedFor) {
  Put("LInDir", "/nowhere");
  Cut();
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.text, "输入目录不存在：/nowhere");
  EXPECT_EQ(world.boxes.All()[0].box.type, 16);
  EXPECT_EQ(world.dialogs.All().size(), 1u);
  EXPECT_TRUE(recorder.started.empty());
  Make("a.bmp");
  world.dialogs.ChooseFolderNext(world.folder.Path("in"));
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
}

TEST_F(LargeRunTest, AMissingOutputFolderIsAskedFor) {
  Make("a.bmp");
  Put("LOutDir", "/nowhere");
  Cut();
  EXPECT_EQ(world.boxes.Count("输出目录不存在：/nowhere"), 1);
  EXPECT_TRUE(recorder.started.empty());
}

TEST_F(LargeRunTest, StopEndsAfterTheFileAndSkipsTheOtherFolders) {
  for (const char* name : {"1.bmp", "2.bmp", "x/3.bmp", "y/4.bmp"}) Make(name, 10, 10);
  world.boxes.Answer("终止当前操作？", Reply::Ok);
  recorder.onFileDone = [&](const FileResult&) {
    if (recorder.done.size() == 2) Click("MenuStop");
  };
  Cut();
  EXPECT_EQ(recorder.done.size(), 2u);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().planned, 2u);
  EXPECT_TRUE(Totals().stopped);
  recorder.onFileDone = {};
  recorder.done.clear();
  Cut();
  EXPECT_EQ(recorder.done.size(), 4u) << "the next run begins anew";
  EXPECT_FALSE(Totals().stopped);
}

TEST_F(LargeRunTest, APictureWithoutASizeEndsTheRun) {
  Make("1.bmp", 10, 10);
  world.folder.Write("in/x/2.jpg", "no picture");
  Make("x/y/3.bmp", 10, 10);
  Cut();
  EXPECT_EQ(Handled(), (std::vector<std::string>{"1.bmp", "x/2.jpg"}));
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.text, "本机异常，获取图片的尺寸数据为0，请以管理员权限重新运行安装包覆盖安装！");
  EXPECT_EQ(recorder.done[1].result, Result::None);
  EXPECT_FALSE(recorder.done[1].why.empty());
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(LargeRunTest, FrameOnlyIsReadForEachFile) {
  Margins(50, 0, 0, 0);
  Option("ChAddBoard", "1");
  for (const char* name : {"1.bmp", "x/2.bmp"}) Make(name, 40, 30);
  recorder.onFileDone = [&](const FileResult&) { options.ChFrmOnly.Set(true); };
  Cut();
  EXPECT_EQ(SizeOf(Out("1.jpg")), (base::Size{20, 30}));
  EXPECT_EQ(SizeOf(Out("2.jpg")), (base::Size{40, 30}));
}

TEST_F(LargeRunTest, TheBackupWorkerIsSwitchedOff) {
  Make("a.bmp", 10, 10);
  form.ChBack.Set(true);
  Cut();
  EXPECT_FALSE(form.ChBack.On());
}

// In the folders that the walk reads, and in that of the outputs.
TEST_F(LargeRunTest, DraftsOfAKilledRunAreSwept) {
  Make("x/a.bmp", 40, 30);
  for (const char* folder : {"in/", "in/x/", "out/"}) {
    world.folder.Write(std::string(folder) + ".a.jpg.quillon-ab3de9", "half a picture");
  }
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"x"});
  EXPECT_EQ(world.folder.Names("in/x"), std::vector<std::string>{"a.bmp"});
}

// What may have killed an earlier process must be the file under way.
TEST_F(LargeRunTest, ARecoveringRunReportsAFileBeforeItTouchesIt) {
  for (int i = 0; i < 5; ++i) Make(std::to_string(i) + ".jpg", 40, 30);
  program.recovering = true;
  recorder.onFileDone = [&](const FileResult& file) { EXPECT_EQ(recorder.begun.back(), file.source); };
  Cut();
  EXPECT_EQ(recorder.begun.size(), 5u);
  recorder.begun.clear();
  Put("ChBig", "0");
  List({In("0.jpg"), In("1.jpg")});
  EXPECT_EQ(recorder.begun, (std::vector<std::string>{In("0.jpg"), In("1.jpg"), ""}));
}

TEST_F(LargeRunTest, FoldersDoneAreReadBeforeAndWrittenAfter) {
  Option("ChOmitFolds", "1");
  for (const char* name : {"x/1.bmp", "y/2.bmp"}) Make(name, 10, 10);
  WriteApp("OmitSubfolds.dat", In("x") + "\r\n");
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"2.jpg"});
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), In("x") + "\r\n" + In("y") + "\r\n");
  EXPECT_EQ(flags.OmittedFolders, "");
}

TEST_F(LargeRunTest, AFullDiskThatIsGivenUpEndsTheRun) {
  for (const char* name : {"1.bmp", "x/2.bmp"}) Make(name, 10, 10);
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/"});
  world.boxes.Answer("/盘空间不足，请释放空间后重试保存！", Reply::Cancel);
  Cut();
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 1);
  EXPECT_EQ(recorder.done.size(), 1u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(LargeRunTest, PdfIsChosenAtTheStartOnly) {
  struct Tools final : OutputTools {
    host::Status ToCmyk(const std::string&) override { return {}; }
    host::Status CopyExif(const std::string&, const std::string&) override { return {}; }
    host::Status ToPdf(const std::string& picture, const std::string& pdf) override {
      ++made;
      std::filesystem::copy_file(picture, pdf);
      return {};
    }
    int made = 0;
  } tools;
  program.outputTools = &tools;
  for (const char* name : {"1.bmp", "x/2.bmp"}) Make(name, 10, 10);
  recorder.onFileDone = [&](const FileResult&) { Select(form.CmbOutType, OutType::Pdf); };
  Cut();
  EXPECT_EQ(tools.made, 0);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "2.jpg"}));
  recorder.onFileDone = {};
  Cut();
  EXPECT_EQ(tools.made, 2);
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "1.pdf", "2.jpg", "2.pdf"}));
  EXPECT_EQ(Selected<OutType>(form.CmbOutType), OutType::Jpg);
}

TEST_F(LargeRunTest, OverwritingEmptiesTheListAgain) {
  Make("a.bmp", 40, 30);
  Margins(50, 0, 0, 0);
  Put("ChOver", "1");
  recorder.onFileDone = [&](const FileResult&) { program.files.AppendPath(In("a.bmp"), {}); };
  Cut();
  EXPECT_EQ(program.files.RowCount(), 0u);
  EXPECT_EQ(SizeOf(In("a.bmp")), (base::Size{20, 30}));
  Put("ChOver", "0");
  Cut();
  EXPECT_EQ(program.files.RowCount(), 1u);
}

TEST_F(LargeRunTest, HelpersAreEndedAndWindowsComeBack) {
  world.processes.Add({11, "QxImgTool.exe", world.host.programFolder, true});
  world.processes.Add({12, "QxBackImg.exe", world.host.programFolder, true});
  options.Show();
  Make("a.bmp", 10, 10);
  recorder.onFileDone = [&](const FileResult&) {
    EXPECT_FALSE(options.Visible());
    world.processes.Add({21, "QxBackImg.exe", world.host.programFolder, true});
  };
  Cut();
  EXPECT_EQ(world.processes.Ended(), (std::vector<int>{11, 12, 21}));
  EXPECT_TRUE(options.Visible());
}

TEST_F(LargeRunTest, TheNumberOfFilesIsReportedOnceItIsCounted) {
  for (int i = 0; i < 200; ++i) {
    const std::string name = "in/" + std::to_string(i % 7) + "/" + std::to_string(i) + ".bmp";
    world.folder.Write(name, BitmapBytes(Painted(4, 4, Slope)));
  }
  Cut();
  EXPECT_EQ(recorder.counted, std::vector<std::size_t>{200});
  EXPECT_EQ(recorder.begun.size(), 200u);
  EXPECT_EQ(recorder.begun.back(), recorder.done.back().source);
}

TEST_F(LargeRunTest, OutputsOfOneNameCountOnce) {
  Make("a/x.bmp", 20, 10);
  Make("b/x.bmp", 20, 10);
  Cut();
  EXPECT_EQ(Totals().planned, 2u);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  ASSERT_EQ(recorder.lost.size(), 1u);
  EXPECT_EQ(recorder.lost[0].source, recorder.done[0].source);
}

TEST_F(LargeRunTest, ResultsBelowTheInputFolderAreNoSources) {
  Make("a.bmp", 40, 30);
  Make("out/old.bmp", 40, 30);
  Put("LOutDir", In("out"));
  Cut();
  Cut();
  EXPECT_EQ(Handled(), (std::vector<std::string>{"a.bmp", "a.bmp"}));
  EXPECT_EQ(world.folder.Names("in/out"), (std::vector<std::string>{"a.jpg", "old.bmp"}));
}

TEST_F(LargeRunTest, AnOutputNeverReplacesAnotherSource) {
  Make("x.png", 20, 10);
  Make("x.jpg", 40, 30);
  const std::string before = world.folder.Read("in/x.jpg");
  Put("LOutDir", world.folder.Path("in"));
  Cut();
  // Whichever comes first: the picture that the user had is still there.
  EXPECT_EQ(world.folder.Read("in/x.jpg.bak"), before);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
}

TEST_F(LargeRunTest, AFolderThatCannotBeListedIsReportedAndTheRunContinues) {
  for (const char* name : {"bad/1.bmp", "good/2.bmp"}) Make(name, 10, 10);
  world.faults.Set({.call = host::testing::DiskCall::List,
                    .error = ENOTCONN,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "in/bad"});
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"2.jpg"});
  ASSERT_EQ(recorder.notListed.size(), 1u);
  EXPECT_EQ(recorder.notListed[0].first, In("bad"));
  EXPECT_EQ(recorder.notListed[0].second.find("文件夹无法读取，已跳过："), 0u);
}

TEST_F(LargeRunTest, ASecondRunInsideTheFirstBeeps) {
  Make("a.bmp", 10, 10);
  recorder.onFileDone = [&](const FileResult&) { Click("menuNormalCut"); };
  Cut();
  EXPECT_EQ(world.boxes.Beeps(), 1);
  EXPECT_EQ(recorder.started.size(), 1u);
}

TEST_F(LargeRunTest, PrefetchesWithoutChangingAnything) {
  Margins(10, 10, 10, 10);
  for (int i = 0; i < 60; ++i) Make("d" + std::to_string(i % 3) + "/" + std::to_string(i) + ".jpg", 60 + i, 50);
  world.folder.Write("in/d1/broken.jpg", world.folder.Read("in/d1/1.jpg").substr(0, 700));
  Cut();
  EXPECT_EQ(Totals().written, 60u);
  EXPECT_EQ(Totals().none, 1u);
  for (int i = 0; i < 60; ++i) EXPECT_EQ(SizeOf(Out(std::to_string(i) + ".jpg")).height, 40) << i;
}

TEST_F(LargeRunTest, OnlyTheOwnShardIsHandled) {
  for (int i = 0; i < 40; ++i)
    world.folder.Write("in/" + std::to_string(i) + ".bmp", BitmapBytes(Painted(4, 4, Slope)));
  std::vector<std::string> all;
  for (const std::uint64_t index : {0, 1, 2}) {
    program.shard = {index, 3, ""};
    recorder.done.clear();
    Cut();
    const std::vector<std::string> handled = Handled();
    ExpectCounted(handled.size());
    all.insert(all.end(), handled.begin(), handled.end());
  }
  std::sort(all.begin(), all.end());
  EXPECT_EQ(all.size(), 40u);
  EXPECT_EQ(std::unique(all.begin(), all.end()), all.end());
  EXPECT_EQ(program.leftToOthers, 80u);
}

// --- Shares of a folder whose results lie among its files.

TEST_F(LargeRunTest, NoShardIsCutIntoTheInputFolder) {
  const std::string link = world.folder.Path("link");
  std::filesystem::create_directory_symlink(world.folder.Path("in"), link);
  Make("a.png", 20, 10);
  program.shard = {0, 2, ""};
  for (const std::string& out : {world.folder.Path("in"), link}) {
    Put("LOutDir", out);
    Cut();
    EXPECT_EQ(world.boxes.Count(kSharedOutput), 1);
    EXPECT_TRUE(recorder.started.empty());
    EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.png"});
    world.boxes.Forget();
  }
  // Over the sources the output folder does not count.
  Put("ChOver", "1");
  Cut();
  EXPECT_EQ(world.boxes.Count(kSharedOutput), 0);
  EXPECT_EQ(recorder.started.size(), 1u);
}

TEST_F(LargeRunTest, AShardMakesNoResultOfAnotherNameBesideItsSource) {
  const auto inShares = [&](const char* source) {
    world.folder.Write("in/a.psd", PsdBytes(20, 10, {10, 200, 30}));
    Make("b.png", 20, 10);
    recorder.done.clear();
    for (const std::uint64_t index : {0, 1}) {
      program.shard = {index, 2, ""};
      Cut();
    }
    for (const FileResult& file : recorder.done) {
      const bool refused = file.source == In(source);
      EXPECT_EQ(file.result, refused ? Result::None : Result::Written) << file.source << ": " << file.why;
      EXPECT_EQ(file.why.find("结果不用原文件的名字，由几个进程分担时") == 0, refused) << file.why;
    }
    EXPECT_EQ(recorder.done.size(), 2u);
    EXPECT_EQ(world.folder.Names("in"), (std::vector<std::string>{"a.psd", "b.png"}));
  };
  Put("ChOver", "1");
  inShares("a.psd");
  std::filesystem::remove(In("a.psd"));
  Option("ChSplit", "1");
  recorder.done.clear();
  for (const std::uint64_t index : {0, 1}) {
    program.shard = {index, 2, ""};
    Cut();
  }
  ASSERT_EQ(recorder.done.size(), 1u);
  EXPECT_EQ(recorder.done[0].result, Result::None);
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"b.png"});
}

// --- In the place of a process that died.

TEST_F(LargeRunTest, FoldersOfWhatWasWrittenAreDone) {
  Option("ChOmitFolds", "1");
  for (const char* name : {"x/1.bmp", "x/2.bmp", "y/3.bmp", "y/4.bmp", "z/5.bmp"}) Make(name, 10, 10);
  program.doneElsewhere = {{In("x/1.bmp"), Wrote::Yes}, {In("y/3.bmp"), Wrote::No}};
  for (const char* big : {"1", "0"}) {
    SCOPED_TRACE(big);
    Put("ChBig", big);
    if (big[0] == '0') List({world.folder.Path("in")});
    Cut();
    EXPECT_EQ(OutNames(), (std::vector<std::string>{"4.jpg", "5.jpg"}));
    EXPECT_EQ(Totals().skipped, 1u);
    std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
    for (const char* name : {"4.jpg", "5.jpg"}) std::filesystem::remove(Out(name));
  }
}

TEST_F(LargeRunTest, ShardsHandleOneFileOfAFolderInAll) {
  for (int i = 0; i < 24; ++i) {
    const std::string name = "in/" + std::to_string(i % 6) + "/" + std::to_string(i) + ".bmp";
    world.folder.Write(name, BitmapBytes(Painted(4, 4, Slope)));
  }
  Option("ChOmitFolds", "1");
  for (const std::uint64_t index : {0, 1, 2}) {
    program.shard = {index, 3, ""};
    const std::size_t before = recorder.done.size();
    Cut();
    ExpectCounted(recorder.done.size() - before);
    // Another process has a program folder of its own.
    std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
  }
  EXPECT_EQ(recorder.done.size(), 24u);
  EXPECT_EQ(OutNames().size(), 6u);
}

}  // namespace
}  // namespace quillon::job
