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
    world.faults.Set({.call = host::testing::DiskCall::RenameNew,
                      .error = EACCES,
                      .length = host::testing::Fault::Length::ForEver,
                      .pathHolds = "out/a.jpg"});
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

}  // namespace
}  // namespace quillon::job
