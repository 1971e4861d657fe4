// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Why a control cannot be used.
#include "job/run/run_guard.h"
#include "job/windows/options_fixture.h"

namespace quillon::job {
namespace {

class AvailabilityTest : public OpenOptionsTest {
 protected:
  std::string Why(const std::string& name) const {
    const controls::Control* control = program.windows.Find(name);
    return control ? control->WhyDisabled() : "no such control";
  }
  void ExpectReasons(const std::string& when) const {
    for (const controls::Window* window :
         {static_cast<const controls::Window*>(&form), static_cast<const controls::Window*>(&options)}) {
      for (const controls::Control* control : window->Controls()) {
        EXPECT_EQ(control->Enabled(), control->WhyDisabled().empty()) << when << ": " << control->FullName();
      }
    }
  }
};

TEST_F(AvailabilityTest, WhateverIsLockedGivesAReason) {
  WriteApp("CutMedia.dll");
  WriteApp("Aspose.pdf.dll");
  ExpectReasons("at the start");
  for (int mode = 0; mode <= 5; ++mode) {
    Put("CmbCutMode", std::to_string(mode));
    ExpectReasons("mode " + std::to_string(mode));
  }
  Put("CmbCutMode", "0");
  Put("ChCutA", "0");
  ExpectReasons("percent");
  Put("ChCutA", "1");
  Put("ChFixCut", "1");
  ExpectReasons("fixed cut");
  for (int preset = 0; preset <= 6; ++preset) {
    Put("CmbKeepCut", std::to_string(preset));
    ExpectReasons("preset " + std::to_string(preset));
  }
  Put("ChFixCut", "0");
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.ChFrmOnly", "1");
  ExpectReasons("frame only");
  form.BeginRun();
  ExpectReasons("a run");
  form.EndRun();
  ExpectReasons("after a run");
  { const RunFrame frame(program.context, WindowUse::Usable); }
  ExpectReasons("after a listing");
}

TEST_F(AvailabilityTest, TheReasonsAreThese) {
  EXPECT_EQ(Why("TQuality"), "请先启用“压缩”");
  EXPECT_EQ(Why("ChCutAndArray"), "请先启用“固定裁剪”");
  EXPECT_EQ(Why("TFixWH(0)"), "请先启用“固定裁剪”");
  EXPECT_EQ(Why("ChAddToSize"), "只用于固定尺寸“不裁剪，居中补白”");
  EXPECT_EQ(Why("MenuGifCut"), "请先把裁剪模式选为“1-动态Gif裁剪”");
  EXPECT_EQ(Why("MenuStop"), "当前没有可以终止的操作");
  EXPECT_EQ(Why("FBaseOpt.ChRecover"), "请先选择旋转规则或启用“先旋转后裁剪”");
  EXPECT_EQ(Why("FBaseOpt.TAngle"), "请先选择“旋转任一角度”或启用“先旋转后裁剪”");
  EXPECT_EQ(Why("FBaseOpt.TSmalS(4)"), "请先启用“图片分切”");
  Put("FBaseOpt.CmbRotate", "1");
  EXPECT_EQ(Why("FBaseOpt.TAngle"), "角度由旋转规则决定");
  EXPECT_EQ(Why("FBaseOpt.ChRecover"), "");
  Put("ChCutA", "0");
  EXPECT_EQ(Why("ChFixCut"), "请先启用“绝对裁剪”");
  EXPECT_EQ(Why("ChCutAndArray"), "请先启用“绝对裁剪”");
  EXPECT_EQ(Why("MenuUnitConvert"), "请先启用“绝对裁剪”");
}

TEST_F(AvailabilityTest, AnExactSizeLocksWhatItReplaces) {
  EXPECT_EQ(Why("ChExact"), "请先启用“固定裁剪”");
  EXPECT_EQ(Why("ChExactPad"), "请先启用“成品尺寸”");
  EXPECT_EQ(Why("CmbAnchor"), "请先启用“成品尺寸”");
  EXPECT_EQ(Why("ChAsFramed"), "");
  Put("ChFixCut", "1");
  Put("FBaseOpt.CmbRotate", "1");
  Put("ChExact", "1");
  EXPECT_EQ(Why("ChExactPad"), "");
  EXPECT_EQ(Why("CmbAnchor"), "");
  EXPECT_EQ(Why("ChAsFramed"), "“成品尺寸”已决定裁剪框");
  EXPECT_EQ(Why("FBaseOpt.ChCutAndZoom"), "“成品尺寸”已决定结果的大小");
  EXPECT_EQ(Why("FBaseOpt.ChRecover"), "“成品尺寸”已决定结果的大小");
  Put("ChExactPad", "1");
  EXPECT_EQ(Why("CmbAnchor"), "补边时整张图片居中");
  Put("ChFixCut", "0");
  EXPECT_EQ(Why("FBaseOpt.ChCutAndZoom"), "");
  EXPECT_EQ(Why("ChAsFramed"), "");
}

TEST_F(AvailabilityTest, ModesGiveTheReasonForFixedChoices) {
  WriteApp("CutMedia.dll");
  WriteApp("Aspose.pdf.dll");
  const char* noOptions = "本裁剪模式没有高级选项";
  const char* ownType = "输出类型由裁剪模式决定";
  const char* rectangles = "本裁剪模式只做矩形裁剪";
  const struct {
    const char* mode;
    const char* options;
    const char* type;
    const char* style;
  } kModes[] = {{"1", noOptions, ownType, ""},
                {"2", noOptions, ownType, ""},
                {"3", "", ownType, ""},
                {"4", noOptions, ownType, rectangles},
                {"5", "", "", ""},
                {"0", "", "", ""}};
  for (const auto& row : kModes) {
    Put("CmbCutMode", row.mode);
    ASSERT_EQ(Value("CmbCutMode"), row.mode);
    EXPECT_EQ(Why("MenuBaseOptions"), row.options) << row.mode;
    EXPECT_EQ(Why("CmbOutType"), row.type) << row.mode;
    EXPECT_EQ(Why("CmbCutStyle"), row.style) << row.mode;
  }
}

TEST_F(AvailabilityTest, PresetsGiveTheReasonForWhatTheySet) {
  Put("ChFixCut", "1");
  EXPECT_EQ(Why("FBaseOpt.ChKeepCut"), "“固定裁剪”启用时，本项随之启用");
  Put("CmbKeepCut", "6");
  EXPECT_EQ(Why("TFixWH(1)"), "尺寸由所选的固定尺寸决定");
  EXPECT_EQ(Why("MenuUnitConvert"), "固定尺寸选为“自定义”时可用");
  Put("CmbKeepCut", "1");
  for (const char* name : {"ChAutoZoom", "FBaseOpt.ChAddBoard", "FBaseOpt.ChFrmOnly", "FBaseOpt.ChMamal",
                           "FBaseOpt.ChZoomAndCut", "FBaseOpt.ChSplit", "FBaseOpt.ChKeepExif"}) {
    EXPECT_EQ(Why(name), "所选的固定尺寸已指定本项") << name;
  }
}

TEST_F(AvailabilityTest, FrameOnlyGivesTheReasonThatNothingElseCounts) {
  Put("FBaseOpt.ChAddBoard", "1");
  Put("FBaseOpt.ChFrmOnly", "1");
  for (const char* name : {"ChFixCut", "FBaseOpt.CmbRotate", "FBaseOpt.TAngle", "FBaseOpt.ChToGray",
                           "FBaseOpt.ChToCMYK", "FBaseOpt.ChKeepCut", "FBaseOpt.ChCutAndZoom"}) {
    EXPECT_EQ(Why(name), "仅边框模式不做任何裁剪和处理") << name;
  }
}

TEST_F(AvailabilityTest, ARefusedEditGivesTheReason) {
  EXPECT_EQ(form.TQuality.UserEdit("50").refusal, "当前不可用：请先启用“压缩”");
}

// --- Which values have an effect

class EffectTest : public StartedTest {
 protected:
  controls::Effect Of(const std::string& name) { return program.windows.Find(name)->GetEffect(); }
  std::string WhyOf(const std::string& name) { return program.windows.Find(name)->WhyEffect(); }
};

TEST_F(EffectTest, RemaindersCountAlthoughTheyAreDisabled) {
  EXPECT_FALSE(Enabled("TFixWH(0)"));
  EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::Counts);
  EXPECT_EQ(WhyOf("TFixWH(0)"), "右边要去掉的像素");
  EXPECT_EQ(WhyOf("TFixWH(1)"), "下边要去掉的像素");
  EXPECT_TRUE(Enabled("TCutValue(3)"));
  EXPECT_EQ(Of("TCutValue(0)"), controls::Effect::Counts);
  EXPECT_EQ(Of("TCutValue(3)"), controls::Effect::None);
  EXPECT_EQ(WhyOf("TCutValue(3)"), "本项不起作用：下边按“高”去掉");
}

// In modes 1 and 2 the margins count without a fixed cut, unlike in a normal cut, and nothing is scaled.
TEST_F(EffectTest, AModeThatOnlyCutsHasItsOwnRule) {
  WriteApp("CutMedia.dll");
  for (const char* mode : {"1", "2"}) {
    Put("CmbCutMode", mode);
    Put("ChCutA", "1");
    Put("ChFixCut", "0");
    for (int i = 0; i < 4; ++i) EXPECT_EQ(Of("TCutValue(" + std::to_string(i) + ")"), controls::Effect::Counts);
    EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::None);
    EXPECT_EQ(WhyOf("TFixWH(0)"), "本项不起作用：没有启用“固定裁剪”，四边按填的数值裁");
    Put("ChFixCut", "1");
    EXPECT_EQ(Of("TCutValue(0)"), controls::Effect::Counts);
    EXPECT_EQ(Of("TCutValue(2)"), controls::Effect::None);
    EXPECT_EQ(WhyOf("TCutValue(2)"), "本项不起作用：右边按“宽”去掉");
    EXPECT_EQ(WhyOf("TFixWH(0)"), "右边要去掉的像素");
    EXPECT_EQ(WhyOf("ChAutoZoom"), "本项不起作用：本裁剪模式不缩放图片，也不加边框");
    EXPECT_EQ(Of("TQuality"), controls::Effect::None);
  }
}

TEST_F(EffectTest, InPercentAllFourMarginsCount) {
  Put("ChCutA", "0");
  for (int i = 0; i < 4; ++i) EXPECT_EQ(Of("TCutValue(" + std::to_string(i) + ")"), controls::Effect::Counts);
  EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::None);
}

TEST_F(EffectTest, OnceTheOptionsAreOpenTheirSizeCounts) {
  options.Load();
  EXPECT_EQ(Of("FBaseOpt.TSmalS(2)"), controls::Effect::Counts);
  EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::None);
  EXPECT_EQ(WhyOf("TCutValue(2)"), "本项不起作用：裁出的大小由高级选项的“保留裁剪”决定");
  Put("ChFixCut", "1");
  EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::Counts);
}

TEST_F(EffectTest, AFrameThatIsCutCountsAsItIsDrawn) {
  Put("ChAsFramed", "1");
  EXPECT_EQ(Of("TCutValue(3)"), controls::Effect::Counts);
  EXPECT_EQ(Of("TFixWH(0)"), controls::Effect::None);
  Put("ChFixCut", "1");
  EXPECT_EQ(WhyOf("TCutValue(3)"), "本项不起作用：框的大小由“宽”“高”决定");
  EXPECT_EQ(WhyOf("TFixWH(0)"), "裁剪框的宽");
  Put("ChAutoCenter", "1");
  EXPECT_EQ(WhyOf("TCutValue(0)"), "本项不起作用：“居中裁剪”决定框的位置");
  EXPECT_EQ(Of("ChAutoCenter"), controls::Effect::AsEnabled);
  Put("ChAsFramed", "0");
  EXPECT_EQ(WhyOf("ChAutoCenter"), "本项不起作用：自动裁剪按四边的数值，它只移动画的框");
}

TEST_F(EffectTest, AnExactSizeIsPlacedByItsAnchor) {
  Put("ChFixCut", "1");
  Put("ChExact", "1");
  EXPECT_EQ(WhyOf("TCutValue(0)"), "本项不起作用：“取图位置”决定取哪一块");
  EXPECT_EQ(WhyOf("TCutValue(2)"), "本项不起作用：“成品尺寸”决定取多大一块");
  EXPECT_EQ(WhyOf("TFixWH(0)"), "成品的宽");
  Put("CmbAnchor", "9");
  EXPECT_EQ(Of("TCutValue(0)"), controls::Effect::Counts);
  Put("ChExactPad", "1");
  EXPECT_EQ(WhyOf("TCutValue(0)"), "本项不起作用：补边时用整张图片");
}

TEST_F(EffectTest, BoxesOfTheFixedCutSayWhenTheyDoNotCount) {
  for (const char* box : {"ChFull", "ChAutoZoom", "ChMode1"}) {
    EXPECT_EQ(Of(box), controls::Effect::None) << box;
    EXPECT_EQ(WhyOf(box), "本项不起作用：只用于“固定裁剪”") << box;
  }
  Put("ChFixCut", "1");
  EXPECT_EQ(Of("ChAutoZoom"), controls::Effect::AsEnabled);
  EXPECT_EQ(WhyOf("ChFull"), "本项不起作用：只和“等比缩放”一起改变裁剪；启用时，预览中的框不能移动");
  Put("ChAutoZoom", "1");
  EXPECT_EQ(Of("ChFull"), controls::Effect::AsEnabled);
  EXPECT_EQ(WhyOf("ChMode1"), "本项不起作用：只用于 C 版、D 版的边框，而且图片发生旋转");
  Put("ChAsFramed", "1");
  EXPECT_EQ(WhyOf("ChAutoZoom"), "本项不起作用：“按预览框裁剪”已决定裁剪框");
  EXPECT_EQ(WhyOf("ChFull"), "本项不起作用：“按预览框裁剪”已决定裁剪框");
  Put("ChExact", "1");
  EXPECT_EQ(WhyOf("ChAutoZoom"), "本项不起作用：“成品尺寸”已决定结果的大小");
  Put("ChExact", "0");
  Put("CmbKeepCut", "3");
  EXPECT_EQ(Of("ChMode1"), controls::Effect::AsEnabled) << WhyOf("ChMode1");
}

TEST_F(EffectTest, OtherModesCutByTheirOwnRules) {
  WriteApp("Aspose.pdf.dll");
  Put("CmbCutMode", "5");
  EXPECT_EQ(Of("TCutValue(3)"), controls::Effect::AsEnabled);
  EXPECT_EQ(WhyOf("TCutValue(3)"), "");
}

TEST_F(EffectTest, TheQualityIsWrittenWithoutCompressionToo) {
  EXPECT_FALSE(Enabled("TQuality"));
  EXPECT_EQ(Of("TQuality"), controls::Effect::Counts);
  EXPECT_EQ(WhyOf("TQuality"), "没有启用“压缩”，也按这个品质写入");
  Put("CmbOutType", "png");
  EXPECT_EQ(WhyOf("TQuality"), "本项不起作用：只有 jpg 和 pdf 按品质写入");
  Put("CmbOutType", "jpg");
  Put("ChJpgComp", "1");
  EXPECT_EQ(WhyOf("TQuality"), "");
}

TEST_F(EffectTest, TheResolutionSaysWhatIsWritten) {
  EXPECT_EQ(form.CmbDPI.Text(), "0");
  EXPECT_EQ(form.CmbDPI.Note(), "（写入 300）");
  Put("CmbDPI", "72");
  EXPECT_EQ(form.CmbDPI.Note(), "");
  Put("CmbDPI", "0");
  EXPECT_EQ(form.CmbDPI.Note(), "");
  options.Load();
  Put("FBaseOpt.CmbDPI", "600");
  EXPECT_EQ(form.CmbDPI.Note(), "（写入 600）");
  EXPECT_EQ(options.CmbDPI.Note(), "");
}

}  // namespace
}  // namespace quillon::job
