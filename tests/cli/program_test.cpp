// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The program itself, as its callers meet it.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <set>
#include <thread>

#include "cli/options.h"
#include "cli/program_fixture.h"
#include "cli/report/event.h"

namespace quillon::cli {
namespace {

TEST_F(ProgramTest, CutsAndSumsUp) {
  const Ran ran = Run(Cut({Picture("a.bmp"), Picture("b.bmp")}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(ran.out, "");
  EXPECT_THAT(ran.err, testing::MatchesRegex("写出 2，没有输出 0，略过 0，用时 [0-9.]+ 秒\n"));
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"a.jpg", "b.jpg"}));
}

TEST_F(ProgramTest, ReportsEveryKindOfEventWithItsFields) {
  const std::string a = Picture("a.bmp");
  const Ran ran = Run({"--json",          "--trace",         "--set",           "ChCutA=0",   "--set",
                       "TCutValue(1)=95", "--set",           "TCutValue(1)=10", "--answer",   "添加文件=" + a,
                       "--answer",        "输出目录=" + out, "--click",         "MenuOutDir", "--click",
                       "MenuAddFiles",    "--click",         "menuNormalCut",   "--print",    "CmbOutType"});
  EXPECT_EQ(ran.exit, 0) << ran.err << ran.out;
  std::set<std::string> kinds;
  for (const Json& event : Events(ran.out)) {
    const std::string kind = event.at("event");
    kinds.insert(kind);
    std::set<std::string> expected{"event"};
    for (const EventFormat& format : EventFormats()) {
      if (format.name == kind) expected.insert(format.fields.begin(), format.fields.end());
    }
    std::set<std::string> fields;
    for (const auto& [name, value] : event.items()) fields.insert(name);
    EXPECT_EQ(fields, expected) << event;
  }
  std::set<std::string> all;
  for (const EventFormat& format : EventFormats()) all.insert(format.name);
  EXPECT_EQ(kinds, all);
}

TEST_F(ProgramTest, TheGuideIsReportedWithItsAddress) {
  const Ran ran = Run({"--json", "--click", "MenuGuide"});
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_TRUE(EventsOf(ran.out, "box").empty()) << ran.out;
  const auto opened = EventsOf(ran.out, "open");
  ASSERT_EQ(opened.size(), 1u);
  EXPECT_EQ(opened[0].at("kind"), "address");
  EXPECT_TRUE(std::string(opened[0].at("path")).ends_with("/用户手册.md")) << opened[0];
}

TEST_F(ProgramTest, EventsHoldWhatHappened) {
  const std::string a = Picture("a.bmp");
  const Ran ran = Run(Cut({"a.bmp"}, {"--json"}));
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(ran.err, "");
  const auto files = EventsOf(ran.out, "file");
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0],
            (Json{{"event", "file"}, {"source", a}, {"output", out + "/a.jpg"}, {"result", "written"}, {"why", ""}}));
  const auto boxes = EventsOf(ran.out, "box");
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_EQ(boxes[0], (Json{{"event", "box"},
                            {"text", "处理完毕！失败：0\r\n要打开输出目录吗？"},
                            {"type", 36},
                            {"title", "消息"},
                            {"answer", "No"}}));
  const auto titles = EventsOf(ran.out, "title");
  ASSERT_FALSE(titles.empty());
  EXPECT_EQ(titles.back(), (Json{{"event", "title"}, {"text", "Quillon"}, {"window", "Form1"}}));
  const Json end = Events(ran.out).back();
  EXPECT_EQ(end.at("event"), "end");
  EXPECT_EQ(end.at("written"), 1);
  EXPECT_EQ(end.at("none"), 0);
  EXPECT_EQ(end.at("skipped"), 0);
  EXPECT_TRUE(end.at("seconds").is_number());
}

TEST_F(ProgramTest, PrintsForPeople) {
  const Ran ran = Run({"--set", "CmbOutType=png", "--print", "CmbOutType"});
  EXPECT_EQ(ran.exit, 0);
  EXPECT_EQ(ran.out, "Form1.CmbOutType = 1（png）\n    选项：jpg、png、gif、tif、bmp、pdf\n");
  EXPECT_EQ(ran.err, "");
}

TEST_F(ProgramTest, ExitsWithOneWhenAFileHasNoOutput) {
  folder.Write("empty.jpg", "");
  const Ran ran = Run(Cut({Picture("a.bmp"), "empty.jpg", "missing.jpg"}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_THAT(ran.err, HasSubstr("没有输出：" + folder.Path("empty.jpg") + "："));
  EXPECT_THAT(ran.err, HasSubstr("没有输出：" + folder.Path("missing.jpg") + "："));
  EXPECT_THAT(ran.err, HasSubstr("写出 1，没有输出 2，略过 0"));
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"a.jpg"}));
}

TEST_F(ProgramTest, ExitsWithTwoOnWrongArguments) {
  EXPECT_EQ(Run({}).exit, 2);
  EXPECT_EQ(Run({"--sett", "a=1"}).err, "quillon-batch: 不认识的选项 --sett\n");
  EXPECT_EQ(Run({"--sett", "a=1"}).exit, 2);
  const Ran unknown = Run(Cut({Picture("a.bmp")}, {"--set", "TQualty=1"}));
  EXPECT_EQ(unknown.exit, 2);
  EXPECT_THAT(unknown.err, HasSubstr("相近的有 Form1.TQuality"));
  EXPECT_TRUE(folder.Names("out").empty());
  const Ran refused = Run({"--set", "TQuality=50"});
  EXPECT_EQ(refused.exit, 2);
  EXPECT_EQ(refused.err, "quillon-batch: --set TQuality=50：Form1.TQuality 当前不可用：请先启用“压缩”\n");
}

TEST_F(ProgramTest, ARefusalLeavesWhatWasDoneBefore) {
  const Ran ran = Run({"--set", "ChCutA=0", "--out", out, "--click", "menuNormalCut", "--set", "TQuality=50", "--click",
                       "menuNormalCut", Picture("a.bmp")});
  EXPECT_EQ(ran.exit, 2);
  EXPECT_THAT(ran.err, HasSubstr("写出 1，没有输出 0"));
}

TEST_F(ProgramTest, ExitsWithThreeWhenStopped) {
  Pictures(400);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    BatchProcess process(Cut({"in"}, {"--json"}), folder.Path());
    ASSERT_TRUE(process.ReadTo("\"event\":\"file\"")) << signal;
    process.Signal(signal);
    const Ran ran = process.Wait();
    EXPECT_EQ(ran.exit, 3) << signal << ran.err;
    const Json end = Events(ran.out).back();
    EXPECT_EQ(end.at("event"), "end");
    EXPECT_GT(end.at("skipped"), 0);
    EXPECT_EQ(end.at("written").get<int>() + end.at("skipped").get<int>(), 400);
    EXPECT_TRUE(process.Temporaries().empty());
    for (const std::string& name : folder.Names("out")) EXPECT_TRUE(name.ends_with(".jpg")) << name;
    fs::remove_all(out);
    fs::create_directories(out);
  }
}

// The run waits in the middle of its events until they are read, so the signals reach it before its end.
TEST_F(ProgramTest, AnInterruptLeavesWholeFilesAndNoDraft) {
  constexpr int kPictures = 400;
  Pictures(kPictures);
  for (const std::vector<int>& signals : {std::vector{SIGINT}, std::vector{SIGTERM, SIGINT}}) {
    BatchProcess process(Cut({"in"}, {"--json"}), folder.Path(), ErrorsTo::File, OutTo::SmallPipe);
    ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
    process.SignalTogether(signals);
    const Ran ran = process.Wait();
    EXPECT_EQ(ran.exit, 3) << ran.err;
    ASSERT_EQ(EventsOf(ran.out, "end").size(), 1u);
    const Json end = Events(ran.out).back();
    EXPECT_EQ(end.at("event"), "end");
    EXPECT_GT(end.at("skipped"), 0);
    EXPECT_EQ(end.at("none"), 0);
    EXPECT_EQ(end.at("written").get<int>() + end.at("skipped").get<int>(), kPictures);
    const std::vector<std::string> names = folder.Names("out");
    EXPECT_EQ(names.size(), end.at("written").get<std::size_t>());
    for (const std::string& name : names) {
      EXPECT_TRUE(name.starts_with("p") && name.ends_with(".jpg")) << name;
      EXPECT_TRUE(folder.Read("out/" + name).ends_with("\xFF\xD9")) << name;
    }
    EXPECT_TRUE(process.Temporaries().empty());
    fs::remove_all(out);
    fs::create_directories(out);
  }
}

TEST_F(ProgramTest, AFolderMayBeNamedFromTheCurrentOne) {
  Picture("in/deep/a.bmp");
  for (const char* name : {"in", "./in/", "deep/../in"}) {
    fs::remove_all(out);
    fs::create_directories(out);
    fs::create_directories(folder.Path("deep"));
    const Ran ran =
        Run({"--set", "ChCutA=0", "--set", "ChBig=1", "--set", "ChSubFold=1", "--set", "ChKeepDir=1", "--set",
             std::string("LInDir=") + name, "--out", "out", "--answer", "打开输出目录=No", "--click", "menuNormalCut"});
    EXPECT_EQ(ran.exit, 0) << ran.err;
    EXPECT_TRUE(fs::exists(out + folder.Path("in/deep/a.jpg"))) << name;
  }
}

TEST_F(ProgramTest, FilteredPicturesAreReported) {
  Picture("in/a.bmp");
  const Ran ran = Run(Cut({"in", Picture("b.bmp")}, {"--json", "--open", "FBaseOpt", "--set", "FBaseOpt.ChFilter=1",
                                                     "--set", "FBaseOpt.TSmalS(0)=41"}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  const auto files = EventsOf(ran.out, "file");
  ASSERT_EQ(files.size(), 2u) << ran.out;
  for (const Json& file : files) {
    EXPECT_EQ(file.at("result"), "skipped");
    EXPECT_THAT(file.at("why").get<std::string>(), testing::StartsWith("宽或高不足 41x"));
  }
}

// Nobody reads what it writes, so it cannot go on by itself.
TEST_F(ProgramTest, ASecondSignalEndsItAtOnce) {
  Pictures(1000);
  BatchProcess process(Cut({"in"}, {"--json", "--trace"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  const Ran ran = process.Insist(SIGINT);
  EXPECT_EQ(ran.exit, 3);
  EXPECT_TRUE(process.Temporaries().empty());
}

TEST_F(ProgramTest, WhatAKilledRunLeftIsRemovedByTheNext) {
  Pictures(400);
  const std::string temporary = folder.Path("tmp");
  fs::create_directories(temporary);
  BatchProcess process(Cut({"in"}, {"--json"}), folder.Path(), temporary);
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  process.Signal(SIGKILL);
  EXPECT_EQ(process.Wait().signal, SIGKILL);
  EXPECT_EQ(process.Temporaries().size(), 1u);
  EXPECT_EQ(BatchProcess({"--print", "ChOver"}, "/", temporary).Wait().exit, 0);
  EXPECT_TRUE(process.Temporaries().empty());
}

TEST_F(ProgramTest, RunsGoSideBySide) {
  Pictures(30);
  const std::string temporary = folder.Path("tmp");
  std::vector<std::unique_ptr<BatchProcess>> processes;
  for (int i = 0; i < 4; ++i) {
    const std::string own = folder.Path("out" + std::to_string(i));
    fs::create_directories(own);
    processes.push_back(
        std::make_unique<BatchProcess>(Cut({"in"}, {"--json", "--out", own}), folder.Path(), temporary));
  }
  for (auto& process : processes) EXPECT_EQ(process->Wait().exit, 0);
  for (int i = 0; i < 4; ++i) {
    const std::string own = "out" + std::to_string(i);
    EXPECT_EQ(folder.Names(own).size(), 30u);
    EXPECT_EQ(folder.Read(own + "/p7.jpg"), folder.Read("out0/p7.jpg"));
  }
  EXPECT_TRUE(processes[0]->Temporaries().empty());
}

TEST_F(ProgramTest, KeepsNoSettings) {
  Run(Cut({Picture("a.bmp")}));
  const Ran ran = Run({"--print", "LOutDir"});
  EXPECT_EQ(ran.out, "Form1.LOutDir = 输出目录未指定\n");
}

TEST_F(ProgramTest, AcceptsOddNames) {
  const std::vector<std::string> stems{"-lead",       "--set",        "a b",
                                       "new\nline",   "%d %s",        "[1]",
                                       "a=b",         "\xD6\xD0\xCE", "引号\"'",
                                       "back\\slash", "*?",           "{}",
                                       "~",           "a.b.c",        std::string(251, 'x')};
  std::vector<std::string> files;
  for (const std::string& stem : stems) {
    Picture(stem + ".bmp");
    files.push_back(stem + ".bmp");
  }
  const Ran ran = Run(Cut(files, {"--json"}));
  EXPECT_EQ(ran.exit, 0) << ran.err << ran.out;
  for (const std::string& stem : stems) EXPECT_TRUE(folder.Exists("out/" + stem + ".jpg")) << stem;
  const std::string hex = "d6d0ce2e6a7067";
  const auto events = EventsOf(ran.out, "file");
  EXPECT_TRUE(std::any_of(events.begin(), events.end(), [&](const Json& event) {
    return event.contains("bytes") && event["bytes"]["output"].get<std::string>().ends_with(hex);
  }));
}

TEST_F(ProgramTest, AcceptsAnOutputFolderWithAnOddName) {
  const std::string odd = folder.Path("[ 100%\xFF ]");
  fs::create_directories(odd);
  const Ran ran =
      Run({"--set", "ChCutA=0", "--out", odd, "--answer", "打开=No", "--click", "menuNormalCut", Picture("a.bmp")});
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_TRUE(fs::exists(odd + "/a.jpg"));
}

TEST_F(ProgramTest, RunsAScript) {
  Picture("a.bmp");
  folder.Write("job.json", R"js({"steps": [{"files": "a.bmp"}, {"set": {"ChCutA": false, "TCutValue(3)": 10
}
},
                               {"out": "out"}, {"click": "menuNormalCut"}, {"print": ["TCutValue(3)"]}],
                               "answers": {"打开输出目录": "否"}
})js");
  const Ran ran = Run({"--json", "--script", "job.json"});
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_TRUE(folder.Exists("out/a.jpg"));
  EXPECT_EQ(EventsOf(ran.out, "print").at(0).at("value"), "10");
  EXPECT_EQ(EventsOf(ran.out, "box").at(0).at("answer"), "No");
}

TEST_F(ProgramTest, NamesTheFileAndPlaceOfAWrongScript) {
  folder.Write("bad.json", "{\"steps\":\n[{\"click\" \"M\"}]}");
  folder.Write("verb.json", R"({"steps": [{"clik": "M"}]})");
  folder.Write("name.json", R"({"steps": [{"print": "LStatus"}, {"set": {"Nix": 1}}]})");
  EXPECT_EQ(Run({"--script", "bad.json"}).err, "quillon-batch: bad.json 第 2 行：不是正确的 JSON\n");
  EXPECT_EQ(Run({"--script", "verb.json"}).err, "quillon-batch: verb.json 第 1 步：不认识的步骤 \"clik\"\n");
  EXPECT_THAT(Run({"--script", "name.json"}).err, HasSubstr("name.json 第 2 步：没有控件 Nix"));
  EXPECT_EQ(Run({"--script", "none.json"}).err, "quillon-batch: 无法读取脚本文件 none.json\n");
  for (const char* file : {"bad.json", "verb.json", "name.json", "none.json"})
    EXPECT_EQ(Run({"--script", file}).exit, 2);
}

TEST_F(ProgramTest, WritesHelpAndVersion) {
  EXPECT_EQ(Run({"--help"}).out, HelpText());
  EXPECT_EQ(Run({"-h"}).exit, 0);
  EXPECT_EQ(Run({"--version"}).out, VersionText());
}

TEST_F(ProgramTest, ListsControls) {
  const Ran ran = Run({"--list-controls"});
  EXPECT_EQ(ran.exit, 0);
  EXPECT_THAT(ran.out, HasSubstr("\nForm1.TCutValue(3)\tTextBox\t5\t"));
  EXPECT_THAT(ran.out, HasSubstr("\nFBaseOpt.ChToGray\tCheckBox\t0\t"));
  const Ran json = Run({"--list-controls", "--json"});
  EXPECT_EQ(EventsOf(json.out, "print").size(),
            static_cast<std::size_t>(std::count(ran.out.begin(), ran.out.end(), '\n')));
}

// How often the progress line is drawn is tested with a clock of the test's own, in runner_test.cpp.
TEST_F(ProgramTest, WritesItsSumsOnATerminal) {
  Pictures(3);
  BatchProcess process(Cut({"in"}), folder.Path(), ErrorsTo::Terminal);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 0);
  EXPECT_THAT(ran.err, HasSubstr("写出 3，没有输出 0"));
}

TEST_F(ProgramTest, GoesOnWhenNobodyHearsItsEvents) {
  BatchProcess process(Cut({Picture("a.bmp")}, {"--json"}), folder.Path());
  const Ran ran = process.WaitUnheard();
  EXPECT_EQ(ran.exit, 0);
  EXPECT_EQ(ran.err, "quillon-batch: 标准输出无法写入，以后的事件没有写出\n");
  EXPECT_TRUE(folder.Exists("out/a.jpg"));
}

TEST_F(ProgramTest, EndsWithOneIfItsEventsAreLost) {
  BatchProcess process(Cut({Picture("a.bmp")}, {"--json"}), folder.Path(), ErrorsTo::File, OutTo::FullDevice);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(ran.err, "quillon-batch: 标准输出无法写入（磁盘空间不足），以后的事件没有写出\n");
  EXPECT_TRUE(folder.Exists("out/a.jpg"));
}

TEST_F(ProgramTest, StepsAfterTheMainWindowClosedAreRefused) {
  const Ran ran = Run({"--answer", "关闭程序=Ok", "--close", "Form1", "--print", "ChOver"});
  EXPECT_EQ(ran.exit, 2);
  EXPECT_EQ(ran.out, "");
  EXPECT_THAT(ran.err, HasSubstr("程序已经关闭"));
}

TEST_F(ProgramTest, NeedsAFolderForTemporaryFiles) {
  const Ran ran = BatchProcess({"--print", "ChOver"}, "/", "/proc/self/fdinfo").Wait();
  EXPECT_EQ(ran.exit, 1);
  EXPECT_THAT(ran.err, HasSubstr("无法准备临时文件夹 /proc/self/fdinfo："));
}

TEST_F(ProgramTest, DoesWithExistingOutputsAsAsked) {
  const std::string source = Picture("in/a.bmp");
  const auto cut = [&](const std::vector<std::string>& more) { return Run(Cut({source}, more)); };
  EXPECT_EQ(cut({}).exit, 0);
  EXPECT_EQ(cut({"--on-existing", "rename"}).exit, 0);
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"a(2).jpg", "a.jpg"}));
  const Ran skipped = cut({"--on-existing", "skip", "--json"});
  EXPECT_EQ(skipped.exit, 0);
  EXPECT_EQ(Events(skipped.out).back().at("skipped"), 1);
  const Ran replaced = cut({"--jobs", "2", "--on-existing", "replace", "--json"});
  EXPECT_EQ(replaced.exit, 0);
  EXPECT_EQ(Events(replaced.out).back().at("written"), 1);
  EXPECT_EQ(folder.Names("out").size(), 2u);
}

TEST_F(ProgramTest, TheSameCommandTwiceLeavesItsResultsAlone) {
  Picture("in/a.bmp");
  out = folder.Path("in/out");
  fs::create_directories(out);
  const auto call = [this] { return BatchProcess(Cut({"in"}, {"--json"}), folder.Path(), folder.Path("tmp")).Wait(); };
  EXPECT_EQ(Events(call().out).back().at("written"), 1);
  const Ran second = call();
  EXPECT_EQ(second.exit, 0);
  const auto files = EventsOf(second.out, "file");
  ASSERT_EQ(files.size(), 2u) << second.out;
  EXPECT_EQ(files[0].at("source"), out + "/a.jpg");
  EXPECT_EQ(files[0].at("result"), "skipped");
  EXPECT_EQ(files[1].at("source"), folder.Path("in/a.bmp"));
  EXPECT_EQ(files[1].at("result"), "written");
  EXPECT_THAT(second.err, HasSubstr("quillon-batch: " + out + "：输出目录中以前写出的结果：1 个，未加入\n"));
}

TEST_F(ProgramTest, AWatchIsNotSplit) {
  const std::string source = Picture("in/a.bmp");
  for (const std::vector<std::string>& split : {std::vector<std::string>{"--jobs", "2"}, {"--shard", "1/2"}}) {
    std::vector<std::string> arguments = split;
    arguments.insert(arguments.end(), {"--set", "FCutTime.LDir=" + folder.Path("in"), "--click", "FCutTime.CmdDo"});
    const Ran ran = Run(arguments);
    EXPECT_EQ(ran.exit, 2);
    EXPECT_THAT(ran.err, HasSubstr("定时裁剪只能由一个进程做"));
  }
}

}  // namespace
}  // namespace quillon::cli
