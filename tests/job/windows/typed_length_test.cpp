// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/program_fixture.h"

namespace quillon::job {
namespace {

class TypedLengthTest : public StartedTest {
 protected:
  std::string Refusal(std::string_view name, std::string_view text) {
    return program.windows.Find(name)->UserEdit(text).refusal;
  }
};

TEST_F(TypedLengthTest, OfAFixedCutIsThatOfThePresets) {
  form.ChFixCut.Set(true);
  flags.OutDpi = 300;
  const std::pair<const char*, const char*> cases[] = {
      {"35mm", "413"}, {"3.5cm", "413"}, {"3,5 厘米", "413"}, {"2in", "600"}, {"700", "700"}, {"640px", "640"},
  };
  for (const auto& [text, pixels] : cases) {
    Put("TFixWH(0)", text);
    EXPECT_EQ(Value("TFixWH(0)"), pixels) << text;
  }
  EXPECT_EQ(flags.FixW, 640);
  flags.OutDpi = 0;
  flags.ScreenDpi = 96;
  Put("TFixWH(1)", "1in");
  EXPECT_EQ(Value("TFixWH(1)"), "96");
}

TEST_F(TypedLengthTest, OfAFixedCutIsRefusedBeyondItsLimits) {
  form.ChFixCut.Set(true);
  for (const char* text : {"0", "500001", "-5", "1e3", "1.5.2", "0x10", "0mm"}) {
    EXPECT_FALSE(Refusal("TFixWH(0)", text).empty()) << text;
    EXPECT_EQ(Value("TFixWH(0)"), "1062") << text;
  }
  Put("TFixWH(0)", "500000");
  EXPECT_EQ(Value("TFixWH(0)"), "500000");
}

TEST_F(TypedLengthTest, InPerCentNeedsAPicture) {
  form.ChCutA.Set(true);
  EXPECT_EQ(Refusal("TCutValue(0)", "10%"), "还没有预览的图片，不能用百分比");
  program.ShowPicture("/in/a.jpg", {2000, 1000});
  Put("TCutValue(0)", "10%");
  Put("TCutValue(1)", "10%");
  EXPECT_EQ(Value("TCutValue(0)"), "200");
  EXPECT_EQ(Value("TCutValue(1)"), "100");
}

TEST_F(TypedLengthTest, OfAMarginFollowsItsUnit) {
  program.ShowPicture("/in/a.jpg", {2000, 1000});
  flags.OutDpi = 254;
  form.ChCutA.Set(true);
  Put("TCutValue(2)", "1cm");
  EXPECT_EQ(Value("TCutValue(2)"), "100");
  form.ChCutA.Set(false);
  Put("TCutValue(2)", "2cm");
  EXPECT_EQ(Value("TCutValue(2)"), "10");
  Put("TCutValue(2)", "7.5%");
  EXPECT_EQ(Value("TCutValue(2)"), "7.5");
}

TEST_F(TypedLengthTest, OfABorderIsInMillimetres) {
  options.Load();
  const std::pair<const char*, const char*> cases[] = {{"3", "3"}, {"3mm", "3"}, {"0,3cm", "3"}, {"0.5in", "12.7"}};
  for (const auto& [text, millimetres] : cases) {
    Put("FBaseOpt.TBoard(0)", text);
    EXPECT_EQ(Value("FBaseOpt.TBoard(0)"), millimetres) << text;
  }
  EXPECT_EQ(Refusal("FBaseOpt.TBoard(0)", "10%"), "只接受长度，例如 3mm、0.3cm、0.1in");
}

}  // namespace
}  // namespace quillon::job
