// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/runner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "cli/manual_steps.h"
#include "cli/world.h"

namespace quillon::cli {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Texts = std::vector<std::string>;

TEST(Runner, SetsAsAUserDoes) {
  World world;
  const Outcome outcome = world.Perform({World::Set("TCutValue(0)", "7"), World::Print("Form1.TCutValue(0)"),
                                         World::Set("CmbOutType", "png"), World::Print("cmbouttype"),
                                         World::Set("CmbOutType", "2"), World::Print("CmbOutType")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_TRUE(outcome.notes.empty());
  EXPECT_EQ(world.Printed(), (Texts{"7", "1", "2"}));
}

TEST(Runner, PrintsTheCaptionOfAFrame) {
  World world;
  EXPECT_EQ(world.Perform({World::Print("Frame2")}).exit, Exit::AllWritten);
  EXPECT_EQ(world.Printed(), Texts{"裁剪参数(单位：像素)："});
}

TEST(Runner, LimitsBeepAndPutTheValueBack) {
  World world;
  const Outcome outcome =
      world.Perform({World::Set("ChCutA", "0"), World::Set("TCutValue(1)", "95"), World::Print("TCutValue(1)"),
                     World::Set("TCutValue(1)", "-3"), World::Print("TCutValue(1)")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.Printed(), (Texts{"90", "0"}));
  EXPECT_EQ(world.recorder.Of(EventKind::Beep).size(), 2u);
}

TEST(Runner, ADisabledControlRefuses) {
  World world;
  const Outcome outcome =
      world.Perform({World::Set("TQuality", "50"), World::Set("ChJpgComp", "1"), World::Print("ChJpgComp")});
  EXPECT_EQ(outcome.exit, Exit::WrongArguments);
  EXPECT_THAT(outcome.notes, ElementsAre("--set TQuality=50：Form1.TQuality 当前不可用：请先启用“压缩”"));
  EXPECT_TRUE(world.Printed().empty());
  EXPECT_FALSE(world.program.form1.ChJpgComp.On());
}

TEST(Runner, AWrongValueIsRefused) {
  World world;
  EXPECT_THAT(world.Perform({World::Set("ChOver", "yes")}).notes,
              ElementsAre("--set ChOver=yes：Form1.ChOver 只接受 0 或 1"));
  EXPECT_THAT(world.Perform({World::Set("MenuCut", "1")}).notes,
              ElementsAre("--set MenuCut=1：Form1.MenuCut 不能填写"));
}

TEST(Runner, AnUnknownControlStopsEverythingAndNamesTheNearest) {
  World world;
  const Outcome outcome = world.Perform({World::Set("TCutValue(0)", "9"), World::Set("TQualty", "1")});
  EXPECT_EQ(outcome.exit, Exit::WrongArguments);
  ASSERT_EQ(outcome.notes.size(), 1u);
  EXPECT_THAT(outcome.notes[0], HasSubstr("--set TQualty=1：没有控件 TQualty，相近的有 Form1.TQuality、"));
  EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
}

TEST(Runner, NamesOfEveryVerbAreLookedUpFirst) {
  for (const Step& step : {World::Click("MenuNix"), World::Print("Form1.Nix"), World::Set("Nix.Nix", "1")}) {
    World world;
    const Outcome outcome = world.Perform({World::Set("TCutValue(0)", "9"), step});
    EXPECT_EQ(outcome.exit, Exit::WrongArguments);
    EXPECT_THAT(outcome.notes, ElementsAre(HasSubstr("没有控件")));
    EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
  }
  for (const Step& step : {World::Open("FNix"), World::Close("FNix")}) {
    World world;
    const Outcome outcome = world.Perform({World::Set("TCutValue(0)", "9"), step});
    EXPECT_EQ(outcome.exit, Exit::WrongArguments);
    EXPECT_THAT(outcome.notes, ElementsAre(HasSubstr("没有窗口 FNix，现有 Form1、FBaseOpt")));
    EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
  }
}

TEST(Runner, OnlyButtonsMenusAndTheListCanBeClicked) {
  World world;
  EXPECT_THAT(world.Perform({World::Click("ChOver")}).notes,
              ElementsAre("--click ChOver：Form1.ChOver 不是按钮或菜单项"));
  EXPECT_THAT(world.Perform({World::Click("MenuGifCut")}).notes,
              ElementsAre("--click MenuGifCut：Form1.MenuGifCut 当前不可用：请先把裁剪模式选为“1-动态Gif裁剪”"));
}

TEST(Runner, AnAnswerThatCanBeNothingIsRefused) {
  World world;
  world.answers = {{"打开", "Yess", "--answer 打开=Yess"}};
  const Outcome outcome = world.Perform({World::Set("TCutValue(0)", "9")});
  EXPECT_EQ(outcome.exit, Exit::WrongArguments);
  EXPECT_THAT(outcome.notes, ElementsAre("--answer 打开=Yess：“Yess”不是回答，也不是路径"));
  EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
  world.answers = {{"打开", "/may/come", ""}, {"打开", "no", ""}};
  EXPECT_EQ(world.Perform({}).exit, Exit::AllWritten);
}

TEST(Runner, OpensAndClosesWindows) {
  World world;
  EXPECT_EQ(world.Perform({World::Open("fbaseopt")}).exit, Exit::AllWritten);
  EXPECT_TRUE(world.program.fBaseOpt.Visible());
  EXPECT_TRUE(world.program.flags.AdvancedOptionsLoaded);
  EXPECT_EQ(world.Perform({World::Close("FBaseOpt")}).exit, Exit::AllWritten);
  EXPECT_FALSE(world.program.fBaseOpt.Visible());
}

TEST(Runner, CutsTheFilesThatWereNamed) {
  World world;
  const std::string a = world.Picture("in/a.bmp");
  const std::string b = world.Picture("in/b.bmp");
  const Outcome outcome =
      world.Perform({World::Files({a, b}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten) << testing::PrintToString(world.recorder.Lines());
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp written", "b.bmp written"}));
  EXPECT_TRUE(world.test.folder.Exists("out/a.jpg"));
  EXPECT_TRUE(world.test.folder.Exists("out/b.jpg"));
  const Event file = world.recorder.Of(EventKind::File).at(0);
  EXPECT_EQ(file.Text("source"), a);
  EXPECT_EQ(file.Text("output"), world.test.folder.Path("out/a.jpg"));
  EXPECT_EQ(file.Text("why"), "");
}

TEST(Runner, ReportsBoxesTitlesAndTheFolderOfARun) {
  World world;
  const std::string a = world.Picture("a.bmp");
  world.Perform({World::Files({a}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  const auto boxes = world.recorder.Of(EventKind::Box);
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0].Text("text"), "处理完毕！失败：0\r\n要打开输出目录吗？");
  EXPECT_EQ(boxes[0].Text("answer"), "Yes");
  EXPECT_THAT(world.recorder.Lines(), testing::Contains(HasSubstr("  正在处理...1/1Quillon")));
  const auto opened = world.recorder.Of(EventKind::Open);
  ASSERT_EQ(opened.size(), 1u);
  EXPECT_EQ(opened[0].Text("path"), world.test.folder.Path("out"));
  EXPECT_EQ(opened[0].Text("kind"), "folder");
  EXPECT_EQ(world.recorder.Events().back().kind, EventKind::End);
  EXPECT_EQ(world.recorder.Finished(), 1);
}

TEST(Runner, AnAnsweredBoxOpensNothing) {
  World world;
  const std::string a = world.Picture("a.bmp");
  world.answers = {{"打开输出目录", "No", ""}};
  world.Perform({World::Files({a}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_TRUE(world.recorder.Of(EventKind::Open).empty());
}

TEST(Runner, FilesWaitForTheFirstClick) {
  World world;
  const std::string a = world.Picture("a.bmp");
  const std::string b = world.Picture("b.bmp");
  const Outcome outcome =
      world.Perform({World::Files({a}), World::Print("MSF"), World::Set("TCutValue(0)", "1"), World::Files({b}),
                     world.Out(), World::Percent(), World::Click("menuNormalCut"), World::Print("MSF")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.Printed(), (Texts{"0", "2"}));
}

TEST(Runner, FilesAfterAClickWaitForTheNext) {
  World world;
  const std::string a = world.Picture("a.bmp");
  const std::string b = world.Picture("b.bmp");
  world.Perform({World::Files({a}), world.Out(), World::Percent(), World::Click("menuNormalCut"), World::Files({b}),
                 World::Print("MSF"), World::Click("menuNormalCut"), World::Print("MSF")});
  EXPECT_EQ(world.Printed(), (Texts{"1", "2"}));
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp written", "a.bmp written", "b.bmp written"}));
}

TEST(Runner, WithoutAClickFilesAreListedBeforeTheLastPrints) {
  World world;
  const std::string a = world.Picture("a.bmp", 64, 48);
  const Outcome outcome =
      world.Perform({World::Files({a}), World::Print("MSF"), World::Set("TCutValue(0)", "1"), World::Print("MSF")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.Printed(), (Texts{"0", "1"}));
  const Event print = world.recorder.Of(EventKind::Print).at(1);
  const auto* rows = std::get_if<Texts>(print.Find("items"));
  ASSERT_TRUE(rows);
  EXPECT_THAT(*rows, ElementsAre(HasSubstr("a\tbmp\t" + world.test.folder.Path() + "\t64\t48\t")));
}

TEST(Runner, WithoutAClickOrAPrintFilesAreListedToo) {
  World world;
  EXPECT_EQ(world.Perform({World::Files({world.Picture("a.bmp")})}).exit, Exit::AllWritten);
  EXPECT_EQ(world.program.files.RowCount(), 1u);
}

TEST(Runner, ListsFoldersWithTheirSubfolders) {
  World world;
  world.Picture("in/a.bmp");
  world.Picture("in/deep/b.bmp");
  world.test.folder.Write("in/notes.txt", "no picture");
  const Outcome outcome = world.Perform(
      {World::Files({world.test.folder.Path("in")}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp written", "b.bmp written"}));
}

TEST(Runner, ReportsNamedFilesThatAreNotListed) {
  World world;
  const std::string good = world.Picture("good.bmp");
  const std::string last = world.Picture("last.bmp");
  const std::string empty = world.test.folder.Write("empty.jpg", "");
  const std::string missing = world.test.folder.Path("missing.jpg");
  const Outcome outcome = world.Perform(
      {World::Files({good, empty, missing, last}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"missing.jpg none", "empty.jpg none", "good.bmp written", "last.bmp written"}));
  for (const Event& file : world.recorder.Of(EventKind::File)) {
    EXPECT_EQ(file.Text("why").empty(), file.Text("result") == "written") << JsonLine(file);
  }
  EXPECT_THAT(world.recorder.Lines().back(), HasSubstr(R"("written":2,"none":2,"skipped":0)"));
}

TEST(Runner, NamedFilesThatALargeRunIgnoresAreReported) {
  World world;
  world.Picture("in/a.bmp", 20, 10);
  const std::string named = world.Picture("named.bmp", 20, 10);
  const Outcome outcome = world.Perform({World::Files({named}), World::Set("ChBig", "1"),
                                         World::Set("LInDir", world.test.folder.Path("in")), world.Out(),
                                         World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"named.bmp none", "a.bmp written"}));
  EXPECT_EQ(world.recorder.Of(EventKind::File).at(0).Text("why"), "已启用“超大容量”，只处理输入目录中的文件");
}

TEST(Runner, NamedFilesAreReportedOnceIfALargeRunDoesNotStart) {
  World world;
  const std::string named = world.Picture("named.bmp", 20, 10);
  const Outcome outcome = world.Perform(
      {World::Files({named}), World::Set("ChBig", "1"), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), Texts{"named.bmp none"});
}

TEST(Runner, AListThatWasCutBeforeALargeRunIsReportedOnce) {
  World world;
  world.Picture("in/a.bmp", 20, 10);
  const std::string named = world.Picture("named.bmp", 20, 10);
  const Outcome outcome = world.Perform(
      {World::Files({named}), world.Out(), World::Percent(), World::Click("menuNormalCut"), World::Set("ChBig", "1"),
       World::Set("LInDir", world.test.folder.Path("in")), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.FileResults(), (Texts{"named.bmp written", "a.bmp written"}));
}

TEST(Runner, AFileThatTheFilterLeavesOutIsSkipped) {
  World world;
  const std::string small = world.Picture("small.bmp", 20, 10);
  const std::string large = world.Picture("large.bmp", 200, 100);
  const Outcome outcome =
      world.Perform({World::Files({small, large}), World::Open("FBaseOpt"), World::Set("FBaseOpt.ChFilter", "1"),
                     World::Set("FBaseOpt.TSmalS(0)", "100"), World::Set("FBaseOpt.TSmalS(1)", "50"), world.Out(),
                     World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten) << testing::PrintToString(outcome.notes);
  EXPECT_EQ(world.FileResults(), (Texts{"small.bmp skipped", "large.bmp written"}));
  EXPECT_EQ(world.recorder.Of(EventKind::File).at(0).Text("why"), "宽或高不足 100x50 像素，按“过滤小图片”跳过");
}

// There is nothing yet to count the frames with, so the mode is left.
TEST(Runner, FilesOfAModeThatIsLeftHaveNoOutput) {
  World world;
  world.program.pageCounter = nullptr;  // as in a program that lacks the part
  world.test.folder.Write("app/CutMedia.dll", "helper");
  const Outcome outcome = world.Perform({World::Set("CmbCutMode", "1"), World::Files({world.Picture("a.gif")})});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"a.gif none"}));
  EXPECT_THAT(world.recorder.Of(EventKind::File).at(0).Text("why"), HasSubstr("本机缺失资源文件"));
}

// One bad file in a folder does not keep the others from being cut.
TEST(Runner, GoesOnPastABadFileOfAFolder) {
  World world;
  for (const char* name : {"in/a.bmp", "in/b.bmp", "in/c.bmp"}) world.Picture(name);
  world.test.folder.Write("in/bad.jpg", "");
  world.test.folder.Write("in/worse.png", "no picture");
  const Outcome outcome = world.Perform(
      {World::Files({world.test.folder.Path("in")}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_THAT(world.FileResults(), testing::UnorderedElementsAre("bad.jpg none", "worse.png none", "a.bmp written",
                                                                 "b.bmp written", "c.bmp written"));
  EXPECT_THAT(world.recorder.Lines(), testing::Contains(HasSubstr("获取图片的尺寸数据为0")).Times(1));
}

TEST(Runner, ABadFileIsOneFileWithoutOutput) {
  World world;
  const std::string good = world.Picture("good.bmp");
  const std::string cut = world.test.folder.Write("cut.bmp", BmpPicture(40, 30).substr(0, 2000));
  const Outcome outcome =
      world.Perform({World::Files({cut, good}), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"cut.bmp none", "good.bmp written"}));
  EXPECT_NE(world.recorder.Of(EventKind::File).at(0).Text("why"), "");
  EXPECT_FALSE(world.test.folder.Exists("out/cut.jpg"));
}

TEST(Runner, ARunThatDoesNotBeginLeavesItsFilesWithout) {
  World world;
  const std::string a = world.Picture("a.bmp");
  const Outcome outcome = world.Perform({World::Files({a}), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp none"}));
  EXPECT_THAT(outcome.notes, ElementsAre(HasSubstr("裁剪没有开始：输出目录")));
  const auto dialogs = world.recorder.Of(EventKind::Dialog);
  ASSERT_EQ(dialogs.size(), 1u);
  EXPECT_EQ(dialogs[0].Text("kind"), "folder");
}

TEST(Runner, ARegionRunThatDoesNotBeginLeavesItsFilesWithout) {
  World world;
  const std::string a = world.Picture("a.bmp");
  const Outcome outcome = world.Perform({World::Percent(), World::Open("FMultCut"), World::Click("FMultCut.CmdAdd"),
                                         World::Set("TCutValue(0)", "10"), World::Click("FMultCut.CmdAdd"),
                                         World::Files({a}), World::Click("FMultCut.CmdOk")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp none"}));
  EXPECT_THAT(outcome.notes, ElementsAre(HasSubstr("裁剪没有开始：输出目录")));
}

TEST(Runner, AWatchThatDoesNotBeginIsAFailure) {
  for (const bool unreadable : {false, true}) {
    World world;
    const std::string watched = world.test.folder.Path("watched");
    const std::string listed = world.Picture("a.bmp");
    if (unreadable) world.Picture("watched/b.bmp");
    const std::vector<Step> steps{World::Percent(), World::Open("FCutTime"), World::Set("FCutTime.LDir", watched),
                                  World::Files({listed}), World::Click("FCutTime.CmdDo")};
    if (unreadable) {
      world.test.faults.Set({.call = host::testing::DiskCall::Stat,
                             .error = EIO,
                             .length = host::testing::Fault::Length::ForEver,
                             .pathHolds = "watched"});
    }
    const Outcome outcome = world.Perform(steps);
    EXPECT_EQ(outcome.exit, Exit::SomeWithout) << unreadable;
    EXPECT_THAT(outcome.notes, ElementsAre(HasSubstr("裁剪没有开始：工作目录不存在"))) << unreadable;
    EXPECT_TRUE(world.FileResults().empty()) << "a watch does not cut the list";
  }
}

TEST(Runner, AWatchThatWasStoppedHasBegun) {
  World world;
  world.test.folder.Write("watched/.keep", "");
  world.onTurn = [&] { world.stopping = true; };
  const Outcome outcome =
      world.Perform({World::Percent(), World::Open("FCutTime"),
                     World::Set("FCutTime.LDir", world.test.folder.Path("watched")), World::Click("FCutTime.CmdDo")});
  EXPECT_EQ(outcome.exit, Exit::Stopped);
  EXPECT_TRUE(outcome.notes.empty());
}

TEST(Runner, ADialogReturnsItsAnswer) {
  World world;
  const std::string a = world.Picture("a.bmp");
  world.Out();
  world.answers = {{"输出目录", world.test.folder.Path("out"), ""}, {"添加", a, ""}};
  const Outcome outcome =
      world.Perform({World::Percent(), World::Click("MenuAddFiles"), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(world.FileResults(), (Texts{"a.bmp written"}));
  EXPECT_EQ(world.recorder.Of(EventKind::Dialog).size(), 2u);
}

TEST(Runner, ARunWithoutFilesLeavesNothingWithout) {
  World world;
  const Outcome outcome = world.Perform({world.Out(), World::Percent(), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_THAT(outcome.notes, ElementsAre("裁剪没有开始：请先添加文件列表！"));
}

TEST(Runner, StopsBetweenSteps) {
  World world;
  world.stopping = true;
  EXPECT_EQ(world.Perform({World::Set("TCutValue(0)", "9")}).exit, Exit::Stopped);
  EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
}

TEST(Runner, StopsARunAfterTheFileUnderWay) {
  World world;
  std::vector<std::string> files;
  for (int i = 0; i < 5; ++i) files.push_back(world.Picture("p" + std::to_string(i) + ".bmp"));
  world.onTurn = [&] {
    if (world.recorder.Of(EventKind::File).size() == 2) world.stopping = true;
  };
  const Outcome outcome = world.Perform({World::Files(files), world.Out(), World::Percent(),
                                         World::Click("menuNormalCut"), World::Set("TCutValue(0)", "9")});
  EXPECT_EQ(outcome.exit, Exit::Stopped);
  const Texts results = world.FileResults();
  ASSERT_EQ(results.size(), 5u);
  EXPECT_EQ(results[1], "p1.bmp written");
  EXPECT_EQ(results[4], "p4.bmp skipped");
  EXPECT_EQ(world.program.form1.TCutValue[0].Value(), "0");
}

TEST(Runner, AFullDiskThatIsGivenUpStops) {
  World world;
  const std::string a = world.Picture("a.bmp");
  const std::string b = world.Picture("b.bmp");
  const Step out = world.Out();
  world.Perform({});
  world.test.faults.Set({.call = host::testing::DiskCall::Write,
                         .error = ENOSPC,
                         .length = host::testing::Fault::Length::ForEver,
                         .pathHolds = "/out/"});
  const Outcome outcome = world.Perform({World::Files({a, b}), out, World::Percent(), World::Click("menuNormalCut")});
  EXPECT_GT(world.test.faults.Fired(), 0);
  EXPECT_EQ(outcome.exit, Exit::Stopped);
  EXPECT_THAT(world.recorder.Lines(), testing::Contains(testing::AllOf(HasSubstr("盘空间不足"), HasSubstr("Cancel"))));
  EXPECT_FALSE(world.test.folder.Exists("out/a.jpg"));
}

TEST(Runner, ClosingTheMainWindowEndsThePlan) {
  World world;
  const Outcome outcome = world.Perform({World::Click("MenuExit"), World::Set("TCutValue(0)", "9")});
  EXPECT_EQ(outcome.exit, Exit::WrongArguments);
  EXPECT_THAT(outcome.notes, ElementsAre("--set TCutValue(0)=9：程序已经关闭"));
}

TEST(Runner, ADoubleClickShowsTheSelectedRow) {
  World world;
  const std::string a = world.Picture("a.bmp", 64, 48);
  EXPECT_EQ(world.Perform({World::Files({a})}).exit, Exit::AllWritten);
  EXPECT_EQ(world.program.fCutPre.preview.Path(), "");
  EXPECT_EQ(world.Perform({World::Set("MSF", "1"), World::Click("MSF")}).exit, Exit::AllWritten);
  EXPECT_EQ(world.program.fCutPre.preview.Path(), a);
}

TEST(Runner, ReportsChangesOnlyWithATrace) {
  World plain;
  plain.Perform({World::Set("ChOver", "1")});
  EXPECT_TRUE(plain.recorder.Of(EventKind::Change).empty());
  World traced(Trace::Yes);
  traced.Perform({World::Set("ChOver", "1"), World::Set("ChFixCut", "1")});
  EXPECT_THAT(traced.recorder.Lines(),
              testing::IsSupersetOf({R"({"event":"change","control":"Form1.ChOver","value":"1"})",
                                     R"({"event":"change","control":"Form1.ChFixCut","value":"1"})"}));
}

TEST(Runner, ListsEveryControl) {
  World world;
  world.listControls = true;
  EXPECT_EQ(world.Perform({}).exit, Exit::AllWritten);
  std::size_t count = 0;
  for (const controls::Window* window : world.program.windows.All()) count += window->Controls().size();
  EXPECT_EQ(world.recorder.Of(EventKind::Print).size(), count);
  EXPECT_GT(count, 100u);
}

TEST(RunListener, ShowsProgressOfARun) {
  World world;
  std::vector<std::string> files;
  for (int i = 0; i < 30; ++i) files.push_back(world.Picture("p" + std::to_string(i) + ".bmp"));
  world.Perform({World::Files(files), world.Out(), World::Percent(), World::Click("menuNormalCut")});
  std::size_t most = 0;
  for (const Progress& progress : world.recorder.Shown()) {
    if (!progress.running) continue;
    EXPECT_EQ(progress.planned, 30u);
    EXPECT_GE(progress.done, most);
    most = progress.done;
  }
  EXPECT_GT(most, 0u);
}

TEST(RunListener, CountsALostFileOnceAsWithout) {
  World world;
  world.Perform({});
  Recorder recorder;
  RunListener watch(world.program, recorder, Trace::No);
  const job::FileResult written{1, "/a.jpg", "/o/a.jpg", job::Result::Written, ""};
  watch.RunStarted(1);
  watch.FileDone(written);
  watch.FileLost({1, "/a.jpg", "", job::Result::None, "没有写到磁盘上"}, "/out/a.jpg");
  EXPECT_EQ(watch.Sums().written, 0u);
  EXPECT_EQ(watch.Sums().none, 1u);
  EXPECT_EQ(recorder.Of(EventKind::File).size(), 2u);
}

// --- Cuts of the drawn frame and of an exact size

// Returns the size of the only output of a cut with these settings, "none" if there is none.
std::string CutSize(std::vector<Step> settings) {
  World world;
  settings.insert(settings.begin(), {world.Out(), World::Set("CmbOutType", "bmp")});
  settings.push_back(World::Files({world.Picture("a.bmp", 40, 30)}));
  settings.push_back(World::Click("menuNormalCut"));
  const Outcome outcome = world.Perform(settings);
  EXPECT_TRUE(outcome.notes.empty()) << outcome.notes.front();
  imaging::ImageFacts facts;
  if (!world.program.images.ImageInfo(world.test.folder.Path("out/a.bmp"), facts)) return "none";
  return std::to_string(facts.width) + "x" + std::to_string(facts.height);
}

TEST(Runner, CutsTheFrameAsItIsDrawn) {
  const std::vector<Step> margins{World::Set("TCutValue(0)", "4"), World::Set("TCutValue(2)", "6")};
  EXPECT_EQ(CutSize(margins), "none");
  std::vector<Step> framed = margins;
  framed.push_back(World::Set("ChAsFramed", "1"));
  EXPECT_EQ(CutSize(framed), "30x25");
  framed.insert(framed.end(),
                {World::Set("ChFixCut", "1"), World::Set("TFixWH(0)", "11"), World::Set("TFixWH(1)", "12")});
  EXPECT_EQ(CutSize(framed), "11x12");
}

TEST(Runner, CutsToAnExactSize) {
  const std::vector<Step> exact{World::Set("ChFixCut", "1"), World::Set("TFixWH(0)", "11"),
                                World::Set("TFixWH(1)", "17"), World::Set("ChExact", "1")};
  EXPECT_EQ(CutSize(exact), "11x17");
  for (const char* more : {"CmbAnchor=0", "CmbAnchor=按左、上边距", "ChExactPad=1"}) {
    const std::string step = more;
    std::vector<Step> steps = exact;
    steps.push_back(World::Set(step.substr(0, step.find('=')), step.substr(step.find('=') + 1)));
    EXPECT_EQ(CutSize(steps), "11x17") << more;
  }
  EXPECT_EQ(
      CutSize({World::Set("ChFixCut", "1"), World::Set("CmbKeepCut", "2寸 3.5cmx5.3cm"), World::Set("ChExact", "1")}),
      "413x626");
}

// A manual run asks once about a frame that is not what is cut; without an answer it cuts as ever.
TEST(Runner, AnswersTheQuestionAboutAFrame) {
  const auto size = [](const char* reply) {
    World world;
    ManualSteps manual{world.program, world.suite.regions.cutFrame, world.answers, world.recorder};
    world.onTurn = [&manual] { manual.Turn(); };
    if (*reply) world.answers = {{"画的框不是将裁出的部分", reply, ""}};
    world.Perform({world.Out(), World::Set("CmbOutType", "bmp"), World::Set("TCutValue(0)", "4"),
                   World::Open("FBaseOpt"), World::Set("FBaseOpt.TSmalS(3)", "9"),
                   World::Set("FBaseOpt.TSmalS(2)", "8"), World::Set("FBaseOpt.ChMamal", "1"),
                   World::Files({world.Picture("a.bmp", 40, 30), world.Picture("b.bmp", 40, 30)}),
                   World::Click("menuNormalCut")});
    imaging::ImageFacts facts;
    EXPECT_TRUE(world.program.images.ImageInfo(world.test.folder.Path("out/b.bmp"), facts)) << reply;
    return base::Size{facts.width, facts.height};
  };
  EXPECT_EQ(size(""), (base::Size{8, 9}));
  EXPECT_EQ(size("Cancel"), (base::Size{8, 9}));
  EXPECT_EQ(size("Yes"), (base::Size{36, 25}));
  EXPECT_EQ(size("No"), (base::Size{36, 25}));
}

}  // namespace
}  // namespace quillon::cli
