// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The frame of a run: the checks before it, its reports, how it is stopped and how it ends.
#include "job/cut/normal_cut.h"

#include <filesystem>
#include <vector>

#include "job/collaborator_doubles.h"
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

class NormalCutTest : public CutTest {
 protected:
  const std::vector<host::testing::ScriptedBoxes::Shown>& Boxes() const { return world.boxes.All(); }
  std::vector<std::string> MakeSeveral(int count) {
    std::vector<std::string> paths;
    for (int i = 1; i <= count; ++i) paths.push_back(Make(std::to_string(i) + ".bmp", 20, 10));
    return paths;
  }
  // Refuses to be listed empty.
  void ExpectNoRun() {
    EXPECT_TRUE(recorder.started.empty());
    EXPECT_TRUE(OutNames().empty());
    EXPECT_FALSE(flags.Busy);
    EXPECT_TRUE(Enabled("Frame1"));
  }
};

TEST_F(NormalCutTest, AnEmptyListAsksForFiles) {
  Cut();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "请先添加文件列表！");
  EXPECT_EQ(world.dialogs.All().size(), 1u);
  ExpectNoRun();

  world.dialogs.ChooseFiles({Make("a.bmp")});
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
}

// While the list was empty, sources were to be overwritten.
TEST_F(NormalCutTest, AnOptionThatIsSwitchedDuringAQuestionCounts) {
  form.ChOver.Set(true);
  Put("LOutDir", "/nowhere");
  world.boxes.OnShow([this](const host::Box&) { form.ChOver.Set(false); });
  world.dialogs.ChooseFiles({Make("a.bmp")});
  Cut();
  ASSERT_EQ(Boxes().size(), 3u);
  EXPECT_EQ(Boxes()[2].box.text, "输出目录不存在：/nowhere\r\n要新建这个文件夹吗？");
  ExpectNoRun();
}

TEST_F(NormalCutTest, HelpersAreEndedAfterTheLastBoxAndBeforeTheWindowIsUsable) {
  recorder.onFileDone = [this](const FileResult&) {
    world.processes.Add({1, "QxBackImg.exe", world.host.programFolder, true});
    world.processes.Add({2, "QxImgTool.exe", world.host.programFolder, true});
  };
  using Ids = std::vector<int>;
  world.boxes.OnShow([this](const host::Box&) { EXPECT_EQ(world.processes.Ended(), Ids()); });
  form.Observe([this](controls::Control& control, controls::Aspect) {
    if (&control != &form.Frame1 || !form.Frame1.Enabled()) return;
    EXPECT_EQ(world.processes.Ended(), (Ids{2, 1}));
  });
  Cut({Make("a.bmp")});
  EXPECT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(world.processes.Ended(), (Ids{2, 1}));
}

TEST_F(NormalCutTest, AMissingOutputFolderIsAskedFor) {
  List({Make("a.bmp")});
  Put("LOutDir", "/nowhere");
  Cut();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "输出目录不存在：/nowhere\r\n要新建这个文件夹吗？");
  EXPECT_EQ(Boxes()[0].box.type, 292);
  ExpectNoRun();

  world.dialogs.ChooseFolderNext(outFolder);
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(form.LOutDir.Value(), outFolder);
}

TEST_F(NormalCutTest, OverwritingNeedsNoOutputFolder) {
  Put("LOutDir", "/nowhere");
  Put("ChOver", "1");
  Cut({Make("a.bmp")});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(world.boxes.Count("输出目录"), 0);
}

TEST_F(NormalCutTest, SheetsNeedAnOutputFolderThoughSourcesAreOverwritten) {
  IdleSheets sheets;
  program.sheets = &sheets;
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  Put("LOutDir", "/nowhere");
  Put("ChOver", "1");
  Cut({Make("a.bmp")});
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "输出目录不存在：/nowhere\r\n要新建这个文件夹吗？");
  EXPECT_EQ(Boxes()[0].box.type, 292);
  ExpectNoRun();
}

TEST_F(NormalCutTest, OptionsWithoutTheirPartStopTheRun) {
  List({Make("a.bmp")});
  const auto expectAsked = [&](const char* what) {
    SCOPED_TRACE(what);
    world.boxes.Forget();
    Cut();
    EXPECT_EQ(world.boxes.Count("本机缺失资源文件"), 1);
    EXPECT_EQ(Boxes().size(), 1u);
    ExpectNoRun();
  };
  flags.ManualCutMode = true;
  expectAsked("manual frame");
  flags.ManualCutMode = false;
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  expectAsked("sheets");
  form.ChCutAndArray.Set(false);
  flags.ToCmyk = true;
  expectAsked("cmyk");
  flags.ToCmyk = false;
  form.CmbOutType.SetHandler({});
  form.CmbOutType.Select(5);
  expectAsked("pdf");
  form.CmbOutType.Select(0);
  world.boxes.Forget();
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
}

// It was ended with the last run; the next picture for it starts it again.
TEST_F(NormalCutTest, TheBackWorkerIsFoundNotStarted) {
  List({Make("a.bmp")});
  flags.BackWorkerStarted = true;
  Cut();
  EXPECT_FALSE(flags.BackWorkerStarted);
}

TEST_F(NormalCutTest, ChBackIsFoundCleared) {
  Put("ChBack", "1");
  Cut({Make("a.bmp")});
  EXPECT_FALSE(form.ChBack.On());
}

TEST_F(NormalCutTest, FoldersAreSavedAtTheStart) {
  Put("LInDir", world.folder.Path("in"));
  Cut({Make("a.bmp")});
  EXPECT_EQ(program.Setting("LOutDir"), outFolder);
  EXPECT_EQ(program.Setting("LInDir"), world.folder.Path("in"));
}

TEST_F(NormalCutTest, TheBorderHasItsCanvas) {
  form.TFixWH[0].SetNumber(70);
  form.TFixWH[1].SetNumber(30);
  flags.FixW = 70;
  flags.FixH = 30;
  Cut({Make("a.bmp")});
  EXPECT_EQ(SizeOf(program.AppPath("Canvas.bmp")), (base::Size{50, 50}));
  Option("ChAddBoard", "1");
  Cut();
  EXPECT_EQ(SizeOf(program.AppPath("Canvas.bmp")), (base::Size{70, 30}));
  EXPECT_EQ(Difference(Read(program.AppPath("Canvas.bmp")), Painted(70, 30, [](int, int) { return kWhitePixel; })), 0);
}

TEST_F(NormalCutTest, TitlesSelectionAndTheDisabledWindow) {
  List(MakeSeveral(3));
  std::vector<std::string> titles;
  std::vector<std::size_t> selected;
  recorder.onFileDone = [&](const FileResult&) {
    titles.push_back(form.Title());
    selected.push_back(form.MSF.Selected());
    for (const char* name :
         {"Frame1", "MenuFiles", "MenuList", "MenuOtherOptions", "MenuCut", "MenuOther", "MenuHelp"}) {
      EXPECT_FALSE(Enabled(name)) << name;
    }
    EXPECT_TRUE(Enabled("MenuStop"));
    EXPECT_TRUE(flags.Busy);
  };
  Cut();
  EXPECT_EQ(titles, (std::vector<std::string>{"  正在处理...1/3Quillon", "  正在处理...2/3Quillon",
                                              "  正在处理...3/3Quillon"}));
  EXPECT_EQ(selected, (std::vector<std::size_t>{1, 2, 3}));
  for (const char* name : {"Frame1", "MenuFiles", "MenuList", "MenuOtherOptions", "MenuCut", "MenuOther", "MenuHelp"}) {
    EXPECT_TRUE(Enabled(name)) << name;
  }
  EXPECT_FALSE(Enabled("MenuStop"));
  EXPECT_EQ(form.Title(), "Quillon");
  EXPECT_EQ(form.MSF.Selected(), 1u);
}

TEST_F(NormalCutTest, WindowsHideForTheRunAndComeBack) {
  options.Show();
  program.fCutPre.Show();
  List(MakeSeveral(1));
  recorder.onFileDone = [&](const FileResult&) {
    EXPECT_FALSE(options.Visible());
    EXPECT_FALSE(program.fCutPre.Visible());
  };
  Cut();
  EXPECT_TRUE(options.Visible());
  EXPECT_TRUE(program.fCutPre.Visible());
  options.Hide();
  program.fCutPre.ChHideShow.SetVisible(false);
  Cut();
  EXPECT_FALSE(options.Visible());
  EXPECT_TRUE(program.fCutPre.ChHideShow.Visible());
}

TEST_F(NormalCutTest, TheEndIsReportedAndTheFolderOpened) {
  List(MakeSeveral(1));
  world.boxes.Answer("要打开输出目录吗", Reply::No);
  Cut();
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "处理完毕！失败：0\r\n要打开输出目录吗？");
  EXPECT_EQ(Boxes()[0].box.type & 15, 4);
  EXPECT_EQ(Boxes()[0].box.title, "消息");
  EXPECT_TRUE(world.shell.Folders().empty());
}

TEST_F(NormalCutTest, YesOpensTheOutputFolder) {
  List(MakeSeveral(1));
  world.boxes.Answer("要打开输出目录吗", Reply::Yes);
  Cut();
  EXPECT_EQ(world.shell.Folders(), std::vector<std::string>{outFolder});
}

TEST_F(NormalCutTest, OverwritingReportsTheEndWithoutAQuestion) {
  Put("ChOver", "1");
  Cut(MakeSeveral(1));
  ASSERT_EQ(Boxes().size(), 1u);
  EXPECT_EQ(Boxes()[0].box.text, "处理完毕！失败：0");
  EXPECT_EQ(Boxes()[0].box.type & 15, 0);
}

TEST_F(NormalCutTest, TheObserverHearsItAll) {
  world.clock.Advance(100);
  const std::vector<std::string> paths = MakeSeveral(2);
  const std::string bad = world.folder.Path("in/3.bmp");
  List(paths);
  Make("3.bmp", 10, 10);
  List({bad});
  std::filesystem::remove(bad);
  Cut();
  EXPECT_EQ(recorder.started, std::vector<std::size_t>{3});
  ASSERT_EQ(recorder.done.size(), 3u);
  EXPECT_EQ(recorder.done[0].row, 1u);
  EXPECT_EQ(recorder.done[0].source, paths[0]);
  EXPECT_EQ(recorder.done[0].output, Out("1.jpg"));
  EXPECT_EQ(recorder.done[0].result, Result::Written);
  EXPECT_EQ(recorder.done[0].why, "");
  EXPECT_EQ(recorder.done[2].result, Result::None);
  EXPECT_EQ(recorder.done[2].output, "");
  EXPECT_FALSE(recorder.done[2].why.empty());
  ASSERT_EQ(recorder.ended.size(), 1u);
  EXPECT_EQ(Totals().planned, 3u);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().skipped, 0u);
  EXPECT_FALSE(Totals().stopped);
  EXPECT_GT(Totals().seconds, 0);
  EXPECT_LT(Totals().seconds, 50);
}

TEST_F(NormalCutTest, TheRowShowsTheNewSizeOrTheReason) {
  List(MakeSeveral(2));
  std::filesystem::remove(In("2.bmp"));
  Cut();
  EXPECT_EQ(program.files.Row(0).newBytes, world.files.Stat(Out("1.jpg"))->size);
  EXPECT_EQ(program.files.Cell(0, 6), KbText(world.files.Stat(Out("1.jpg"))->size));
  EXPECT_EQ(Why(1), "");
  EXPECT_EQ(program.files.Row(1).newBytes, 0u);
  EXPECT_EQ(program.files.Row(1).result, Result::None);
  EXPECT_FALSE(Why(2).empty());
}

TEST_F(NormalCutTest, StopEndsAfterTheFileAndNamesTheRest) {
  List(MakeSeveral(5));
  world.boxes.Answer("终止当前操作？", Reply::Ok);
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 2) Click("MenuStop");
  };
  Cut();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"1.jpg", "2.jpg"}));
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().skipped, 3u);
  EXPECT_EQ(Totals().planned, 5u);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(Why(3), "已停止，未处理");
  EXPECT_EQ(program.files.Row(4).result, Result::Skipped);
  EXPECT_EQ(world.boxes.Count("处理完毕！"), 1);
  // The next run starts without the results of this one.
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row > 1) return;
    EXPECT_EQ(program.files.Row(1).newBytes, 0u);
    EXPECT_EQ(program.files.Row(4).result, Result::Written);
    EXPECT_EQ(program.files.Row(4).why, "");
  };
  Cut();
  EXPECT_EQ(Totals().written, 5u);
  EXPECT_FALSE(Totals().stopped);
}

TEST_F(NormalCutTest, FilesThatAStoppedRunDidNotReachAreReportedSo) {
  List(MakeSeveral(3));
  std::vector<bool> reached;
  recorder.onFileDone = [&](const FileResult& file) {
    flags.StopRequested = true;
    reached.push_back(file.reached);
  };
  Cut();
  EXPECT_EQ(reached, (std::vector<bool>{true, false, false}));
}

TEST_F(NormalCutTest, StopBetweenTheStepsOfAFile) {
  Option("ChAddBoard", "1");
  Put("FBaseOpt.TBoard(0)", "5");
  List(MakeSeveral(1));
  // The first turn is that before the file, the second before the cut, the third after it.
  world.pump.OnTurn(3, [&] { flags.StopRequested = true; });
  Cut();
  EXPECT_EQ(Why(1), "已停止，未处理完");
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(NormalCutTest, AFinishedCutSurvivesAStopAfterIt) {
  List(MakeSeveral(2));
  world.pump.OnTurn(3, [&] { flags.StopRequested = true; });
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"1.jpg"});
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
}

TEST_F(NormalCutTest, ASecondRunInsideTheFirstBeeps) {
  List(MakeSeveral(2));
  bool tried = false;
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row != 1) return;
    tried = true;
    program.RunNormalCut();
    form.MSF.RightClick();
  };
  Cut();
  EXPECT_TRUE(tried);
  EXPECT_EQ(world.boxes.Beeps(), 2);
  EXPECT_EQ(recorder.started.size(), 1u);
  EXPECT_EQ(program.files.RowCount(), 2u);
}

TEST_F(NormalCutTest, HelpersAreEndedByName) {
  world.processes.Add({11, "QxImgTool.exe", world.host.programFolder, true});
  world.processes.Add({12, "QxBackImg.exe", world.host.programFolder, true});
  world.processes.Add({13, "other.exe", world.host.programFolder, true});
  recorder.onFileDone = [&](const FileResult&) {
    world.processes.Add({21, "QxImgTool.exe", world.host.programFolder, true});
    world.processes.Add({22, "QxBackImg.exe", world.host.programFolder, true});
  };
  Cut(MakeSeveral(1));
  EXPECT_EQ(world.processes.Ended(), (std::vector<int>{11, 12, 21, 22}));
}

TEST_F(NormalCutTest, OutputsOfOneNameCountOnce) {
  const std::string one = Make("a/x.bmp", 20, 10);
  const std::string other = Make("b/x.bmp", 30, 15);
  Cut({one, other});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"x.jpg"});
  EXPECT_EQ(SizeOf(Out("x.jpg")), (base::Size{30, 15}));
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  ASSERT_EQ(recorder.lost.size(), 1u);
  EXPECT_EQ(recorder.lost[0].source, one);
  EXPECT_EQ(recorder.lost[0].row, 1u);
  EXPECT_EQ(Why(1), "输出文件与 " + other + " 的同名，已被后者覆盖");
  EXPECT_EQ(program.files.Row(0).newBytes, 0u);
}

TEST_F(NormalCutTest, AFileThatIsListedTwiceIsCutOnce) {
  const std::string path = Make("x.bmp", 40, 20);
  Margins(50, 0, 0, 0);
  for (const char* over : {"0", "1"}) {
    Put("ChOver", over);
    program.files.Clear();
    Cut({path, path});
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().skipped, 1u);
    EXPECT_EQ(Why(2), "与列表中前面的文件相同，本次已处理");
    EXPECT_EQ(SizeOf(over[0] == '1' ? path : Out("x.jpg")), (base::Size{20, 20}));
  }
}

TEST_F(NormalCutTest, AnOutputNeverReplacesAnotherListedPicture) {
  const std::string png = Make("x.png", 20, 10);
  const std::string jpg = Make("x.jpg", 40, 30);
  const std::string before = world.folder.Read("in/x.jpg");
  Put("LOutDir", world.folder.Path("in"));
  Cut({png, jpg});
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + jpg + "，已跳过");
  EXPECT_EQ(program.files.Row(1).result, Result::Written);
  EXPECT_EQ(world.folder.Read("in/x.jpg.bak"), before);
}

TEST_F(NormalCutTest, OutputsThatDoNotReachTheDiskAreRevoked) {
  List(MakeSeveral(2));
  world.faults.Set({.call = host::testing::DiskCall::Sync, .error = EIO, .pathHolds = "out/.1.jpg"});
  Cut();
  ASSERT_EQ(world.faults.Fired(), 1);
  ASSERT_EQ(recorder.lost.size(), 1u);
  EXPECT_EQ(recorder.lost[0].row, 1u);
  EXPECT_NE(Why(1).find("输出文件没有写到磁盘上"), std::string::npos);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(OutNames(), std::vector<std::string>{"2.jpg"});
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：0"), 1);
}

TEST_F(NormalCutTest, SheetsGetTheCuts) {
  struct Sheet final : Sheets {
    bool Prepare() override { return ready; }
    bool OnBackSide() const override { return back; }
    void Place(const std::string& cut) override { placed.push_back(cut); }
    void Finish() override { ++finished; }
    void Listed(const std::string& path, int count) override { listed.emplace_back(path, count); }
    bool ready = false;
    bool back = false;
    int finished = 0;
    std::vector<std::string> placed;
    std::vector<std::pair<std::string, int>> listed;
  } sheet;
  program.sheets = &sheet;
  flags.ArrayLoaded = true;
  List(MakeSeveral(1));
  EXPECT_EQ(sheet.listed, (std::vector<std::pair<std::string, int>>{{In("1.bmp"), 1}}));
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  Cut();
  EXPECT_TRUE(recorder.started.empty());
  sheet.ready = true;
  Cut();
  EXPECT_EQ(sheet.placed, std::vector<std::string>{Out("1.jpg")});
  EXPECT_EQ(sheet.finished, 1);
  EXPECT_EQ(Boxes().back().box.text, "处理完毕！");
  EXPECT_EQ(world.shell.Revealed(), std::vector<std::string>{outFolder});
  sheet.back = true;
  Cut();
  EXPECT_EQ(sheet.placed.back(), Out("1(背景拼版).jpg"));
}

}  // namespace
}  // namespace quillon::job
