// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A large-capacity run that is broken off, and the next start of the same job.
#include <chrono>
#include <filesystem>

#include "job/run/resume_fixture.h"
#include "job/run/run_journal.h"
#include "job/run/run_ledger.h"

namespace quillon::job {
namespace {

using host::Reply;

TEST_F(ResumeTest, AFinishedRunLeavesNoJournalAndAsksNothing) {
  Cut();
  EXPECT_TRUE(Journals().empty());
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
  EXPECT_EQ(Totals().written, 6u);
}

TEST_F(ResumeTest, AStoppedRunIsContinued) {
  StopAfter(4);
  EXPECT_EQ(Journals().size(), 1u);
  const std::string made = world.folder.Read("out/" + first[0].output.substr(outFolder.size() + 1));
  Answer(Reply::Yes);
  Cut();
  ASSERT_EQ(world.boxes.All().size(), 1u);
  EXPECT_EQ(world.boxes.All()[0].box.text,
            "上次的这项任务没有做完，已写好 4 个文件。要接着处理吗？\r\n是——接着处理，已写好的不再处理\r\n"
            "否——全部重新处理\r\n取消——不处理");
  EXPECT_EQ(world.boxes.All()[0].box.type, 35);
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().skipped, 4u);
  EXPECT_EQ(recorder.done[0].why, "上次已经处理好");
  EXPECT_EQ(recorder.done[0].output, first[0].output);
  EXPECT_EQ(OutNames().size(), 6u);
  EXPECT_TRUE(Journals().empty()) << "the job has come to its end";
}

TEST_F(ResumeTest, NoBeginsAnew) {
  StopAfter(4);
  Answer(Reply::No);
  Cut();
  EXPECT_EQ(Totals().written, 6u);
  EXPECT_EQ(Totals().skipped, 0u);
}

TEST_F(ResumeTest, NoCutsOverwrittenSourcesAgainAndSaysSo) {
  Put("ChOver", "1");
  StopAfter(4);
  Answer(Reply::No);
  Cut();
  EXPECT_EQ(world.boxes.All().at(0).box.text,
            "上次的这项任务没有做完，已写好 4 个文件。要接着处理吗？\r\n是——接着处理，已写好的不再处理\r\n"
            "否——全部重新处理，已覆盖的原文件会再裁一次\r\n取消——不处理");
  EXPECT_EQ(Totals().written, 6u);
}

TEST_F(ResumeTest, TheSameFolderIsTheSameJobHoweverItIsWritten) {
  Put("ChOver", "1");
  StopAfter(4);
  for (const char* way : {"/", "//", "/./"}) {
    Put("LInDir", world.folder.Path("in") + way);
    Answer(Reply::Cancel);
    Cut();
    EXPECT_EQ(world.boxes.Count(kQuestion), 1) << way;
    world.boxes.Forget();
  }
}

TEST_F(ResumeTest, OpeningAWindowMakesNoOtherJob) {
  StopAfter(4);
  options.Load();
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().skipped, 4u);
}

TEST_F(ResumeTest, OpeningAWindowMakesAnotherJobIfMarginsChangeByIt) {
  for (const bool fixed : {false, true}) {
    Put("ChCutA", "1");
    Put("ChFixCut", fixed ? "1" : "0");
    Margins(5, 0, 0, 0);
    flags.FixW = flags.FixH = 1;
    StopAfter(4);
    ASSERT_EQ(first[0].result, Result::Written) << first[0].why;
    flags.AdvancedOptionsLoaded = !flags.AdvancedOptionsLoaded;
    Cut();
    EXPECT_EQ(world.boxes.Count(kQuestion), fixed ? 1 : 0);
    world.boxes.Forget();
  }
}

TEST_F(ResumeTest, CancelDoesNothingAndKeepsTheJournal) {
  StopAfter(4);
  const std::size_t runs = recorder.ended.size();
  Answer(Reply::Cancel);
  Cut();
  EXPECT_EQ(recorder.ended.size(), runs);
  EXPECT_FALSE(flags.Busy);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().skipped, 4u);
}

TEST_F(ResumeTest, AnotherJobIsAnotherRun) {
  StopAfter(4);
  const std::string out = outFolder;
  for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
           {"TCutValue(1)", "10"}, {"CmbOutType", "png"}, {"ChKeepDir", "1"}}) {
    const std::string before = Value(name);
    Put(name, value);
    Cut();
    EXPECT_EQ(world.boxes.Count(kQuestion), 0) << name;
    Put(name, name == "CmbOutType" ? "jpg" : before);
  }
}

// Both windows can set it, and neither shows it at the start.
TEST_F(ResumeTest, AnotherResolutionIsAnotherJob) {
  StopAfter(4);
  flags.OutDpi = 0;
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
}

TEST_F(ResumeTest, TheWhiteThatARunPadsWithIsNoParameter) {
  Option("ChAddBoard", "1");
  form.ChAddToSize.Set(true);
  options.PBoardColor.Set(base::Colour{255});
  StopAfter(4);
  options.PBoardColor.Set(base::Colour{255});
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().skipped, 4u) << Results();
}

TEST_F(ResumeTest, MarginsOfAFramePlacedByHandAreNoParameters) {
  flags.ManualCutMode = true;
  RunJournal journal(program.context, "manual", {"Form1"});
  ASSERT_TRUE(journal.BeginFolder());
  RunLedger ledger(program.context, 0);
  const std::string source = In("0.png");
  journal.Begun(source, {}, [](const std::string&) { return std::vector<std::string>(); });
  form.TCutValue[1].SetNumber(10);
  const std::string output = Make("out.png");
  const FileResult written{0, source, output, Result::Written, ""};
  ledger.Add(written);
  journal.Ended(source, {written});
  journal.Commit(ledger);
  EXPECT_TRUE(journal.Stands(source));
}

TEST_F(ResumeTest, WhatDoesNotStandAnyMoreIsDoneAgain) {
  StopAfter(5);
  // The output went away, was changed, or the source was.
  std::filesystem::remove(first[0].output);
  world.folder.Write("out/" + first[1].output.substr(outFolder.size() + 1), "changed");
  const std::string source = first[2].source.substr(In("").size());
  Make(source, 60, 30);
  std::filesystem::last_write_time(In(source), std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 4u) << Results();
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(SizeOf(first[2].output), (base::Size{30, 30}));
  EXPECT_EQ(SizeOf(first[1].output), (base::Size{20, 30}));
  EXPECT_EQ(world.folder.Read("data/Trash/files/" + first[1].output.substr(outFolder.size() + 1)), "changed");
}

// A second source gets an output of the same name, before and after a checkpoint, with the same and other parameters.
TEST_F(ResumeTest, AnOutputThatTheUserHasChangedGoesToTheTrash) {
  for (int i = 0; i < 6; ++i) std::filesystem::remove(In(std::to_string(i) + ".png"));
  for (const char* name : {"a/x.png", "b/x.png"}) Make(name, 40, 30);
  for (const int pause : {0, 5}) {
    for (const int margin : {0, 1}) {
      SCOPED_TRACE(std::to_string(pause) + " s, margin " + std::to_string(margin));
      recorder.done.clear();
      recorder.onFileDone = [&](const FileResult&) {
        world.clock.Advance(pause);
        form.TCutValue[1].SetNumber(margin);
        if (recorder.done.size() == 1) world.folder.Write("out/x.jpg", "changed");
      };
      Cut();
      form.TCutValue[1].SetNumber(0);
      EXPECT_EQ(world.folder.Read("data/Trash/files/x.jpg"), "changed");
      std::filesystem::remove_all(world.folder.Path("data/Trash"));
      std::filesystem::remove(Out("x.jpg"));
    }
  }
}

TEST_F(ResumeTest, OverwrittenSourcesAreNeverCutTwice) {
  Put("ChOver", "1");
  StopAfter(3);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 3u);
  EXPECT_EQ(Totals().skipped, 3u);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{20, 30})) << i;
}

// Nothing is written down as done, but what a source was before it was replaced is.
TEST_F(ResumeTest, OverwrittenSourcesOfAKilledRunAreNeverCutTwice) {
  Put("ChOver", "1");
  KillAfter(3);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(world.boxes.Count("已写好 3 个文件"), 1);
  EXPECT_EQ(Totals().written, 3u);
  EXPECT_EQ(Totals().skipped, 3u);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{20, 30})) << i;
}

TEST_F(ResumeTest, ARestoredSourceIsCutAgain) {
  Put("ChOver", "1");
  const std::string before = world.folder.Read("in/0.png");
  const auto time = std::filesystem::last_write_time(In("0.png"));
  StopAfter(6);
  std::filesystem::remove(In("0.png"));
  world.folder.Write("in/0.png", before);
  std::filesystem::last_write_time(In("0.png"), time);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(SizeOf(In("0.png")), (base::Size{20, 30}));
}

// Network disks may number their files anew each time they are mounted.
TEST_F(ResumeTest, NothingIsDoneTwiceOnADiskThatNumbersItsFilesAnew) {
  for (const char* over : {"0", "1"}) {
    SCOPED_TRACE(over);
    for (int i = 0; i < 6; ++i) Make(std::to_string(i) + ".png", 40, 30);
    Put("ChOver", over);
    StopAfter(4);
    world.faults.Renumber(1000);
    Answer(Reply::Yes);
    Cut();
    EXPECT_EQ(Totals().written, 2u) << Results();
    EXPECT_EQ(Totals().skipped, 4u);
  }
  for (int i = 0; i < 6; ++i) EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{20, 30})) << i;
}

// What was only about to be overwritten when the run was killed is done, also when its number or its rights changed.
TEST_F(ResumeTest, SourcesThatAKilledRunDidNotReachAreCut) {
  Put("ChOver", "1");
  for (const bool renumbered : {true, false}) {
    SCOPED_TRACE(renumbered);
    KillAfter(3);
    if (renumbered) {
      world.faults.Renumber(1000);
    } else {
      for (int i = 0; i < 6; ++i) {
        std::filesystem::permissions(In(std::to_string(i) + ".png"), std::filesystem::perms::owner_all);
      }
    }
    Answer(Reply::Yes);
    Cut();
    EXPECT_EQ(Totals().written, 3u) << Results();
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{20, 30})) << i;
      Make(std::to_string(i) + ".png", 40, 30);
    }
  }
}

// A new file under the name of a source looks as a finished cut does, but nothing was cut there.
TEST_F(ResumeTest, ASourceThatWasReplacedBeyondTheStopIsCut) {
  Put("ChOver", "1");
  StopAfter(3);
  std::string open;
  for (int i = 0; i < 6; ++i) {
    const std::string path = In(std::to_string(i) + ".png");
    const bool handled = std::any_of(first.begin(), first.end(), [&](const auto& file) { return file.source == path; });
    if (!handled) open = path;
  }
  std::filesystem::rename(Make("other/new.png", 60, 30), open);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 3u) << Results();
  EXPECT_EQ(SizeOf(open), (base::Size{30, 30}));
}

TEST_F(ResumeTest, ASplitPictureStandsWithAllItsPieces) {
  Option("ChSplit", "1");
  Put("FBaseOpt.TSmalS(4)", "2");
  Put("FBaseOpt.TSmalS(5)", "1");
  StopAfter(3);
  ASSERT_EQ(first[0].more.size(), 1u);
  std::filesystem::remove(first[0].more[0]);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 4u) << Results();
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(OutNames().size(), 12u);
}

// A disk that fails is not the end of the job, a folder that the user may not read is.
TEST_F(ResumeTest, AJobThatCouldNotReachAllFoldersIsContinued) {
  Make("x/6.png", 40, 30);
  for (const int error : {EIO, EACCES}) {
    SCOPED_TRACE(error);
    world.faults.Set({.call = host::testing::DiskCall::List,
                      .error = error,
                      .length = host::testing::Fault::Length::ForEver,
                      .pathHolds = "in/x"});
    Cut();
    EXPECT_EQ(Totals().written, 6u);
    EXPECT_FALSE(Totals().stopped);
    EXPECT_EQ(Journals().size(), error == EIO ? 1u : 0u);
    world.faults.Clear();
    if (error != EIO) continue;
    Answer(Reply::Yes);
    Cut();
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().skipped, 6u);
  }
}

TEST_F(ResumeTest, OutputsOfOneNameAreReportedBeyondACheckpoint) {
  for (int i = 0; i < 6; ++i) std::filesystem::remove(In(std::to_string(i) + ".png"));
  Make("a/x.png", 40, 30);
  Make("b/x.png", 40, 30);
  Make("c/x.png", 40, 30);
  // More than the time between two checkpoints passes after each file.
  recorder.onFileDone = [&](const FileResult&) { world.clock.Advance(5); };
  Cut();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 2u);
  EXPECT_EQ(recorder.lost.size(), 2u);
}

// --- Something else in the place of a source.

TEST_F(ResumeTest, ASourceThatIsGoneStandsAndAFolderInItsPlaceDoesNot) {
  StopAfter(4);
  RunJournal journal(program.context, "menuNormalCut", {"Form1", "FBaseOpt"});
  Answer(Reply::Yes);
  ASSERT_TRUE(journal.BeginFolder());
  const std::string source = first[0].source;
  EXPECT_TRUE(journal.Stands(source));
  std::filesystem::remove(source);
  EXPECT_TRUE(journal.Stands(source)) << "discarded after its cut";
  std::filesystem::create_directory(source);
  EXPECT_FALSE(journal.Stands(source));
}

// --- Older results of a picture that is damaged now.

TEST_F(ResumeTest, AnOlderResultGoesAtTheMomentOfTheFailure) {
  Make("broken.png", 40, 30);
  world.folder.Write("in/broken.png", world.folder.Read("in/broken.png").substr(0, 100));
  world.folder.Write("out/broken.jpg", "older");
  bool failed = false;
  recorder.onFileDone = [&](const FileResult& file) {
    failed = failed || file.source == In("broken.png");
    EXPECT_NE(world.folder.Exists("out/broken.jpg"), failed);
  };
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(OutNames().size(), 6u);
  EXPECT_EQ(world.folder.Read("data/Trash/files/broken.jpg"), "older");
}

TEST_F(ResumeTest, WhatThisJobMadeIsNoOlderResult) {
  for (int i = 0; i < 6; ++i) std::filesystem::remove(In(std::to_string(i) + ".png"));
  for (const char* broken : {"a", "b"}) {
    SCOPED_TRACE(broken);
    for (const char* folder : {"a", "b"}) Make(std::string(folder) + "/x.png", 40, 30);
    const std::string name = std::string("in/") + broken + "/x.png";
    world.folder.Write(name, world.folder.Read(name).substr(0, 100));
    recorder.onFileDone = [&](const FileResult&) { world.clock.Advance(5); };
    Cut();
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_EQ(SizeOf(Out("x.jpg")), (base::Size{20, 30}));
    std::filesystem::remove(Out("x.jpg"));
  }
}

// What was cut with other parameters is not done, but it is a result of this run beyond a checkpoint too.
TEST_F(ResumeTest, WhatThisJobMadeWithChangedParametersIsNoOlderResult) {
  for (int i = 0; i < 6; ++i) std::filesystem::remove(In(std::to_string(i) + ".png"));
  for (const char* broken : {"a", "b"}) {
    SCOPED_TRACE(broken);
    for (const char* folder : {"a", "b"}) Make(std::string(folder) + "/x.png", 40, 30);
    const std::string name = std::string("in/") + broken + "/x.png";
    world.folder.Write(name, world.folder.Read(name).substr(0, 100));
    double margin = 0;
    recorder.onFileDone = [&](const FileResult&) {
      world.clock.Advance(5);
      form.TCutValue[1].SetNumber(++margin);
    };
    Cut();
    EXPECT_EQ(Totals().written, 1u);
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_TRUE(world.folder.Exists("out/x.jpg"));
    EXPECT_FALSE(world.folder.Exists("data/Trash/files/x.jpg"));
    std::filesystem::remove(Out("x.jpg"));
    form.TCutValue[1].SetNumber(0);
  }
}

TEST_F(ResumeTest, OutputsOfOneNameAreReportedWithChangedParametersToo) {
  for (int i = 0; i < 6; ++i) std::filesystem::remove(In(std::to_string(i) + ".png"));
  for (const char* name : {"a/x.png", "b/x.png", "c/x.png"}) Make(name, 40, 30);
  recorder.onFileDone = [&](const FileResult&) {
    world.clock.Advance(5);
    form.TCutValue[1].SetNumber(static_cast<double>(recorder.done.size()));
  };
  Cut();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 2u);
}

TEST_F(ResumeTest, AnOutputThatDidNotReachTheDiskIsNotWrittenDown) {
  world.faults.Set({.call = host::testing::DiskCall::Sync, .error = EIO, .pathHolds = "out/.0.jpg"});
  StopAfter(6);
  EXPECT_EQ(world.faults.Fired(), 1);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().skipped, 5u);
  EXPECT_EQ(OutNames().size(), 6u);
}

TEST_F(ResumeTest, NothingIsWrittenDownOfParametersChangedMeanwhile) {
  recorder.onFileDone = [&](const FileResult&) {
    if (recorder.done.size() == 2) form.TCutValue[1].SetNumber(10);
    flags.StopRequested = recorder.done.size() == 4;
  };
  Cut();
  recorder.onFileDone = {};
  form.TCutValue[1].SetNumber(0);
  world.boxes.Forget();
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
  EXPECT_EQ(Totals().written, 6u);
}

TEST_F(ResumeTest, WithoutAJournalEveryRunIsFresh) {
  host::posix::SqliteJournals nowhere(world.folder.Path("in/0.png/below"));
  program.journals = &nowhere;
  StopAfter(4);
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
  EXPECT_EQ(Totals().written, 6u);
}

TEST_F(ResumeTest, DecisionsByHandAreRecordsOfTheJournal) {
  const std::string source = In("0.png");
  RunLedger ledger(program.context, 0);
  {
    RunJournal journal(program.context, "other", {"Form1"});
    ASSERT_TRUE(journal.BeginFolder());
    EXPECT_EQ(journal.DecisionOn(source), std::nullopt);
    journal.StoreDecision(source, "10,20,30,40");
    EXPECT_EQ(journal.DecisionOn(source), "10,20,30,40");
    journal.End(ledger, false);
    EXPECT_EQ(journal.DecisionOn(source), std::nullopt) << "closed";
  }
  RunJournal journal(program.context, "other", {"Form1"});
  Answer(Reply::Yes);
  ASSERT_TRUE(journal.BeginFolder());
  EXPECT_EQ(Texts(), std::vector<std::string>{
                         "上次的这项任务没有做完，已写好 0 个文件，已指定 1 张。要接着处理吗？\r\n是——接着处理，"
                         "已写好的不再处理，其余已指定的按上次指定的裁剪框处理\r\n否——全部重新处理，从头重新指定"
                         "\r\n取消——不处理"});
  EXPECT_EQ(journal.DecisionOn(source), "10,20,30,40");
  EXPECT_EQ(journal.DecisionOn(In("1.png")), std::nullopt);
  Make("0.png", 50, 30);
  EXPECT_EQ(journal.DecisionOn(source), std::nullopt) << "the picture changed";
}

TEST_F(ResumeTest, ASourceOfAnotherTimeIsDoneAgain) {
  std::filesystem::remove_all(In(""));
  const auto write = [&](int number, const Paint& paint) {
    world.folder.Write("in/" + std::to_string(number) + ".bmp", BitmapBytes(Painted(40, 30, paint)));
  };
  for (int i = 0; i < 6; ++i) write(i, Slope);
  StopAfter(6);
  const auto time = std::filesystem::last_write_time(In("2.bmp"));
  write(2, [](int, int) { return kWhitePixel; });
  std::filesystem::last_write_time(In("2.bmp"), time + std::chrono::hours(1));
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Results();
  EXPECT_EQ(Totals().skipped, 5u);
  EXPECT_EQ(Read(Out("2.jpg")).At(5, 5), kWhitePixel);
}

// --- Shards of one job.

class SharedResumeTest : public ResumeTest {
 protected:
  void UseShard(std::uint64_t index, std::uint64_t count) {
    program.shard = {index, count, ""};
    world.boxes.Forget();
    recorder.done.clear();
  }
  std::string Box() const { return world.boxes.All().empty() ? std::string() : world.boxes.All()[0].box.text; }
  // Returns the index of the shard that the first picture belongs to.
  std::uint64_t ShardOfFirst(std::uint64_t count) const {
    for (std::uint64_t index = 0; index < count; ++index) {
      if (Shard{index, count, ""}.Owns("0.png")) return index;
    }
    return 0;
  }
};

TEST_F(SharedResumeTest, AnotherShardIsAnotherRun) {
  UseShard(0, 2);
  StopAfter(1);
  for (const Shard& shard : {Shard{1, 2, ""}, Shard{3, 4, ""}}) {
    UseShard(shard.index, shard.count);
    Cut();
    EXPECT_EQ(world.boxes.Count(kQuestion), 0) << shard.index << "/" << shard.count;
  }
  UseShard(0, 2);
  Cut();
  EXPECT_EQ(Box().substr(0, Box().find("要接着")), "上次的这项任务没有做完，已写好 1 个文件。");
}

TEST_F(SharedResumeTest, WhatWasPartedOtherwiseIsNotBegun) {
  Put("ChOver", "1");
  const std::uint64_t half = ShardOfFirst(2);
  const std::string again = "这次先不处理吗？\r\n是——不处理\r\n否——全部重新处理，已覆盖的原文件会再裁一次";
  UseShard(half, 2);
  StopAfter(1);
  const std::string cut = first[0].source;
  const std::size_t runs = recorder.ended.size();
  for (const Shard& shard : {Shard{0, 1, ""}, Shard{half, 4, ""}, Shard{half + 2, 4, ""}, Shard{2, 3, ""}}) {
    SCOPED_TRACE(std::to_string(shard.index) + "/" + std::to_string(shard.count));
    UseShard(shard.index, shard.count);
    Cut();
    EXPECT_EQ(Box(),
              "上次的这项任务没有做完，当时分成 2 份处理，这次分得不同，认不出哪些文件已经处理过。"
              "要接着处理，请仍分成 2 份：用 --jobs 2，或者与上次相同的 --shard 和 --jobs。" +
                  again);
    EXPECT_EQ(world.boxes.All()[0].box.type, 36) << "yes, the default, does nothing";
    EXPECT_EQ(recorder.ended.size(), runs);
    EXPECT_FALSE(flags.Busy);
    EXPECT_EQ(Journals().size(), 1u);
  }
  EXPECT_EQ(SizeOf(cut), (base::Size{20, 30}));
  UseShard(half, 2);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_TRUE(Journals().empty());
  EXPECT_EQ(SizeOf(cut), (base::Size{20, 30}));
}

// The parts of a call that do not own the handled files are not started either.
TEST_F(SharedResumeTest, NoWorkerStartsIfAnotherDoesNot) {
  UseShard(ShardOfFirst(4), 4);
  StopAfter(1);
  const std::uint64_t other = (ShardOfFirst(2) + 1) % 2;
  const auto asked = [&](std::uint64_t among) {
    UseShard(other, 2);
    program.shard.among = among;
    RunJournal journal(program.context, "menuNormalCut", {"Form1", "FBaseOpt"});
    return !journal.BeginFolder();
  };
  EXPECT_TRUE(asked(2)) << "of a call of two workers";
  EXPECT_FALSE(asked(1)) << "of a call that has this share alone";
}

TEST_F(SharedResumeTest, WhatWasWholeIsNotParted) {
  StopAfter(4);
  UseShard(0, 2);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Box(),
            "上次的这项任务没有做完，当时没有分份，这次分了份，认不出哪些文件已经处理过。"
            "要接着处理，请不带 --jobs 和 --shard 运行。这次先不处理吗？\r\n是——不处理\r\n"
            "否——全部重新处理，已覆盖的原文件会再裁一次");
  EXPECT_TRUE(recorder.done.empty());
  UseShard(0, 1);
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().skipped, 4u);
}

TEST_F(SharedResumeTest, NoBeginsAnewHoweverItWasParted) {
  for (const std::uint64_t index : {0, 1}) {
    UseShard(index, 2);
    StopAfter(1);
  }
  ASSERT_EQ(Journals().size(), 2u);
  UseShard(0, 1);
  Answer(Reply::No);
  StopAfter(2);
  EXPECT_EQ(Totals().skipped, 0u);
  EXPECT_EQ(Journals().size(), 1u) << "ours alone";
  Answer(Reply::Yes);
  Cut();
  EXPECT_EQ(Totals().written, 4u);
  EXPECT_TRUE(Journals().empty());
}

// Another program is at it.
TEST_F(SharedResumeTest, NoJobIsHandledTwiceAtATime) {
  constexpr const char* kInUse = "这项任务正由另一个程序处理，或者它的记录现在无法读取，请稍后再试";
  const auto begins = [this](std::uint64_t index, std::uint64_t count) {
    UseShard(index, count);
    RunJournal journal(program.context, "other", {"Form1"});
    return journal.BeginFolder();
  };
  {
    UseShard(0, 2);
    RunJournal running(program.context, "other", {"Form1"});
    ASSERT_TRUE(running.BeginFolder());
    EXPECT_FALSE(begins(0, 2));
    EXPECT_EQ(Box(), kInUse);
    EXPECT_FALSE(begins(0, 1));
    EXPECT_EQ(world.boxes.Count(kQuestion), 1);
    EXPECT_EQ(world.boxes.Count(kInUse), 0);
    Answer(Reply::No);
    EXPECT_FALSE(begins(0, 1));
    EXPECT_EQ(world.boxes.Count(kInUse), 1);
    EXPECT_TRUE(begins(1, 2));
    EXPECT_EQ(Box(), "");
    EXPECT_EQ(Journals().size(), 1u) << "what does nothing leaves nothing";
  }
  EXPECT_TRUE(begins(0, 1)) << "it did nothing";
  EXPECT_EQ(Box(), "");
}

// A worker that replaces a dead one continues and asks nothing.
TEST_F(SharedResumeTest, OneInThePlaceOfADeadOneAsksNothing) {
  Put("ChOver", "1");
  StopAfter(4);
  program.recovering = true;
  Answer(Reply::No);
  Cut();
  EXPECT_EQ(world.boxes.Count(kQuestion), 0);
  EXPECT_EQ(Totals().skipped, 4u);
  for (int i = 0; i < 6; ++i) EXPECT_EQ(SizeOf(In(std::to_string(i) + ".png")), (base::Size{20, 30})) << i;
}

}  // namespace
}  // namespace quillon::job
