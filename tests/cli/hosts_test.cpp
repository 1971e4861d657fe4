// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/hosts.h"

#include <gtest/gtest.h>

#include "cli/recorder.h"
#include "cli/report/json_io.h"
#include "host/testing/fakes.h"

namespace quillon::cli {
namespace {

using host::Reply;

struct Boxes : testing::Test {
  std::vector<Answer> answers;
  Recorder recorder;
  host::testing::FakeClock clock;
  bool stopping = false;
  BatchBoxes boxes{answers, recorder, clock, [this] { return stopping; }};

  Reply Show(const std::string& text, int type) { return boxes.Show({text, type}); }
};

TEST_F(Boxes, ReturnTheDefaultButtonWithoutAnAnswer) {
  EXPECT_EQ(Show("处理完毕！", 0), Reply::Ok);
  EXPECT_EQ(Show("关闭程序？", 65), Reply::Ok);
  EXPECT_EQ(Show("终止当前操作？", 305), Reply::Cancel);
  EXPECT_EQ(Show("要打开输出目录吗？", 4), Reply::Yes);
  EXPECT_EQ(Show("拖放", 563), Reply::Cancel);
  EXPECT_EQ(Show("重试", 21), Reply::Retry);
}

TEST_F(Boxes, GiveUpAFullDiskWithoutAnAnswer) {
  EXPECT_EQ(Show("/盘空间不足，请释放空间后重试保存！", 21), Reply::Cancel);
  answers.push_back({"盘空间不足", "Retry", ""});
  EXPECT_EQ(Show("/盘空间不足，请释放空间后重试保存！", 21), Reply::Retry);
}

TEST_F(Boxes, UseTheAnswerWhoseTextTheyContain) {
  answers = {{"打开输出", "No", ""}, {"拖放", "是", ""}};
  EXPECT_EQ(Show("失败：0\r\n要打开输出目录吗？", 4), Reply::No);
  EXPECT_EQ(Show("拖放", 563), Reply::Yes);
  EXPECT_EQ(Show("别的", 4), Reply::Yes);
}

TEST_F(Boxes, UseTheLastAnswerThatMatches) {
  answers = {{"打开", "Cancel", ""}, {"打开", "No", ""}};
  EXPECT_EQ(Show("打开", 3), Reply::No);
  answers = {{"", "No", ""}, {"关", "Yes", ""}};
  EXPECT_EQ(Show("打开", 3), Reply::No);
}

TEST_F(Boxes, PassOverAReplyThatIsNoButtonOfTheirs) {
  answers = {{"打开", "No", ""}, {"打开", "Retry", ""}, {"打开", "/a/path", ""}};
  EXPECT_EQ(Show("打开", 4), Reply::No);
  answers = {{"", "Yes", ""}};
  EXPECT_EQ(Show("处理完毕！", 0), Reply::Ok);
}

TEST_F(Boxes, NothingIsTriedAgainWhileStopping) {
  answers = {{"盘空间不足", "Retry", ""}};
  stopping = true;
  EXPECT_EQ(Show("/盘空间不足", 21), Reply::Cancel);
  EXPECT_EQ(Show("要打开输出目录吗？", 4), Reply::Yes);
}

TEST_F(Boxes, WaitBeforeARetry) {
  Show("打开", 4);
  EXPECT_EQ(clock.Slept(), 0);
  Show("重试", 21);
  EXPECT_GT(clock.Slept(), 0);
}

TEST_F(Boxes, ReportWhatTheyShowed) {
  Show("一", 4);
  boxes.Beep();
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{R"({"event":"box","text":"一","type":4,"title":"消息","answer":"Yes"})",
                                      R"({"event":"beep"})"}));
  EXPECT_EQ(recorder.LastBox(), "一");
  recorder.ClearLastBox();
  EXPECT_EQ(recorder.LastBox(), "");
}

struct Dialogs : testing::Test {
  std::vector<Answer> answers;
  Recorder recorder;
  BatchDialogs dialogs{answers, "/here", recorder};
};

TEST_F(Dialogs, AskForOneFileByTitleOrFilter) {
  answers.push_back({"导入裁剪区域", "/list.clt", ""});
  EXPECT_EQ(dialogs.OpenFile({"导入裁剪区域操作列表", "列表|*.clt", "/app", "我的"}), "/list.clt");
  EXPECT_EQ(dialogs.SaveFile({"保存", "列表|*.clt", "/app", "我的"}), "");
}

TEST_F(Dialogs, ChooseNothingWithoutAnAnswer) {
  EXPECT_TRUE(dialogs.OpenFiles("添加文件", "Png|*.png", host::Choice::Many).empty());
  EXPECT_EQ(dialogs.ChooseFolder("请选择输出目录", "/x"), std::nullopt);
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{
                R"({"event":"dialog","kind":"files","title":"添加文件","filter":"Png|*.png","answer":[]})",
                R"({"event":"dialog","kind":"folder","title":"请选择输出目录","filter":"","answer":""})"}));
}

TEST_F(Dialogs, ChooseAllPathsGivenForThem) {
  answers = {{"添加", "a.jpg", ""}, {"别的", "/no.jpg", ""}, {"*.png", "/b.png", ""}};
  EXPECT_EQ(dialogs.OpenFiles("添加文件", "Png|*.png", host::Choice::Many),
            (std::vector<std::string>{"/here/a.jpg", "/b.png"}));
  EXPECT_EQ(dialogs.OpenFiles("添加文件", "Png|*.png", host::Choice::One), (std::vector<std::string>{"/b.png"}));
}

TEST_F(Dialogs, ChooseTheLastFolderGiven) {
  answers = {{"输出目录", "/a", ""}, {"输出", "b", ""}};
  EXPECT_EQ(dialogs.ChooseFolder("请选择输出目录", ""), "/here/b");
}

TEST_F(Dialogs, AReplyChoosesNothing) {
  answers = {{"输出目录", "Cancel", ""}, {"添加", "确定", ""}};
  EXPECT_EQ(dialogs.ChooseFolder("请选择输出目录", ""), std::nullopt);
  EXPECT_TRUE(dialogs.OpenFiles("添加文件", "", host::Choice::Many).empty());
}

TEST(BatchShell, StartsHelpersAndReportsTheRest) {
  Recorder recorder;
  host::testing::RecordingShell real;
  BatchShell shell(real, recorder);
  shell.OpenFolder("/o");
  shell.Reveal("/o/a.jpg");
  shell.OpenBrowser("https://example.org");
  EXPECT_FALSE(shell.Started());
  EXPECT_EQ(shell.Start("PicHandler.exe", {"a"}, "/app"), host::kStarted);
  EXPECT_TRUE(shell.Started());
  EXPECT_EQ(real.Starts().size(), 1u);
  EXPECT_TRUE(real.Folders().empty() && real.Revealed().empty() && real.Addresses().empty());
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{R"({"event":"open","path":"/o","kind":"folder"})",
                                      R"({"event":"open","path":"/o/a.jpg","kind":"file"})",
                                      R"({"event":"open","path":"https://example.org","kind":"address"})"}));
}

TEST(BatchProcesses, AreLookedForOnceAHelperWasStarted) {
  Recorder recorder;
  host::testing::RecordingShell real;
  BatchShell shell(real, recorder);
  host::testing::ScriptedProcesses running;
  running.Add({7, "PicHandler.exe", "/app", true});
  BatchProcesses processes(running, shell);
  EXPECT_TRUE(processes.Running().empty());
  processes.EndAll();
  EXPECT_EQ(running.Scans(), 0);
  shell.Start("PicHandler.exe", {}, "/app");
  ASSERT_EQ(processes.Running().size(), 1u);
  EXPECT_EQ(processes.Running()[0].id, 7);
  processes.EndAll();
  EXPECT_EQ(running.Ended(), (std::vector<int>{7}));
}

TEST(BatchScreen, IsTheSameEverywhere) {
  BatchScreen screen;
  EXPECT_TRUE(screen.DesktopSize().Empty());
  EXPECT_EQ(screen.Dpi(), 96);
  EXPECT_EQ(screen.Wallpaper(), "");
}

TEST(LazySettings, MakeTheirStoreWhenAValueIsKept) {
  int made = 0;
  bool exists = false;
  LazySettings settings(
      [&] {
        ++made;
        return std::make_unique<host::testing::MemorySettings>();
      },
      [&] { return exists; });
  EXPECT_EQ(settings.Get("Quillon", "Default", "LInDir"), "");
  EXPECT_EQ(made, 0);
  settings.Set("Quillon", "Default", "LInDir", "/in");
  EXPECT_EQ(settings.Get("Quillon", "Default", "LInDir"), "/in");
  EXPECT_EQ(made, 1);
}

// A helper program may be the first to keep a value.
TEST(LazySettings, FindAStoreThatAnotherProcessMade) {
  int made = 0;
  LazySettings settings(
      [&] {
        ++made;
        return std::make_unique<host::testing::MemorySettings>();
      },
      [] { return true; });
  EXPECT_EQ(settings.Get("Quillon", "Default", "Exif"), "");
  EXPECT_EQ(made, 1);
}

}  // namespace
}  // namespace quillon::cli
