// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Results that the walk of a resumed run finds among its sources.
#include <chrono>
#include <filesystem>

#include "job/psd_bytes.h"
#include "job/run/resume_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

constexpr base::Size kWhole{40, 30};
constexpr base::Size kCut{20, 30};
constexpr const char* kResult = "是这项任务写出的结果，不再处理";

class ResultsTest : public ResumeTest {
 protected:
  // Six sources of that extension in place of the ones of the fixture.
  void Sources(const std::string& extension) {
    std::filesystem::remove_all(In(""));
    extension_ = extension;
    for (int i = 0; i < 6; ++i) Source(i);
  }
  void Source(int number) {
    const std::string name = std::to_string(number) + "." + extension_;
    if (extension_ == "psd") {
      world.folder.Write("in/" + name, PsdBytes(kWhole.width, kWhole.height, {10, 200, 30}));
    } else {
      Make(name, kWhole.width, kWhole.height);
    }
  }
  // A killed run has not come to throw sources away.
  void KillBeforeSourcesGo(std::size_t files) {
    KillAfter(files);
    for (int i = 0; i < 6; ++i) {
      if (!world.folder.Exists("in/" + std::to_string(i) + "." + extension_)) Source(i);
    }
  }
  void Continue() {
    world.boxes.Forget();
    Answer(Reply::Yes);
    Cut();
    EXPECT_EQ(world.boxes.Count(kQuestion), 1);
  }
  std::size_t PassedOver() const {
    return static_cast<std::size_t>(std::count_if(recorder.done.begin(), recorder.done.end(),
                                                  [](const FileResult& file) { return file.why == kResult; }));
  }
  void ExpectCutOnce(const std::string& extension) {
    for (int i = 0; i < 6; ++i) {
      EXPECT_EQ(SizeOf(In(std::to_string(i) + "." + extension)), kCut) << i << ": " << Results();
    }
  }
  void Split() {
    Option("ChSplit", "1");
    Put("FBaseOpt.TSmalS(4)", "2");
    Put("FBaseOpt.TSmalS(5)", "1");
  }

  std::string extension_;
};

struct OtherName {
  const char* source;
  const char* result;
};

TEST_F(ResultsTest, OfAnotherNameBesideAStoppedRunsSourcesAreNotCutAgain) {
  Put("ChOver", "1");
  for (const OtherName& name : {OtherName{"psd", "jpg"}, OtherName{"png", "PNG"}}) {
    SCOPED_TRACE(name.source);
    if (std::string(name.source) == "png") Option("CmbExtCase", "1");
    Sources(name.source);
    StopAfter(3);
    Continue();
    EXPECT_EQ(Totals().written, 3u) << Results();
    EXPECT_EQ(Totals().none, 0u) << Results();
    EXPECT_EQ(PassedOver(), 3u) << Results();
    EXPECT_EQ(world.folder.Names("in").size(), 6u) << "all sources are gone";
    ExpectCutOnce(name.result);
  }
}

// Both are there, and it cannot be known that the result is whole.
TEST_F(ResultsTest, OfAnotherNameBesideAKilledRunsSourcesAreMadeAnew) {
  Put("ChOver", "1");
  for (const OtherName& name : {OtherName{"psd", "jpg"}, OtherName{"png", "PNG"}}) {
    SCOPED_TRACE(name.source);
    if (std::string(name.source) == "png") Option("CmbExtCase", "1");
    Sources(name.source);
    KillBeforeSourcesGo(3);
    Continue();
    EXPECT_EQ(Totals().written, 6u) << Results();
    EXPECT_EQ(Totals().none, 0u) << Results();
    EXPECT_EQ(PassedOver(), 3u) << Results();
    EXPECT_EQ(world.folder.Names("in").size(), 6u);
    ExpectCutOnce(name.result);
  }
}

// Killed between the trash and the checkpoint.
TEST_F(ResultsTest, WhoseSourcesAreGoneAreNotCutAgain) {
  Put("ChOver", "1");
  Sources("psd");
  KillAfter(3);
  Continue();
  EXPECT_EQ(Totals().written, 3u) << Results();
  EXPECT_EQ(PassedOver(), 3u) << Results();
  ExpectCutOnce("jpg");
}

TEST_F(ResultsTest, ThatAUserPutInTheirPlaceAreCut) {
  Put("ChOver", "1");
  Sources("psd");
  StopAfter(3);
  const std::string replaced = first[0].output.substr(In("").size());
  std::filesystem::remove(In(replaced));
  Make(replaced, kWhole.width, kWhole.height);
  Make("new.jpg", kWhole.width, kWhole.height);
  Continue();
  EXPECT_EQ(Totals().written, 5u) << Results();
  EXPECT_EQ(PassedOver(), 2u) << Results();
  EXPECT_EQ(SizeOf(In("new.jpg")), kCut);
  ExpectCutOnce("jpg");
}

// The sources after the stop have no results: a later file of such a name is a source.
TEST_F(ResultsTest, ThatAStoppedRunDidNotComeToAreExpectedNoMore) {
  Put("ChOver", "1");
  Sources("psd");
  StopAfter(5);
  std::string rest;
  for (int i = 0; i < 6; ++i) {
    if (world.folder.Exists("in/" + std::to_string(i) + ".psd")) rest = std::to_string(i);
  }
  Make(rest + ".jpg", kWhole.width, kWhole.height);
  Continue();
  EXPECT_EQ(Totals().written, 1u) << Results();
  EXPECT_EQ(Totals().none, 1u) << "the psd, whose place is taken";
  EXPECT_TRUE(world.folder.Exists("in/" + rest + ".psd"));
  EXPECT_EQ(SizeOf(In(rest + ".jpg")), kCut);
}

TEST_F(ResultsTest, ThatArePiecesBesideTheSourceAreNotSplitAgain) {
  Put("ChOver", "1");
  Split();
  for (const bool killed : {false, true}) {
    SCOPED_TRACE(killed);
    Sources("png");
    if (killed) {
      KillAfter(3);
    } else {
      StopAfter(3);
    }
    Continue();
    EXPECT_EQ(Totals().written, killed ? 6u : 3u) << Results();
    EXPECT_EQ(Totals().none, 0u) << Results();
    EXPECT_EQ(PassedOver(), 6u) << Results();
    EXPECT_EQ(world.folder.Names("in").size(), 18u);
    for (int i = 0; i < 6; ++i) {
      for (const char* piece : {"_01.png", "_02.png"}) {
        EXPECT_EQ(SizeOf(In(std::to_string(i) + piece)), (base::Size{10, 30})) << i;
      }
    }
  }
}

// Between two checkpoints the journal has no results yet.
TEST_F(ResultsTest, BesideKeptFilesAreFoundAgain) {
  program.onExisting = OnExisting::Rename;
  Put("LOutDir", world.folder.Path("out"));
  for (const bool killed : {false, true}) {
    SCOPED_TRACE(killed);
    Sources("png");
    for (const std::string& name : world.folder.Names("out")) std::filesystem::remove(Out(name));
    for (int i = 0; i < 2; ++i) world.folder.Write("out/" + std::to_string(i) + ".jpg", "the user's");
    if (killed) {
      KillAfter(4);
    } else {
      StopAfter(4);
    }
    Continue();
    EXPECT_EQ(Totals().none, 0u) << Results();
    EXPECT_EQ(OutNames(),
              (std::vector<std::string>{"0(2).jpg", "0.jpg", "1(2).jpg", "1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg"}));
    for (const char* name : {"out/0.jpg", "out/1.jpg"}) EXPECT_EQ(world.folder.Read(name), "the user's");
  }
}

// A name beside a kept file stays taken after the checkpoint, and in the part that resumes the run.
TEST_F(ResultsTest, BesideKeptFilesAreNotReplacedByLaterOnes) {
  program.onExisting = OnExisting::Rename;
  Put("LOutDir", world.folder.Path("out"));
  Sources("png");
  Make("0(2).png", 60, 30);
  world.folder.Write("out/0.jpg", "the user's");
  StopAfter(4);
  Continue();
  EXPECT_EQ(Totals().none, 0u) << Results();
  // The names of the two depend on the order of the walk.
  EXPECT_EQ(OutNames().size(), 8u);
  EXPECT_EQ(world.folder.Read("out/0.jpg"), "the user's");
}

// Also if the folder is given by another name.
TEST_F(ResultsTest, InTheInputFolderAreNotCutAgain) {
  const std::string link = world.folder.Path("link");
  std::filesystem::create_directory_symlink(world.folder.Path("in"), link);
  for (const std::string& out : {world.folder.Path("in"), link}) {
    for (const bool killed : {false, true}) {
      SCOPED_TRACE(out + (killed ? " killed" : " stopped"));
      Sources("png");
      Put("LOutDir", out);
      if (killed) {
        KillAfter(3);
      } else {
        StopAfter(3);
      }
      Continue();
      EXPECT_EQ(Totals().written, killed ? 6u : 3u) << Results();
      EXPECT_EQ(Totals().none, 0u) << Results();
      EXPECT_EQ(PassedOver(), 3u) << Results();
      EXPECT_EQ(world.folder.Names("in").size(), 12u) << "and no copies";
      ExpectCutOnce("jpg");
    }
  }
}

TEST_F(ResultsTest, ThatReplacedTheirSourcesAreNotCutAgain) {
  Sources("jpg");
  Put("LOutDir", world.folder.Path("in"));
  KillAfter(3);
  Continue();
  EXPECT_EQ(Totals().written, 3u) << Results();
  EXPECT_EQ(Totals().skipped, 3u) << Results();
  ExpectCutOnce("jpg");
  for (int i = 0; i < 6; ++i) {
    const std::string copy = "in/" + std::to_string(i) + ".jpg.bak";
    world.folder.Write("copy.jpg", world.folder.Read(copy));
    EXPECT_EQ(SizeOf(world.folder.Path("copy.jpg")), kWhole) << i;
  }
}

// The folder for results below the input folder existed before, and there are more files above it than the walk finds
// in advance.
TEST_F(ResultsTest, OfTheSameRunAreNotCutAgain) {
  constexpr std::size_t kFiles = 150;
  std::filesystem::remove_all(In(""));
  for (std::size_t i = 0; i < kFiles; ++i) {
    world.folder.Write("in/" + std::to_string(i) + ".bmp", BitmapBytes(Painted(4, 4, Slope)));
  }
  Put("LOutDir", world.folder.Path("in"));
  Put("ChKeepDir", "1");
  const std::string below = In("") + world.folder.Path("in");
  ASSERT_TRUE(world.files.MakeFolders(below));
  for (const bool kept : {true, false}) {
    SCOPED_TRACE(kept);
    if (!kept) program.journals = nullptr;
    recorder.done.clear();
    // Between most files there is a checkpoint.
    recorder.onFileDone = [&](const FileResult&) { world.clock.Advance(5); };
    Cut();
    EXPECT_EQ(Totals().written, kFiles);
    EXPECT_GT(PassedOver(), 0u);
    std::filesystem::remove_all(below);
    ASSERT_TRUE(world.files.MakeFolders(below));
  }
}

// A source that was changed is cut again, and its earlier result is discarded.
TEST_F(ResultsTest, OfAChangedSourceAreReplaced) {
  Sources("png");
  Put("LOutDir", world.folder.Path("in"));
  StopAfter(6);
  Make("0.png", 60, 30);
  std::filesystem::last_write_time(In("0.png"), std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  Continue();
  EXPECT_EQ(Totals().written, 1u) << Results();
  EXPECT_EQ(PassedOver(), 6u) << Results();
  EXPECT_EQ(SizeOf(In("0.jpg")), (base::Size{30, 30}));
  EXPECT_EQ(SizeOf(world.folder.Path("data/Trash/files/0.jpg")), kCut);
}

// --- The folders that are passed over once one of their files is done.

TEST_F(ResultsTest, AContinuedRunHandlesOneFileOfAFolderInAll) {
  Option("ChOmitFolds", "1");
  std::filesystem::remove_all(In(""));
  for (const char* name : {"a/1.png", "a/2.png", "b/3.png", "b/4.png", "c/5.png", "c/6.png"}) {
    Make(name, kWhole.width, kWhole.height);
  }
  StopAfter(3);
  EXPECT_EQ(OutNames().size(), 2u);
  // What a killed run leaves, and what the next call of a script finds.
  std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
  Continue();
  EXPECT_EQ(OutNames().size(), 3u) << Results();
  EXPECT_EQ(Totals().written, 1u);
}

struct Broken {
  const char* over;
  bool killed;
};

// An overwritten psd goes by itself, any other one by its user.
TEST_F(ResultsTest, OfASourceThatIsGoneCountForItsFolder) {
  Option("ChOmitFolds", "1");
  for (const Broken& broken : {Broken{"0", false}, Broken{"1", false}, Broken{"1", true}}) {
    SCOPED_TRACE(std::string(broken.over) + (broken.killed ? " killed" : " stopped"));
    Put("ChOver", broken.over);
    std::filesystem::remove_all(In(""));
    for (int i = 0; i < 3; ++i) {
      const std::string name = "in/a/" + std::to_string(i) + ".psd";
      world.folder.Write(name, PsdBytes(kWhole.width, kWhole.height, {10, 200, 30}));
    }
    if (broken.killed) {
      KillAfter(1);
    } else {
      StopAfter(1);
      std::filesystem::remove(first[0].source);
    }
    std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
    Continue();
    std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
    EXPECT_EQ(Totals().written, 0u) << Results();
    EXPECT_EQ(Totals().none, 0u) << Results();
    EXPECT_EQ(world.folder.Names("in/a").size(), broken.over[0] == '1' ? 3u : 2u);
  }
}

TEST_F(ResultsTest, ThatDoNotStandAnyMoreCountForNoFolder) {
  Option("ChOmitFolds", "1");
  std::filesystem::remove_all(In(""));
  Make("a/1.png", kWhole.width, kWhole.height);
  StopAfter(1);
  std::filesystem::remove(program.AppPath("OmitSubfolds.dat"));
  std::filesystem::remove(Out("1.jpg"));
  Continue();
  EXPECT_EQ(Totals().written, 1u) << Results();
  EXPECT_TRUE(world.folder.Exists("out/1.jpg"));
}

// --- Pieces

TEST_F(ResultsTest, OfManyPiecesAreAllKnown) {
  constexpr std::size_t kPieces = 32 * 32;
  Put("ChOver", "1");
  Option("ChSplit", "1");
  Put("FBaseOpt.TSmalS(4)", "32");
  Put("FBaseOpt.TSmalS(5)", "32");
  std::filesystem::remove_all(In(""));
  Make("a.bmp", 64, 32);
  KillAfter(1);
  ASSERT_EQ(world.folder.Names("in").size(), kPieces + 1);
  Continue();
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(Totals().none, 0u);
  EXPECT_EQ(PassedOver(), kPieces);
  EXPECT_EQ(world.folder.Names("in").size(), kPieces + 1);
}

// --- Sources that are not listed.

TEST_F(ResultsTest, ReplaceTheirSourcesAtACheckpoint) {
  Put("ChOver", "1");
  Sources("psd");
  recorder.onFileDone = [&](const FileResult&) {
    const std::vector<std::string> names = world.folder.Names("in");
    const auto left = std::count_if(names.begin(), names.end(), [](const auto& name) { return name.ends_with("psd"); });
    EXPECT_EQ(static_cast<std::size_t>(left), 7 - recorder.done.size());
    world.clock.Advance(5);
  };
  Cut();
  EXPECT_EQ(recorder.done.size(), 6u);
  EXPECT_EQ(world.folder.Names("in").size(), 6u);
  ExpectCutOnce("jpg");
  EXPECT_EQ(world.folder.Names("data/Trash/files").size(), 6u);
}

TEST_F(ResultsTest, ReplaceTheirSourcesAtTheEnd) {
  Put("ChOver", "1");
  Sources("psd");
  program.journals = nullptr;
  recorder.onFileDone = [&](const FileResult&) { EXPECT_GE(world.folder.Names("in").size(), 7u); };
  Cut();
  EXPECT_EQ(world.folder.Names("in").size(), 6u);
  ExpectCutOnce("jpg");
}

}  // namespace
}  // namespace quillon::job
