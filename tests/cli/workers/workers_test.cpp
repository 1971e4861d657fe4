// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Many processes for one job, and shares of it.
#include "cli/workers/workers.h"

#include <algorithm>
#include <csignal>
#include <map>
#include <set>
#include <sstream>

#include "cli/recorder.h"
#include "cli/report/json_io.h"
#include "cli/workers/worker_journals.h"
#include "cli/workers/worker_lines.h"
#include "cli/workers/workers_fixture.h"
#include "host/posix/posix_clock.h"
#include "host/posix/sqlite_journals.h"
#include "host/testing/test_host.h"

namespace quillon::cli {
namespace {

TEST_F(WorkersTest, AddUpToOneRun) {
  Pictures(60);
  const Ran ran = Run(Cut({"in"}, {"--json", "--jobs", "3"}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(EventsOf(ran.out, "file").size(), 60u);
  EXPECT_EQ(Results(ran.out).size(), 60u);
  EXPECT_EQ(folder.Names("out").size(), 60u);
  EXPECT_EQ(EventsOf(ran.out, "end").size(), 1u);
  EXPECT_EQ(EventsOf(ran.out, "box").size(), 3u);
  ExpectSums(ran);
}

TEST_F(WorkersTest, ReportInPlainTextToo) {
  Pictures(10);
  folder.Write("in/bad.jpg", "");
  BatchProcess process(Cut({"in"}, {"--jobs=2"}), folder.Path(), ErrorsTo::Terminal);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 1);
  EXPECT_THAT(ran.err, HasSubstr("没有输出：" + folder.Path("in/bad.jpg")));
  EXPECT_THAT(ran.err, HasSubstr("写出 10，没有输出 1，略过 0"));
}

TEST_F(WorkersTest, AShardMayBeEmpty) {
  const Ran ran = Run(Cut({Picture("a.bmp")}, {"--json", "--jobs", "5"}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(ran.err, "");
  EXPECT_EQ(Results(ran.out).size(), 1u);
  EXPECT_EQ(EventsOf(ran.out, "box").size(), 1u) << "those without files say nothing";
}

TEST_F(WorkersTest, FilesThatCannotBeListedAreReportedOnce) {
  folder.Write("notes.txt", "x");
  const Ran ran = Run(Cut({Picture("a.bmp"), "missing.jpg", "notes.txt"}, {"--json", "--jobs", "4"}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(EventsOf(ran.out, "file").size(), 3u);
  ExpectSums(ran);
}

TEST_F(WorkersTest, OutputsOfOneNameCountOnce) {
  for (int i = 0; i < 12; ++i) Picture("in/" + std::to_string(i) + "/x.bmp");
  const Ran ran = Run(Cut({"in"}, {"--json", "--jobs", "3"}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(folder.Names("out"), std::vector<std::string>{"x.jpg"});
  const auto results = Results(ran.out);
  EXPECT_EQ(results.size(), 12u);
  EXPECT_EQ(CountOf(results, "written"), 1u);
  ExpectSums(ran);
}

TEST_F(WorkersTest, WrongArgumentsAreReportedOnce) {
  const Ran ran = Run(Cut({Picture("a.bmp")}, {"--jobs", "3", "--set", "TQuality=50"}));
  EXPECT_EQ(ran.exit, 2);
  EXPECT_THAT(ran.err, HasSubstr("Form1.TQuality 当前不可用"));
  EXPECT_EQ(ran.err.find("Form1.TQuality"), ran.err.rfind("Form1.TQuality"));
}

TEST_F(WorkersTest, PrintOnce) { EXPECT_EQ(Run({"--jobs", "3", "--print", "ChOver"}).out, "Form1.ChOver = 0\n"); }

TEST_F(WorkersTest, AStopReachesAll) {
  Pictures(800);
  BatchProcess process(Cut({"in"}, {"--json", "--jobs", "2"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  const std::vector<pid_t> children = process.Children();
  EXPECT_EQ(children.size(), 2u);
  process.Signal(SIGINT);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 3);
  for (const pid_t child : children) EXPECT_NE(kill(child, 0), 0);
  EXPECT_TRUE(process.Temporaries().empty());
  const auto results = Results(ran.out);
  // A worker that was still listing reports no file.
  EXPECT_LE(results.size(), 800u);
  EXPECT_LT(CountOf(results, "written"), 800u);
  EXPECT_EQ(CountOf(results, "none"), 0u);
  ExpectSums(ran);
}

TEST_F(WorkersTest, AWorkerThatDiesCostsOneFileAtMost) {
  Pictures(600);
  BatchProcess process(Cut({"in"}, {"--json", "--jobs", "2"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  const std::vector<pid_t> children = process.Children();
  ASSERT_EQ(children.size(), 2u);
  kill(children[0], SIGKILL);
  const Ran ran = process.Wait();
  const auto results = Results(ran.out);
  EXPECT_EQ(results.size(), 600u);
  EXPECT_LE(CountOf(results, "none"), 1u);
  EXPECT_EQ(ran.exit, CountOf(results, "none") > 0 ? 1 : 0) << ran.err;
  for (const Json& file : EventsOf(ran.out, "file")) {
    if (file.at("result") != "none") continue;
    EXPECT_THAT(file.at("why").get<std::string>(), HasSubstr("处理进程意外结束（信号 9）"));
  }
  ExpectSums(ran);
  for (const auto& [source, result] : results) {
    const std::string name = fs::path(source).stem();
    EXPECT_TRUE(result != "written" || folder.Exists("out/" + name + ".jpg")) << source;
  }
}

// The worker that replaces a dead one cuts no source twice.
TEST_F(WorkersTest, OverwrittenSourcesSurviveTheDeathOfAWorker) {
  const std::string before = BmpPicture(40, 30);
  const std::vector<std::string> over{"--json", "--set", "ChOver=1", "--set", "TCutValue(0)=50"};
  folder.Write("one.bmp", before);
  ASSERT_EQ(Run(Cut({"one.bmp"}, over)).exit, 0);
  const std::string after = folder.Read("one.bmp");
  for (int i = 0; i < 300; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", before);
  std::vector<std::string> jobs = over;
  jobs.insert(jobs.end(), {"--jobs", "2"});
  BatchProcess process(Cut({"in"}, jobs), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  for (const pid_t child : process.Children()) kill(child, SIGKILL);
  const Ran ran = process.Wait();
  const auto results = Results(ran.out);
  EXPECT_EQ(results.size(), 300u);
  for (const auto& [source, result] : results) {
    const std::string now = folder.Read(source.substr(folder.Path().size() + 1));
    EXPECT_TRUE(now == after || (result == "none" && now == before)) << source;
  }
}

// In the list, the first files of all folders come before all second files.
TEST_F(WorkersTest, OneFileOfAFolderIsHandledBeyondTheDeathOfAWorker) {
  constexpr int kFolders = 150;
  std::vector<std::string> names;
  for (const char* name : {"/1.bmp", "/2.bmp"}) {
    for (int i = 0; i < kFolders; ++i) names.push_back(Picture("in/" + std::to_string(i) + name));
  }
  const std::vector<std::string> more{
      "--json", "--jobs", "2", "--set", "ChKeepDir=1", "--open", "FBaseOpt", "--set", "FBaseOpt.ChOmitFolds=1"};
  BatchProcess process(Cut(names, more), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  for (const pid_t child : process.Children()) kill(child, SIGKILL);
  const Ran ran = process.Wait();
  const auto results = Results(ran.out);
  EXPECT_EQ(results.size(), 2u * kFolders);
  std::map<std::string, int> written;
  for (const auto& [source, result] : results) written[fs::path(source).parent_path()] += result == "written";
  for (const auto& [path, count] : written) EXPECT_EQ(count, 1) << path;
}

TEST_F(WorkersTest, StopWhenTheOneThatStartedThemIsGone) {
  Pictures(1000);
  BatchProcess process(Cut({"in"}, {"--json", "--jobs", "2"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  const std::vector<pid_t> children = process.Children();
  ASSERT_EQ(children.size(), 2u);
  process.Signal(SIGKILL);
  EXPECT_EQ(process.Wait().signal, SIGKILL);
  for (const pid_t child : children) {
    while (kill(child, 0) == 0) {
    }
  }
  EXPECT_LT(folder.Names("out").size(), 1000u);
}

// --- Workers that are a shell script. Each start appends a line to a log. The script finds its shard in its arguments,
// and the done list and whether it replaces a dead worker in its environment.
class PlayedWorkersTest : public testing::Test {
 protected:
  Exit Perform(const std::string& script, const std::vector<std::string>& files) {
    plan_.steps.push_back({Verb::Files, "", "", files, ""});
    std::string text = "#!/bin/sh\necho start >>'";
    text.append(Log()).append("'\n").append(script);
    const std::string program = world_.folder.Write("worker", text);
    fs::permissions(program, fs::perms::owner_all);
    Workers workers(
        plan_, {}, world_.folder.Path(), world_.files, journals_, clock_, recorder_, [this] { return stopping_; },
        program);
    return workers.Run();
  }
  std::string Log() const { return world_.folder.Path("log"); }
  std::size_t Starts() const {
    const std::string log = world_.folder.Read("log");
    return static_cast<std::size_t>(std::count(log.begin(), log.end(), '\n'));
  }
  static std::string Says(const std::string& line) { return "printf '%s\\n' '" + line + "'\n"; }
  static std::string SaysFile(const job::FileResult& file) { return Says(JsonLine(FileEvent(file))); }
  static std::string SaysEnd() { return Says(JsonLine(EndEvent({}))); }
  std::map<std::string, std::string> Whys() const {
    std::map<std::string, std::string> whys;
    for (const Event& event : recorder_.Of(EventKind::File)) whys[event.Text("source")] = event.Text("why");
    return whys;
  }

  std::string Sums() const {
    std::string sums;
    const Event end = recorder_.Of(EventKind::End).at(0);
    for (const Field& sum : end.fields) {
      if (const auto* count = std::get_if<std::int64_t>(&sum.value)) {
        sums.append(sums.empty() ? "" : ", ").append(std::to_string(*count)).append(" ").append(sum.name);
      }
    }
    return sums;
  }

  host::testing::TestHost world_;
  host::posix::SqliteJournals journals_{world_.folder.Path("journals")};
  host::posix::PosixClock clock_;
  Recorder recorder_;
  Plan plan_;
  bool stopping_ = false;
};

using DyingWorkersTest = PlayedWorkersTest;

TEST_F(DyingWorkersTest, OneThatDiesWhileItListsCostsTheFileItMeasured) {
  const std::string good = JsonLine(FileEvent({0, "/good.jpg", "/out/good.jpg", job::Result::Written, ""}));
  const std::string end = JsonLine(EndEvent({1, 0, 0, 0.1, false}));
  // The first worker does not name its current file; those that replace it do.
  const Exit exit = Perform("if grep -qs bad \"$QUILLON_BATCH_WORKER\"; then\n" + Says(good) + Says(end) +
                                "exit 0\nfi\n"
                                "if [ -n \"$QUILLON_BATCH_RECOVERING\" ]; then\n" +
                                Says(StartedLine("/good.jpg")) + Says(StartedLine("/bad.jpg")) + "fi\nkill -9 $$\n",
                            {"/good.jpg", "/bad.jpg"});
  EXPECT_EQ(exit, Exit::SomeWithout);
  EXPECT_EQ(Starts(), 3u);
  EXPECT_EQ(Whys(), (std::map<std::string, std::string>{
                        {"/good.jpg", ""}, {"/bad.jpg", "处理进程意外结束（信号 9），这个文件可能没有处理完"}}));
}

TEST_F(DyingWorkersTest, WhatNoneCouldDoIsNamed) {
  const std::string folder = world_.folder.Path("folder");
  fs::create_directories(folder);
  EXPECT_EQ(Perform("kill -9 $$\n", {"/a.jpg", folder}), Exit::SomeWithout);
  EXPECT_EQ(Starts(), 3u);
  EXPECT_EQ(Whys(), (std::map<std::string, std::string>{
                        {"/a.jpg", "第 1 个处理进程意外结束（信号 9），这个文件没有处理"},
                        {folder, "第 1 个处理进程意外结束（信号 9），其中由它负责的文件没有处理完"}}));
}

TEST_F(DyingWorkersTest, TheNextReceivesEverySource) {
  const std::string good = JsonLine(FileEvent({0, "/good.jpg", "/out/good.jpg", job::Result::Written, ""}));
  const std::string bad = JsonLine(FileEvent({0, "/bad.jpg", "", job::Result::None, "damaged"}));
  Perform(
      "if [ -n \"$QUILLON_BATCH_RECOVERING\" ]; then\ntr '\\0' '\\n' <\"$QUILLON_BATCH_WORKER\" | LC_ALL=C sort >'" +
          world_.folder.Path("received") + "'\n" + SaysEnd() + "exit 0\nfi\n" + Says(good) + Says(bad) +
          Says(StartedLine("/killer.jpg")) + "kill -9 $$\n",
      {});
  EXPECT_EQ(world_.folder.Read("received"), "+/good.jpg\n-/bad.jpg\n-/killer.jpg\n");
}

// A region without output says nothing of those that were written.
TEST_F(DyingWorkersTest, EachRegionOfASourceCounts) {
  const std::string source = "/in/a.bmp";
  Perform(SaysFile({0, source, "/out/a_1.bmp", job::Result::Written, ""}) +
              SaysFile({0, source, "", job::Result::None, "empty"}) +
              SaysFile({0, source, "/out/a_3.bmp", job::Result::Written, ""}) + SaysEnd() + "exit 1\n",
          {});
  EXPECT_EQ(Sums(), "2 written, 1 none, 0 skipped");
}

TEST_F(DyingWorkersTest, OneThatDiesBetweenTwoRegionsCostsTheRestOfThePicture) {
  const std::string source = "/in/a.bmp";
  Perform("if [ -n \"$QUILLON_BATCH_RECOVERING\" ]; then\n" + SaysEnd() + "exit 0\nfi\n" + Says(StartedLine(source)) +
              SaysFile({0, source, "/out/a_1.bmp", job::Result::Written, ""}) + Says(StartedLine(source)) +
              "kill -9 $$\n",
          {});
  EXPECT_EQ(Sums(), "1 written, 1 none, 0 skipped");
  EXPECT_EQ(Whys()[source], "处理进程意外结束（信号 9），这个文件可能没有处理完");
}

TEST_F(DyingWorkersTest, ALostOutputIsRevoked) {
  const job::FileResult lost{0, "/in/a.bmp", "", job::Result::None, "lost"};
  Perform(SaysFile({0, "/in/a.bmp", "/out/a.jpg", job::Result::Written, ""}) +
              SaysFile({0, "/in/b.bmp", "/out/b.jpg", job::Result::Written, ""}) +
              Says(JsonLine(LostEvent(lost, "/out/a.jpg"))) + SaysEnd() + "exit 1\n",
          {});
  EXPECT_EQ(Sums(), "1 written, 1 none, 0 skipped");
}

// The loss is reported when the other source takes the name; the worker of the first source finds it later.
TEST_F(DyingWorkersTest, AnOutputThatAnotherSourceOverwroteIsRevokedOnce) {
  const job::FileResult lost{0, "/in/a.bmp", "", job::Result::None, "lost"};
  Perform(SaysFile({0, "/in/a.bmp", "/out/x.jpg", job::Result::Written, ""}) +
              SaysFile({0, "/in/b.bmp", "/out/x.jpg", job::Result::Written, ""}) +
              Says(JsonLine(LostEvent(lost, "/out/x.jpg"))) + SaysEnd() + "exit 1\n",
          {});
  EXPECT_EQ(Sums(), "1 written, 1 none, 0 skipped");
}

// For example by a picture without a size, or by a full disk that the user gives up.
TEST_F(PlayedWorkersTest, OneThatStopsByItselfEndsTheRun) {
  plan_.jobs = 2;
  const Exit exit = Perform("case \"$*\" in\n*--shard=1/*)\n" + SaysEnd() +
                                "exit 3;;\nesac\ntrap 'exit 3' TERM\nwhile :; do sleep 0.01; done\n",
                            {});
  EXPECT_EQ(exit, Exit::Stopped);
}

TEST_F(PlayedWorkersTest, KnowHowManyTheyAre) {
  plan_.jobs = 3;
  plan_.shard = {1, 2, ""};
  Perform("echo $* $QUILLON_BATCH_AMONG >>'" + world_.folder.Path("received") + "'\n" + SaysEnd() + "exit 0\n", {});
  std::istringstream received(world_.folder.Read("received"));
  std::set<std::string> lines;
  for (std::string line; std::getline(received, line);) lines.insert(line);
  EXPECT_EQ(lines, (std::set<std::string>{"--json --shard=2/6 3", "--json --shard=4/6 3", "--json --shard=6/6 3"}));
}

// Otherwise the replacement would cut overwritten sources again.
TEST_F(DyingWorkersTest, ThereIsNoReplacementWithoutADoneList) {
  world_.faults.Set({.call = host::testing::DiskCall::Write,
                     .error = ENOSPC,
                     .length = host::testing::Fault::Length::ForEver,
                     .pathHolds = "done-"});
  EXPECT_EQ(Perform(SaysFile({0, "/good.jpg", "/out/good.jpg", job::Result::Written, ""}) + "kill -9 $$\n",
                    {"/good.jpg", "/other.jpg"}),
            Exit::SomeWithout);
  EXPECT_EQ(Starts(), 1u);
  EXPECT_EQ(Whys().count("/other.jpg"), 1u);
}

TEST_F(DyingWorkersTest, NothingStartsIfTheRecordsCannotBeWritten) {
  fs::create_directories(world_.folder.Path("records"));
  EXPECT_EQ(Perform(SaysEnd() + "exit 0\n", {"/a.jpg"}), Exit::SomeWithout);
  EXPECT_FALSE(world_.folder.Exists("log"));
  EXPECT_EQ(recorder_.Of(EventKind::End).size(), 1u);
  EXPECT_EQ(recorder_.Finished(), 1);
}

// --- Stale outputs: what one worker could not make, another may have written.

class StaleOutputsOfWorkersTest : public PlayedWorkersTest {
 protected:
  // The first of two workers could not make out/x.jpg, and an older file of that name exists. The second runs `second`.
  Exit PerformBeside(const std::string& second) {
    plan_.jobs = 2;
    world_.folder.Write("out/x.jpg", "it");
    const std::string first = SaysFile({0, "/1/x.bmp", "", job::Result::None, "damaged"}) + Says(StaleOutputLine(It()));
    return Perform("case \"$*\" in\n*--shard=1/*)\n" + first + SaysEnd() + "exit 1;;\nesac\n" + second, {});
  }
  std::string It() const { return world_.folder.Path("out/x.jpg"); }
  bool Stands() const { return world_.folder.Exists("out/x.jpg"); }
};

TEST_F(StaleOutputsOfWorkersTest, GoToTheTrashAtTheEnd) {
  EXPECT_EQ(PerformBeside("[ -e '" + It() + "' ] || exit 7\n" + SaysEnd() + "exit 0\n"), Exit::SomeWithout);
  EXPECT_FALSE(Stands());
  EXPECT_EQ(world_.folder.Read("data/Trash/files/x.jpg"), "it");
}

TEST_F(StaleOutputsOfWorkersTest, AreNoneThatAnotherHasMade) {
  EXPECT_EQ(PerformBeside(SaysFile({0, "/2/x.bmp", It(), job::Result::Written, ""}) + SaysEnd() + "exit 0\n"),
            Exit::SomeWithout);
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, AreNoneThatAnotherHasMadeBesideOthers) {
  PerformBeside(SaysFile({0, "/2/x.bmp", "/out/w.jpg", job::Result::Written, "", {It()}}) + SaysEnd() + "exit 0\n");
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, AreNoneOfAnEarlierPartOfTheJob) {
  PerformBeside(SaysFile({0, "/2/x.bmp", It(), job::Result::Skipped, "done"}) + SaysEnd() + "exit 0\n");
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, AreNoSources) {
  PerformBeside(SaysFile({0, It(), "/out/z.jpg", job::Result::Written, ""}) + SaysEnd() + "exit 0\n");
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, StayIfAWorkerDied) {
  PerformBeside("kill -9 $$\n");
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, StayIfAWorkerBrokeOff) {
  PerformBeside("exit 1\n");
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, StayInARunThatIsStopped) {
  EXPECT_EQ(PerformBeside(SaysEnd() + "exit 3\n"), Exit::Stopped);
  EXPECT_TRUE(Stands());
}

TEST_F(StaleOutputsOfWorkersTest, StayInAShard) {
  plan_.shard = {0, 2, ""};
  PerformBeside(SaysEnd() + "exit 0\n");
  EXPECT_TRUE(Stands());
}

// --- Journals: what is kept for a run that is continued.

class JournalsOfWorkersTest : public PlayedWorkersTest {
 protected:
  // The first of two workers has done its part of a job.
  void PerformBeside(const std::string& second) {
    plan_.jobs = 2;
    for (const char* job : {"one", "two"}) journals_.Open({job})->Set("/a.jpg", "done", "1");
    Perform("case \"$*\" in\n*--shard=1/*)\n" + Says(JournalLine({"one"})) + Says(JournalDoneLine({"one"})) +
                SaysEnd() + "exit 0;;\nesac\n" + second,
            {});
  }
  std::size_t Kept() {
    std::size_t kept = 0;
    for (const char* job : {"one", "two"}) kept += journals_.Open({job})->Count("done");
    return kept;
  }
};

TEST_F(JournalsOfWorkersTest, GoWhenAllHaveDoneTheirParts) {
  PerformBeside(Says(JournalLine({"two"})) + Says(JournalDoneLine({"two"})) + SaysEnd() + "exit 1\n");
  EXPECT_EQ(Kept(), 0u);
}

TEST_F(JournalsOfWorkersTest, StayIfOneHasNotDoneItsPart) {
  PerformBeside(Says(JournalLine({"two"})) + SaysEnd() + "exit 0\n");
  EXPECT_EQ(Kept(), 2u);
}

TEST_F(JournalsOfWorkersTest, StayIfOneIsDoingAPartAgain) {
  PerformBeside(Says(JournalLine({"two"})) + Says(JournalDoneLine({"two"})) + Says(JournalLine({"two"})) + SaysEnd() +
                "exit 0\n");
  EXPECT_EQ(Kept(), 2u);
}

TEST_F(JournalsOfWorkersTest, StayIfOneWasStopped) {
  PerformBeside(SaysEnd() + "exit 3\n");
  EXPECT_EQ(Kept(), 2u);
}

TEST_F(JournalsOfWorkersTest, StayIfOneDied) {
  PerformBeside("kill -9 $$\n");
  EXPECT_EQ(Kept(), 2u);
}

// For example because another process works on the same part.
TEST_F(JournalsOfWorkersTest, OfAWorkerAreReportedEvenIfItGetsNone) {
  const auto used = journals_.Open({"one"});
  WorkerJournals workers(journals_, recorder_);
  EXPECT_EQ(workers.Open({"one"}), nullptr);
  EXPECT_EQ(recorder_.Journals(), std::vector<std::string>{"opened one"});
  EXPECT_TRUE(workers.FindUnfinished("one", [](const auto&) { return true; }));
  EXPECT_FALSE(workers.Forget("one", [](const auto&) { return true; }));
}

TEST_F(JournalsOfWorkersTest, OfAWorkerStayAndAreReported) {
  WorkerJournals workers(journals_, recorder_);
  const auto journal = workers.Open({"one"});
  ASSERT_TRUE(journal);
  journal->Set("/a.jpg", "done", "1");
  EXPECT_EQ(journal->Get("/a.jpg", "done"), "1");
  journal->Remove();
  EXPECT_EQ(journals_.Open({"one"})->Count("done"), 1u);
  EXPECT_EQ(workers.Open({"one"})->Count("done"), 0u) << "done once more by the same worker";
  EXPECT_EQ(recorder_.Journals(), (std::vector<std::string>{"opened one", "done one", "opened one"}));
}

// Among sources of one name one is damaged.
TEST_F(WorkersTest, AShardLeavesTheOutputsOfAnother) {
  for (int i = 1; i <= 6; ++i) Picture("in/" + std::to_string(i) + "/x.bmp");
  folder.Write("in/3/x.png", BrokenPngPicture());
  std::size_t damaged = 0;
  folder.Write("out/x.jpg", "of the one before");
  for (const char* shard : {"1/3", "2/3", "3/3"}) {
    const auto results = Results(Run(Cut({"in"}, {"--json", "--shard", shard})).out);
    damaged += results.contains(folder.Path("in/3/x.png"));
    EXPECT_TRUE(folder.Exists("out/x.jpg")) << shard;
  }
  EXPECT_EQ(damaged, 1u);
}

TEST_F(WorkersTest, NoWorkerDropsTheOutputOfAnother) {
  for (int i = 1; i <= 6; ++i) Picture("in/" + std::to_string(i) + "/x.bmp");
  folder.Write("in/3/x.png", BrokenPngPicture());
  folder.Write("out/x.jpg", "older");
  const Ran ran = Run(Cut({"in"}, {"--json", "--jobs", "3"}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(Results(ran.out).size(), 7u);
  EXPECT_EQ(CountOf(Results(ran.out), "written"), 1u);
  EXPECT_NE(folder.Read("out/x.jpg"), "older");
}

// --- Shares

TEST_F(WorkersTest, ShardsOfAWalkAddUp) {
  Pictures(50);
  std::set<std::string> all;
  std::size_t files = 0;
  for (const char* shard : {"1/3", "2/3", "3/3"}) {
    const Ran ran = Run(Cut({"in"}, {"--json", "--shard", shard}));
    EXPECT_EQ(ran.exit, 0) << ran.err;
    for (const auto& [source, result] : Results(ran.out)) {
      all.insert(source);
      ++files;
    }
  }
  EXPECT_EQ(all.size(), 50u);
  EXPECT_EQ(files, 50u);
  EXPECT_EQ(folder.Names("out").size(), 50u);
}

TEST_F(WorkersTest, ShardsOfAListAddUp) {
  std::vector<std::string> names{"missing.jpg"};
  for (int i = 0; i < 20; ++i) {
    Picture(std::to_string(i) + ".bmp");
    names.push_back(std::to_string(i) + ".bmp");
  }
  std::size_t files = 0;
  for (const char* shard : {"1/2", "2/2"}) files += Results(Run(Cut(names, {"--json", "--shard", shard})).out).size();
  EXPECT_EQ(files, 21u);
  EXPECT_EQ(folder.Names("out").size(), 20u);
}

TEST_F(WorkersTest, AShardIsSplitAmongJobs) {
  Pictures(50);
  std::size_t files = 0;
  for (const char* shard : {"1/2", "2/2"}) {
    files += Results(Run(Cut({"in"}, {"--json", "--shard", shard, "--jobs", "2"})).out).size();
  }
  EXPECT_EQ(files, 50u);
  EXPECT_EQ(folder.Names("out").size(), 50u);
}

// A worker that is killed while it cleans up has done its part.
TEST_F(DyingWorkersTest, OneThatDiesAfterItsEndLeavesTheSumsAsTheyAre) {
  const std::string good = SaysFile({0, "/good.jpg", "/out/good.jpg", job::Result::Written, ""});
  EXPECT_EQ(Perform(good + SaysEnd() + "kill -9 $$\n", {"/good.jpg"}), Exit::AllWritten);
  EXPECT_EQ(Starts(), 1u);
  EXPECT_EQ(Sums(), "1 written, 0 none, 0 skipped");
}

TEST_F(DyingWorkersTest, OneThatDiesAfterItsEndStillLeavesAFileWithoutOutput) {
  const std::string bad = SaysFile({0, "/bad.jpg", "", job::Result::None, "damaged"});
  EXPECT_EQ(Perform(bad + SaysEnd() + "kill -9 $$\n", {"/bad.jpg"}), Exit::SomeWithout);
}

}  // namespace
}  // namespace quillon::cli
