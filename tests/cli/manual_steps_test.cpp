// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures at which a run waits are answered by name.
#include "cli/manual_steps.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "cli/world.h"

namespace quillon::cli {
namespace {

class ManualStepsTest : public testing::Test {
 protected:
  Outcome Cut(const std::vector<std::string>& files) {
    world_.onTurn = [this] { manual_.Turn(); };
    return world_.Perform({world_.Out(), World::Percent(), World::Set("TCutValue(3)", "50"),
                           World::Set("CmbOutType", "bmp"), World::Open("FBaseOpt"),
                           World::Set("FBaseOpt.ChMamal", "1"), World::Files(files), World::Click("menuNormalCut")});
  }
  int HeightOf(const std::string& name) {
    imaging::ImageFacts facts;
    EXPECT_TRUE(world_.program.images.ImageInfo(world_.test.folder.Path("out/" + name), facts)) << name;
    return facts.height;
  }
  std::vector<std::string> Pressed() const {
    std::vector<std::string> pressed;
    for (const Event& event : world_.recorder.Of(EventKind::Dialog)) {
      if (event.Text("kind") == "frame") pressed.push_back(event.Text("answer"));
    }
    return pressed;
  }

  World world_;
  ManualSteps manual_{world_.program, world_.suite.regions.cutFrame, world_.answers, world_.recorder};
};

TEST_F(ManualStepsTest, APictureWithoutAnAnswerGoesOn) {
  EXPECT_EQ(Cut({world_.Picture("a.bmp"), world_.Picture("b.bmp")}).exit, Exit::AllWritten);
  EXPECT_EQ(Pressed(), (std::vector<std::string>{"CmdNext", "CmdNext"}));
  EXPECT_EQ(HeightOf("a.bmp"), 15);
}

TEST_F(ManualStepsTest, AnswersArePressedInTheirOrder) {
  world_.answers = {{"b.bmp", "CmdNotCut", ""}, {"b.bmp", "CmdNext", ""}, {"确定旋转", "Yes", ""}};
  Cut({world_.Picture("a.bmp"), world_.Picture("b.bmp")});
  EXPECT_EQ(Pressed(), (std::vector<std::string>{"CmdNext", "CmdNotCut"}));
  EXPECT_EQ(HeightOf("a.bmp"), 15);
  EXPECT_EQ(HeightOf("b.bmp"), 30);
}

// The file on show is a work file then; neither the answers nor the events know it.
TEST_F(ManualStepsTest, AZoomedPictureIsAnsweredByItsName) {
  world_.answers = {{"b.jpg", "CmdRot90", ""}, {"确定旋转", "Yes", ""}};
  world_.onTurn = [this] { manual_.Turn(); };
  const Outcome outcome =
      world_.Perform({world_.Out(), World::Percent(), World::Open("FBaseOpt"), World::Set("FBaseOpt.ChMamal", "1"),
                      World::Set("FBaseOpt.ChZoomAndCut", "1"), World::Set("FBaseOpt.CmbZoom", "50%"),
                      World::Files({world_.Picture("a.jpg"), world_.Picture("b.jpg")}), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::AllWritten);
  EXPECT_EQ(Pressed(), (std::vector<std::string>{"CmdNext", "CmdRot90", "CmdNext"}));
  for (const Event& event : world_.recorder.Of(EventKind::Dialog)) {
    EXPECT_EQ(event.Text("title").find("Tmp"), std::string::npos) << event.Text("title");
  }
  EXPECT_LT(HeightOf("a.jpg"), HeightOf("b.jpg"));
}

// Nobody sees that it is not turned.
TEST_F(ManualStepsTest, APictureThatCannotBeTurnedIsNotCut) {
  world_.answers = {{"b.jpg", "CmdRot90", ""}, {"b.jpg", "CmdNext", ""}, {"确定旋转", "Yes", ""}};
  world_.onTurn = [this] { manual_.Turn(); };
  world_.test.faults.Set({.call = host::testing::DiskCall::OpenNew, .error = EIO, .pathHolds = "Tmp.jpg"});
  const std::vector<std::string> files{world_.Picture("a.jpg"), world_.Picture("b.jpg"), world_.Picture("c.jpg")};
  const std::string before = world_.test.folder.Read("b.jpg");
  const Outcome outcome = world_.Perform({World::Set("ChOver", "1"), World::Percent(), World::Set("TCutValue(3)", "50"),
                                          World::Open("FBaseOpt"), World::Set("FBaseOpt.ChMamal", "1"),
                                          World::Files(files), World::Click("menuNormalCut")});
  EXPECT_EQ(outcome.exit, Exit::SomeWithout);
  EXPECT_EQ(world_.FileResults(), (std::vector<std::string>{"a.jpg written", "b.jpg none", "c.jpg written"}));
  EXPECT_EQ(world_.recorder.Of(EventKind::File).at(1).Text("why").rfind("图片没能旋转，这一张没有裁剪：", 0), 0u);
  EXPECT_EQ(Pressed(), (std::vector<std::string>{"CmdNext", "CmdRot90", "CmdNext"}));
  EXPECT_EQ(world_.test.folder.Read("b.jpg"), before);
}

TEST_F(ManualStepsTest, ButtonsAreNamesOfAnswers) {
  for (const char* name : {"CmdNext", "cmdnotcut", "CmdAddBoard", "CmdRot90", "CmdRot270"}) {
    EXPECT_TRUE(ManualSteps::IsButton(name)) << name;
  }
  for (const char* name : {"", "Cmd", "Yes", "CmdOk"}) EXPECT_FALSE(ManualSteps::IsButton(name)) << name;
}

}  // namespace
}  // namespace quillon::cli
