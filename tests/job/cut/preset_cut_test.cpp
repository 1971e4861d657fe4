// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Cuts with each preset of the fixed size.
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

constexpr base::Size kSource{1900, 1300};

class PresetCutTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    Put("ChCutA", "1");
    Put("ChFixCut", "1");
    const std::string bitmap =
        world.folder.Write("work/a.bmp", BitmapBytes(Painted(kSource.width, kSource.height, Slope)));
    List({bitmap});
  }
  // In pixels, if the unit is pixels.
  void Left(int left, int top) {
    form.TCutValue[0].SetNumber(left);
    form.TCutValue[1].SetNumber(top);
    form.TCutValue[2].SetNumber(0);
    form.TCutValue[3].SetNumber(0);
  }
};

// The settled arithmetic: the fixed size is what is left over on the right and at the bottom.
TEST_F(PresetCutTest, SizesAreRemainders) {
  Left(5, 7);
  for (int preset = 6; preset < static_cast<int>(PresetTexts().size()); ++preset) {
    Put("CmbKeepCut", std::to_string(preset));
    Cut();
    ASSERT_EQ(Totals().written, 1u) << preset << ": " << Whys();
    const base::Size wanted{kSource.width - 5 - flags.FixW, kSource.height - 7 - flags.FixH};
    EXPECT_EQ(SizeOf(Out("a.jpg")), wanted) << preset;
    EXPECT_EQ(DpiOf(Out("a.jpg")), 300) << preset;
  }
}

TEST_F(PresetCutTest, AnOwnSize) {
  Left(100, 50);
  Put("TFixWH(0)", "800");
  Put("TFixWH(1)", "250");
  Cut();
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{1000, 1000}));
}

// 5 mm are 59 pixels at 300 dpi, 43 mm are 508; with equal proportions the margins are percent, and none cut nothing.
TEST_F(PresetCutTest, StudioPresetsFrameTheirSize) {
  const std::pair<const char*, base::Size> presets[] = {{"1", {1630 + 118, 1063 + 118}},
                                                        {"2", kSource},
                                                        {"3", {1063 + 118, 1181 + 59 + 508}},
                                                        {"4", {1181 + 59 + 508, 1063 + 118}},
                                                        {"5", {1181, 1063}}};
  Left(0, 0);
  for (const auto& [preset, size] : presets) {
    world.folder.Write("work/a.bmp", BitmapBytes(Painted(kSource.width, kSource.height, Slope)));
    Put("CmbKeepCut", preset);
    Cut();
    ASSERT_EQ(Totals().written, 1u) << preset << ": " << Whys();
    EXPECT_EQ(SizeOf(world.folder.Path("work/a.bmp")), size) << preset;
  }
}

}  // namespace
}  // namespace quillon::job
