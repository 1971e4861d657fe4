// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The border after a manual step that has made a picture of its own: turned, widened to the ratio, or both.
#include <ostream>

#include "regions/frame/frame_fixture.h"

namespace quillon::regions {
namespace {

// What the user does at the picture.
enum class Done { Turned, Widened, Both };

struct Case {
  const char* preset;
  Done done;
  base::Size result;
};

void PrintTo(const Case& given, std::ostream* out) { *out << given.preset << ", " << static_cast<int>(given.done); }

class ManualBorderTest : public ManualStepTest {
 protected:
  void SetUp() override {
    ManualStepTest::SetUp();
    Put("ChCutA", "1");
    Put("ChFixCut", "1");
    world.boxes.Answer("确定旋转？", host::Reply::Yes);
  }
  void Answer(Done done) {
    AtPicture(1, [this, done] {
      if (done != Done::Widened) cutPre.CmdRot90.UserClick();
      if (done != Done::Turned) cutPre.CmdAddBoard.UserClick();
      EXPECT_NE(flags.CurrentImagePath, In("a.jpg"));
      cutPre.CmdNext.UserClick();
    });
  }
  // Colours of the source that no border has.
  std::string MakeGreen() {
    return Make("a.jpg", job::Painted(400, 300, [](int, int) { return job::Pixel{20, 160, 40}; }), 300);
  }
};

class StudioBorderTest : public ManualBorderTest, public testing::WithParamInterface<Case> {};

TEST_P(StudioBorderTest, ThePictureGetsItsBorder) {
  const auto& [preset, done, result] = GetParam();
  Put("CmbKeepCut", preset);
  Answer(done);
  CutWith({MakeGreen()});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const job::Picture cut = Read(In("a.jpg"));
  EXPECT_EQ((base::Size{cut.width, cut.height}), result);
  const job::Pixel middle = cut.At(cut.width / 2, cut.height / 2);
  EXPECT_LE(middle.red, 30);
  EXPECT_NEAR(middle.green, 160, 6);
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.jpg"});
}

// 5 mm are 59 pixels at 300 dpi, 43 mm are 508. Preset 1 is 1630 x 1063 pixels, preset 2 1748 x 1181 without a border,
// presets 3 and 4 are 1063 x 1181 and 1181 x 1063. A turned picture of the last two has its sides exchanged.
INSTANTIATE_TEST_SUITE_P(Presets, StudioBorderTest,
                         testing::Values(Case{"1", Done::Turned, {1630 + 118, 1063 + 118}},
                                         Case{"1", Done::Widened, {1630 + 118, 1063 + 118}},
                                         Case{"1", Done::Both, {1630 + 118, 1063 + 118}},
                                         Case{"2", Done::Turned, {300, 400}}, Case{"2", Done::Both, {592, 400}},
                                         Case{"3", Done::Turned, {1181 + 59 + 508, 1063 + 118}},
                                         Case{"3", Done::Widened, {1063 + 118, 1181 + 59 + 508}},
                                         Case{"3", Done::Both, {1181 + 59 + 508, 1063 + 118}},
                                         Case{"4", Done::Turned, {1063 + 118, 1181 + 59 + 508}},
                                         Case{"4", Done::Widened, {1181 + 59 + 508, 1063 + 118}},
                                         Case{"4", Done::Both, {1063 + 118, 1181 + 59 + 508}}));

// The same without a preset, and into the output folder.
TEST_F(ManualBorderTest, AnOwnBorderOfATurnedPicture) {
  Put("ChFixCut", "0");
  Put("ChCutA", "0");
  CutTest::Margins(0, 0, 50, 0);
  Option("ChAddBoard", "1");
  for (int side = 0; side < 4; ++side) Option("TBoard(" + std::to_string(side) + ")", "5");
  Answer(Done::Turned);
  CutWith({MakeGreen()});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{150 + 118, 400 + 118}));
}

}  // namespace
}  // namespace quillon::regions
