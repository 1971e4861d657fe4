// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A user who changes anything that can be changed, in any order: what must hold after every step.
#include <random>
#include <vector>

#include "job/collaborator_doubles.h"
#include "job/program_fixture.h"

namespace quillon::job {
namespace {

using controls::Kind;

constexpr int kSteps = 4000;

class RandomUserTest : public StartedTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  std::mt19937 engine{GetParam()};
  IdleFrame manualFrame;
  IdleSheets sheets;
  IdleTools tools;

  int Any(int below) { return std::uniform_int_distribution(0, below - 1)(engine); }

  std::string AnyTextFor(const controls::Control& control) {
    static const std::vector<std::string> numbers = {"-7", "0", "1", "5", "33", "50", "90", "95", "300", "5000"};
    static const std::vector<std::string> zooms = {"100%", "50%", "9%", "800,600", "abc"};
    if (control.GetKind() == Kind::CheckBox) return Any(2) == 0 ? "0" : "1";
    if (&control == &options.CmbZoom) return zooms[static_cast<std::size_t>(Any(static_cast<int>(zooms.size())))];
    if (control.GetKind() == Kind::ComboBox) {
      return control.Items().empty() ? "0" : std::to_string(Any(static_cast<int>(control.Items().size())));
    }
    return numbers[static_cast<std::size_t>(Any(static_cast<int>(numbers.size())))];
  }

  std::vector<controls::Control*> Editable() {
    std::vector<controls::Control*> found;
    for (const controls::Window* window :
         {static_cast<controls::Window*>(&form), static_cast<controls::Window*>(&options)}) {
      for (controls::Control* control : window->Controls()) {
        const Kind kind = control->GetKind();
        if (kind == Kind::CheckBox || kind == Kind::ComboBox || kind == Kind::TextBox) found.push_back(control);
      }
    }
    return found;
  }

  std::vector<bool> Availability() {
    std::vector<bool> all;
    for (const controls::Window* window : program.windows.All()) {
      for (const controls::Control* control : window->Controls()) all.push_back(control->Enabled());
    }
    return all;
  }

  void CheckExclusions() {
    EXPECT_FALSE(form.ChBig.On() && form.ChCutAndArray.On());
    EXPECT_FALSE(options.ChZoomAndCut.On() && options.ChCutAndZoom.On());
    EXPECT_FALSE(options.ChToGray.On() && options.ChToWB.On());
    EXPECT_FALSE(options.ChClsWhite.On() && options.ChClsBlack.On());
    EXPECT_FALSE(options.ChRotateCut.On() && options.CmbRotate.Index() > 0);
    EXPECT_LE(form.CmbCutMode.Index(), 5);
    EXPECT_LE(form.CmbCutStyle.Index(), 3);
  }

  void CheckMirrors() {
    if (options.Loaded()) {
      EXPECT_EQ(form.ChBig.On(), options.ChBig.On());
      EXPECT_EQ(form.ChAutoCenter.On(), options.ChAutoCenter.On());
    }
    EXPECT_EQ(flags.LargeCapacityMode, form.ChBig.On());
    EXPECT_EQ(flags.FixW, form.TFixWH[0].Integer());
    EXPECT_EQ(flags.FixH, form.TFixWH[1].Integer());
    EXPECT_EQ(flags.AdvancedOptionsLoaded, options.Loaded());
    const bool loaded = options.Loaded();
    EXPECT_EQ(flags.ManualCutMode, loaded && options.ChMamal.On());
    EXPECT_EQ(flags.CutThenZoom, loaded && options.ChCutAndZoom.On());
    EXPECT_EQ(flags.ToBlackWhite, loaded && options.ChToWB.On());
    EXPECT_EQ(flags.ToCmyk, loaded && options.ChToCMYK.On());
    EXPECT_EQ(flags.KeepExif, loaded && options.ChKeepExif.On());
    EXPECT_EQ(form.ChAddToSize.On() && form.CmbKeepCut.Index() != 5, false);
  }

  void CheckRanges() {
    EXPECT_GE(form.TQuality.Number(), 30);
    EXPECT_LE(form.TQuality.Number(), 99);
    EXPECT_LE(std::abs(options.TAngle.Number()), 180);
    for (const controls::TextBox& margin : form.TCutValue) EXPECT_GE(margin.Number(), 0);
    for (const controls::TextBox& side : options.TBoard) EXPECT_GE(side.Number(), 0);
    EXPECT_TRUE(form.ChCutA.On() || !form.ChFixCut.On());
  }

  void CheckEngines() {
    if (!program.manualFrame) {
      EXPECT_FALSE(options.ChMamal.On());
    }
    if (!program.sheets) {
      EXPECT_FALSE(form.ChCutAndArray.On());
    }
    if (!program.outputTools) {
      EXPECT_FALSE(options.ChToCMYK.On());
      EXPECT_TRUE(form.CmbOutType.Index() != 5 || form.CmbCutMode.Index() == 3);
    }
    if (!program.engines.edgeRemoval) {
      EXPECT_FALSE(options.ChClsWhite.On() || options.ChClsBlack.On());
    }
    EXPECT_FALSE(form.ChLarge.On());
    EXPECT_FALSE(options.ChMulCut.On());
  }

  void CheckAvailability() {
    const std::vector<bool> before = Availability();
    program.ShowAvailability();
    EXPECT_EQ(Availability(), before);
  }
};

TEST_P(RandomUserTest, FindsNoWayPastTheRules) {
  if (GetParam() % 2 == 1) {
    program.manualFrame = &manualFrame;
    program.sheets = &sheets;
    program.outputTools = &tools;
    program.engines.edgeRemoval = true;
    WriteApp("ColorConfigs/Default.icm");
    WriteApp("CutMedia.dll");
    WriteApp("Aspose.pdf.dll");
  }
  const std::vector<controls::Control*> editable = Editable();
  int taken = 0;
  for (int step = 0; step < kSteps; ++step) {
    if (step == kSteps / 10) options.Load();
    controls::Control& control = *editable[static_cast<std::size_t>(Any(static_cast<int>(editable.size())))];
    const std::string text = AnyTextFor(control);
    taken += control.UserEdit(text).Accepted() ? 1 : 0;
    world.boxes.Forget();
    CheckExclusions();
    CheckMirrors();
    CheckRanges();
    CheckEngines();
    CheckAvailability();
    ASSERT_FALSE(HasFailure()) << "step " << step << ": " << control.FullName() << "=" << text;
  }
  EXPECT_GT(taken, kSteps / 3);
}

INSTANTIATE_TEST_SUITE_P(Users, RandomUserTest, ::testing::Range(0U, 8U));

}  // namespace
}  // namespace quillon::job
