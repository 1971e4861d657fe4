// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The run that all drivers share, with a driver that only notes what it is asked for.
#include "job/run/list_run.h"

#include "job/cut_fixture.h"
#include "job/run/run_guard.h"

namespace quillon::job {
namespace {

using Calls = std::vector<std::string>;

class NotingDriver final : public RunDriver {
 public:
  explicit NotingDriver(Program& program) : program_(program) {}

  RunNeeds Needs() const override { return needs; }
  bool Prepare() override {
    Note("prepare");
    return prepares;
  }
  void Begin(RunLedger&) override { Note("begin"); }
  std::string Name() const override { return "noting"; }
  std::vector<std::string> Outputs(const std::string&) const override { return {}; }
  void Start() override { Note("start"); }
  bool ShowsProgress() const override { return showsProgress; }
  void Cut(const RunFile& file, const Report& report) override {
    Note("cut " + std::to_string(file.row) + "." + std::to_string(file.number));
    if (onCut) onCut();
    report({file.row, file.path, "", Result::None, "noted"});
  }
  void PrefetchFrom(std::size_t row) override { Note("prefetch " + std::to_string(row)); }
  void EndPrefetch() override { Note("end prefetch"); }
  RunEnd End(RunSource) override {
    Note("end");
    return end;
  }
  void Finish() override { Note("finish"); }
  void Release() override { Note("release"); }

  // Each call with what the window lets the user do at that moment.
  void Note(const std::string& call) {
    const bool usable = program_.form1.Frame1.Enabled();
    calls.push_back(call + (usable ? "" : " (disabled)"));
  }

  RunNeeds needs;
  RunEnd end;
  bool prepares = true;
  bool showsProgress = false;
  std::function<void()> onCut;
  Calls calls;

 private:
  Program& program_;
};

class ListRunTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    List({Make("a.bmp", 10, 10), Make("b.bmp", 10, 10)});
    world.boxes.Forget();
    world.boxes.OnShow([this](const host::Box& box) { driver.Note("box " + box.text); });
  }
  void Run() { StartRun(program.context, driver); }
  Calls Texts() const {
    Calls texts;
    for (const auto& shown : world.boxes.All()) texts.push_back(shown.box.text);
    return texts;
  }

  NotingDriver driver{program};
};

TEST_F(ListRunTest, GoesFromTheFirstCheckToTheLastBoxInOrder) {
  driver.end = {"done"};
  Run();
  EXPECT_EQ(driver.calls,
            (Calls{"prepare", "begin (disabled)", "start (disabled)", "prefetch 1 (disabled)", "cut 1.1 (disabled)",
                   "prefetch 2 (disabled)", "cut 2.2 (disabled)", "end prefetch (disabled)", "end (disabled)",
                   "box done (disabled)", "finish", "release"}));
  EXPECT_EQ(recorder.started, std::vector<std::size_t>{2});
  EXPECT_EQ(recorder.begun, (std::vector<std::string>{In("a.bmp"), In("b.bmp")}));
  EXPECT_EQ(Totals().none, 2u);
  EXPECT_EQ(form.MSF.Selected(), 1u);
  EXPECT_FALSE(flags.Busy);
}

TEST_F(ListRunTest, TheLastBoxMayWaitForTheWindow) {
  driver.end = {"done", RunEnd::Then::Nothing, "", RunEnd::Shown::AfterRun};
  Run();
  EXPECT_EQ(driver.calls.back(), "box done");
  EXPECT_TRUE(world.shell.Folders().empty());
}

TEST_F(ListRunTest, YesOpensTheFolderAndNoDoesNot) {
  driver.end = {"open?", RunEnd::Then::OfferFolder, "/out"};
  world.boxes.Answer("open?", host::Reply::No, 1);
  Run();
  EXPECT_TRUE(world.shell.Folders().empty());
  world.boxes.Answer("open?", host::Reply::Yes);
  Run();
  EXPECT_EQ(world.shell.Folders(), std::vector<std::string>{"/out"});
}

TEST_F(ListRunTest, AResultMayBeRevealed) {
  driver.end = {"done", RunEnd::Then::RevealFolder, "/out"};
  Run();
  EXPECT_EQ(world.shell.Revealed(), std::vector<std::string>{"/out"});
}

// In the order of the needs; the first that stays missing gives up the run.
TEST_F(ListRunTest, AsksForWhatIsMissingInOrder) {
  driver.needs.ensured = {Need::Files, Need::OutputFolder};
  program.files.Clear();
  form.LOutDir.SetText(world.folder.Path("nowhere"));
  Run();
  EXPECT_EQ(Texts(), Calls{"请先添加文件列表！"});
  EXPECT_EQ(driver.calls.size(), 1u) << "the box alone";
  List({Make("a.bmp", 10, 10)});
  world.boxes.Forget();
  Run();
  EXPECT_EQ(Texts(), Calls{"输出目录不存在：" + world.folder.Path("nowhere") + "\r\n要新建这个文件夹吗？"});
  EXPECT_EQ(recorder.started.size(), 0u);
  EXPECT_FALSE(flags.Busy);
}

// A question gives the window turns.
TEST_F(ListRunTest, NeedsThatAQuestionChangesCount) {
  options.Load();
  options.Show();
  program.files.Clear();
  form.LOutDir.SetText(world.folder.Path("nowhere"));
  driver.needs.ensured = {Need::Files};
  world.boxes.OnShow([this](const host::Box&) {
    driver.needs.ensured = {Need::OutputFolder, Need::Files};
    driver.needs.hidden = {"FBaseOpt"};
  });
  world.dialogs.ChooseFiles({In("a.bmp")});
  world.dialogs.ChooseFolderNext(outFolder);
  driver.onCut = [&] { EXPECT_FALSE(options.Visible()); };
  Run();
  EXPECT_EQ(Texts(), (Calls{"请先添加文件列表！", "文件列表添加完毕！",
                            "输出目录不存在：" + world.folder.Path("nowhere") + "\r\n要新建这个文件夹吗？"}));
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_TRUE(options.Visible());
}

TEST_F(ListRunTest, AMissingPartIsAskedForAlone) {
  for (const Need part : {Need::ManualFrame, Need::Sheets, Need::OutputTools, Need::PageCounter}) {
    world.boxes.Forget();
    driver.needs.ensured = {part, Need::Files};
    Run();
    ASSERT_EQ(Texts().size(), 1u);
    EXPECT_EQ(Texts()[0].find("本机缺失资源文件"), 0u);
  }
  EXPECT_TRUE(recorder.started.empty());
}

TEST_F(ListRunTest, ADriverMayGiveUp) {
  driver.prepares = false;
  Run();
  EXPECT_EQ(driver.calls, Calls{"prepare"});
  EXPECT_TRUE(recorder.ended.empty());
  EXPECT_TRUE(Texts().empty());
}

TEST_F(ListRunTest, NothingElseBeginsMeanwhile) {
  driver.onCut = [&] { StartRun(program.context, driver); };
  Run();
  EXPECT_EQ(std::count(driver.calls.begin(), driver.calls.end(), "prepare"), 1);
  EXPECT_EQ(world.boxes.Beeps(), 2);
}

TEST_F(ListRunTest, AStopSkipsTheRest) {
  driver.onCut = [&] { flags.StopRequested = true; };
  Run();
  EXPECT_EQ(recorder.started, std::vector<std::size_t>{2});
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(Why(2), "已停止，未处理");
}

TEST_F(ListRunTest, TheTitleCountsTheRowsUnlessTheDriverShowsItsOwn) {
  std::vector<std::string> titles;
  driver.onCut = [&] { titles.push_back(form.Title()); };
  Run();
  driver.showsProgress = true;
  Run();
  EXPECT_EQ(titles, (Calls{"  正在处理...1/2Quillon", "  正在处理...2/2Quillon", "Quillon", "Quillon"}));
}

TEST_F(ListRunTest, WindowsAreHiddenOrDisabledMeanwhileAndComeBack) {
  options.Load();
  options.Show();
  driver.needs.hidden = {"FCutPre", "no such window"};
  driver.needs.disabled = {"FBaseOpt", "no such window"};
  ASSERT_TRUE(program.fCutPre.Visible());
  ASSERT_TRUE(options.ChFilter.Enabled());
  const bool split = options.TSmalS[4].OwnEnabled();
  driver.onCut = [&] {
    EXPECT_FALSE(program.fCutPre.Visible());
    EXPECT_TRUE(options.Visible());
    EXPECT_FALSE(options.ChFilter.Enabled());
  };
  Run();
  EXPECT_TRUE(program.fCutPre.Visible());
  EXPECT_TRUE(options.ChFilter.Enabled());
  EXPECT_EQ(options.TSmalS[4].OwnEnabled(), split) << "what was disabled before stays so";
}

TEST_F(ListRunTest, InLargeCapacityModeTheWindowIsDisabledIfTheDriverNeedsThat) {
  flags.LargeCapacityMode = true;
  Put("LInDir", In(""));
  for (const WindowUse use : {WindowUse::Usable, WindowUse::Disabled}) {
    driver.calls.clear();
    driver.needs.inFolderRun = use;
    Run();
    const bool disabled = use == WindowUse::Disabled;
    ASSERT_EQ(driver.calls.size(), 9u);
    EXPECT_EQ(driver.calls[3].find("cut 0."), 0u);
    EXPECT_EQ(driver.calls[3].ends_with("(disabled)"), disabled);
    EXPECT_EQ(driver.calls.back(), "release");
  }
}

}  // namespace
}  // namespace quillon::job
