// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A file that stands under the name of an output and was not made by the run.
#include <filesystem>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class ReplacedOutputTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Put("CmbOutType", "0");
    Margins(50, 0, 0, 0);
  }
  // A file of the user under the name of an output.
  void Own(const std::string& name, const std::string& content = "the user's") {
    world.folder.Write("out/" + name, content);
  }
  std::string InTrash(const std::string& name) const { return world.folder.Read("data/Trash/files/" + name); }
  bool TrashUsed() const { return world.folder.Exists("data/Trash"); }
  void NoTrash() {
    for (const host::testing::DiskCall call : {host::testing::DiskCall::Link, host::testing::DiskCall::RenameNew}) {
      world.faults.Set(
          {.call = call, .error = EACCES, .length = host::testing::Fault::Length::ForEver, .pathHolds = "out/a.jpg"});
    }
  }
};

TEST_F(ReplacedOutputTest, GoesToTheTrash) {
  Own("a.jpg");
  List({Make("a.png")});
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(InTrash("a.jpg"), "the user's");
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{50, 80}));
}

TEST_F(ReplacedOutputTest, GoesToTheTrashWhicheverWayTheOutputIsMade) {
  struct Way {
    const char* name;
    std::function<void()> choose;
  };
  const Way ways[] = {{"plain", [] {}}, {"effects", [this] { Option("ChToGray", "1"); }}, {"border", [this] {
                                                                                             Option("ChAddBoard", "1");
                                                                                           }}};
  for (const Way& way : ways) {
    SCOPED_TRACE(way.name);
    way.choose();
    const std::string name = std::string(way.name) + ".jpg";
    program.files.Clear();
    Own(name);
    List({Make(std::string(way.name) + ".png"), Make("other.png")});
    Cut();
    EXPECT_EQ(Totals().written, 2u) << Whys();
    EXPECT_EQ(InTrash(name), "the user's");
  }
}

TEST_F(ReplacedOutputTest, EachPieceOfASplitMakesRoom) {
  Option("ChSplit", "1");
  options.TSmalS[4].SetText("2");
  options.TSmalS[5].SetText("1");
  Cut({Make("a.png")});
  const std::vector<std::string> names = OutNames();
  ASSERT_EQ(names.size(), 2u);
  for (const std::string& name : names) Own(name, "the user's " + name);
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  for (const std::string& name : names) EXPECT_EQ(InTrash(name), "the user's " + name);
}

TEST_F(ReplacedOutputTest, ARunReplacesItsOwnOutputs) {
  List({Make("x/a.png"), Make("y/a.png", 60, 40)});
  Cut();
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{30, 40}));
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ReplacedOutputTest, AnOverwrittenSourceIsReplacedByItsCut) {
  Put("ChOver", "1");
  List({Make("a.png")});
  Cut();
  EXPECT_EQ(SizeOf(In("a.png")), (base::Size{50, 80}));
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ReplacedOutputTest, ALinkStaysAndItsFileGoesToTheTrash) {
  world.folder.Write("elsewhere/real.jpg", "the user's");
  std::filesystem::create_symlink(world.folder.Path("elsewhere/real.jpg"), Out("a.jpg"));
  List({Make("a.png")});
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_TRUE(std::filesystem::is_symlink(Out("a.jpg")));
  EXPECT_EQ(InTrash("real.jpg"), "the user's");
  EXPECT_EQ(SizeOf(world.folder.Path("elsewhere/real.jpg")), (base::Size{50, 80}));
}

TEST_F(ReplacedOutputTest, WithoutATrashNothingIsReplaced) {
  Own("a.jpg");
  List({Make("a.png")});
  NoTrash();
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Why(1).find("已有同名文件，没能移入回收站，未覆盖："), 0u) << Why(1);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's");
}

// It is moved at the last moment: what fails before leaves it.
TEST_F(ReplacedOutputTest, ASaveThatFailsLeavesItToTheRuleOfStaleOutputs) {
  Own("a.jpg");
  List({Make("a.png")});
  std::filesystem::remove(In("a.png"));
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's");
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ReplacedOutputTest, AReadOnlyFileStays) {
  Own("a.jpg");
  std::filesystem::permissions(Out("a.jpg"), std::filesystem::perms::owner_read);
  List({Make("a.png")});
  Cut();
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's");
  EXPECT_FALSE(TrashUsed());
}

class ExistingOutputTest : public ReplacedOutputTest {
 protected:
  static constexpr const char* kQuestion = "已有同名的文件，不是这次写出的：";

  void CutOver(const std::vector<std::string>& names) {
    std::vector<std::string> sources;
    for (const std::string& name : names) {
      Own(name + ".jpg", "the user's " + name);
      sources.push_back(Make(name + ".png"));
    }
    Cut(sources);
  }
  int Questions() const { return world.boxes.Count(kQuestion); }
};

TEST_F(ExistingOutputTest, TheFirstOneOfARunIsAskedAbout) {
  CutOver({"a", "b"});
  EXPECT_EQ(Questions(), 1);
  EXPECT_EQ(
      world.boxes.Count(kQuestion + Out("a.jpg") + "\r\n要替换吗？这次运行中再遇到同名的文件，都按这次的回答处理"), 1);
  EXPECT_EQ(InTrash("a.jpg"), "the user's a");
  EXPECT_EQ(InTrash("b.jpg"), "the user's b");
  EXPECT_EQ(Totals().written, 2u);
}

TEST_F(ExistingOutputTest, TheNextRunAsksAgain) {
  CutOver({"a"});
  Cut();
  EXPECT_EQ(Questions(), 2);
}

TEST_F(ExistingOutputTest, WithoutOneNothingIsAsked) {
  Cut({Make("a.png"), Make("x/b.png"), Make("y/b.png")});
  EXPECT_EQ(Questions(), 0);
}

TEST_F(ExistingOutputTest, BothAreKeptUnderDifferentNames) {
  world.boxes.Answer(kQuestion, host::Reply::No);
  Own("b(2).jpg", "another");
  CutOver({"a", "b"});
  EXPECT_EQ(Questions(), 1);
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a(2).jpg", "a.jpg", "b(2).jpg", "b(3).jpg", "b.jpg"}));
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's a");
  EXPECT_EQ(world.folder.Read("out/b(2).jpg"), "another");
  EXPECT_EQ(SizeOf(Out("b(3).jpg")), (base::Size{50, 80}));
  EXPECT_EQ(recorder.done.front().output, Out("a(2).jpg"));
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ExistingOutputTest, ItIsKeptAndTheSourcePassedOver) {
  world.boxes.Answer(kQuestion, host::Reply::Cancel);
  CutOver({"a", "b"});
  EXPECT_EQ(Questions(), 1);
  EXPECT_EQ(Totals().skipped, 2u);
  EXPECT_EQ(Why(1), "已有同名的文件 " + Out("a.jpg") + "，保留它，已跳过");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "b.jpg"}));
  EXPECT_EQ(world.folder.Read("out/b.jpg"), "the user's b");
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ExistingOutputTest, ADecisionBeforehandIsNotAskedFor) {
  program.onExisting = OnExisting::Rename;
  CutOver({"a"});
  program.onExisting = OnExisting::Skip;
  Cut();
  program.onExisting = OnExisting::Replace;
  Cut();
  EXPECT_EQ(Questions(), 0);
  EXPECT_EQ(recorder.done[1].result, Result::Skipped);
  EXPECT_EQ(InTrash("a.jpg"), "the user's a");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a(2).jpg", "a.jpg"}));
}

TEST_F(ExistingOutputTest, ASourceThatIsListedTwiceIsCutOnceBesideAKeptFile) {
  program.onExisting = OnExisting::Rename;
  Own("a.jpg");
  const std::string source = Make("a.png");
  Cut({source, Make("b.png"), source});
  EXPECT_EQ(Totals().written, 2u) << Whys();
  EXPECT_EQ(Why(3), "与列表中前面的文件相同，本次已处理");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a(2).jpg", "a.jpg", "b.jpg"}));
}

// The name beside a kept file may be the one that a later source gets.
TEST_F(ExistingOutputTest, AResultThatGotTheNameOfALaterOneIsKeptToo) {
  program.onExisting = OnExisting::Rename;
  for (const char* effects : {"0", "1"}) {
    SCOPED_TRACE(effects);
    Option("ChToGray", effects);
    for (const std::string& name : OutNames()) std::filesystem::remove(Out(name));
    program.files.Clear();
    Own("a.jpg");
    Cut({Make("a.png"), Make("a(2).png", 60, 40), Make("b.png")});
    EXPECT_EQ(Totals().written, 3u) << Whys();
    EXPECT_EQ(OutNames(), (std::vector<std::string>{"a(2)(2).jpg", "a(2).jpg", "a.jpg", "b.jpg"}));
    EXPECT_EQ(SizeOf(Out("a(2).jpg")), (base::Size{50, 80}));
    EXPECT_EQ(SizeOf(Out("a(2)(2).jpg")), (base::Size{30, 40}));
    EXPECT_EQ(Why(2), "“a(2).jpg”已是这次写出的另一张图片，另存为“a(2)(2).jpg”");
  }
  EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's");
  EXPECT_FALSE(TrashUsed());
}

// Bytes that were prefetched for one name are not written under another.
TEST_F(ExistingOutputTest, ANameIsKeptFromEveryWayOfCutting) {
  program.onExisting = OnExisting::Rename;
  Option("ChToGray", "1");
  CutOver({"a", "b", "c"});
  Option("ChAddBoard", "1");
  Cut();
  for (const char* name : {"a", "b", "c"}) {
    EXPECT_EQ(world.folder.Read(std::string("out/") + name + ".jpg"), std::string("the user's ") + name);
    EXPECT_TRUE(world.folder.Exists(std::string("out/") + name + "(2).jpg"));
    EXPECT_TRUE(world.folder.Exists(std::string("out/") + name + "(3).jpg"));
  }
  EXPECT_FALSE(TrashUsed());
}

TEST_F(ExistingOutputTest, APieceOfASplitGetsAnotherNameToo) {
  program.onExisting = OnExisting::Rename;
  Option("ChSplit", "1");
  options.TSmalS[4].SetText("2");
  options.TSmalS[5].SetText("1");
  Cut({Make("a.png")});
  const std::vector<std::string> first = OutNames();
  ASSERT_EQ(first.size(), 2u);
  std::filesystem::remove(Out(first[1]));
  Cut();
  EXPECT_EQ(OutNames().size(), 3u);
  EXPECT_FALSE(TrashUsed());
}

// What is kept is not a stale output either.
TEST_F(ExistingOutputTest, ItIsKeptIfTheSourceCannotBeCut) {
  for (const OnExisting way : {OnExisting::Rename, OnExisting::Skip}) {
    program.onExisting = way;
    program.files.Clear();
    Own("a.jpg");
    const std::string source = Make("a.png");
    List({source});
    world.folder.Write("in/a.png", world.folder.Read("in/a.png").substr(0, 100));
    Cut();
    EXPECT_EQ(world.folder.Read("out/a.jpg"), "the user's");
  }
  EXPECT_FALSE(TrashUsed());
}

}  // namespace
}  // namespace quillon::job
