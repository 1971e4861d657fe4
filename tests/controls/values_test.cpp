// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/values.h"

#include <gtest/gtest.h>

#include "controls/probe.h"

namespace quillon::controls {
namespace {

class Values : public testing::Test {
 protected:
  Window window_{"Form1", ""};
};

TEST_F(Values, CheckBoxAcceptsZeroAndOne) {
  CheckBox box(window_, "ChA", {}, true);
  EXPECT_TRUE(box.On());
  EXPECT_EQ(box.Value(), "1");
  EXPECT_EQ(box.Text(), "1");
  EXPECT_TRUE(box.UserEdit("0").Accepted());
  EXPECT_FALSE(box.On());
  EXPECT_EQ(box.Value(), "0");
  EXPECT_TRUE(box.UserEdit("1").Accepted());
  EXPECT_TRUE(box.On());
  for (const char* text : {"", "2", "true", "01", " 1", "-1"}) {
    EXPECT_EQ(box.UserEdit(text).refusal, "只接受 0 或 1") << text;
    EXPECT_TRUE(box.On());
  }
}

TEST_F(Values, CheckBoxNotifiesOnlyOfARealChange) {
  CheckBox box(window_, "ChA", {});
  Probe probe(window_);
  probe.NoteHandlerOf(box);
  box.Set(false);
  EXPECT_EQ(probe.Drain(), Notes());
  box.Set(true);
  EXPECT_EQ(probe.Drain(), (Notes{"value ChA", "handler ChA"}));
}

TEST_F(Values, TextBoxForAnyTextKeepsItAsItIs) {
  TextBox box(window_, "T", {}, "start");
  EXPECT_EQ(box.GetContent(), Content::Any);
  EXPECT_EQ(box.Value(), "start");
  for (const char* text : {"", " 12 ", "１２", "abc"}) {
    EXPECT_TRUE(box.UserEdit(text).Accepted());
    EXPECT_EQ(box.Value(), text);
  }
}

TEST_F(Values, TextBoxForNumbersRefusesWhatIsNoneAndKeepsItsValue) {
  TextBox box(window_, "T", {}, "5", Content::Number);
  for (const char* text : {"", "abc", "1,500", "12px", "1e3", "0x10", "1.5.2"}) {
    EXPECT_EQ(box.UserEdit(text).refusal, "只接受数字，例如 12.5");
    EXPECT_EQ(box.Value(), "5");
  }
  const std::pair<const char*, const char*> taken[] = {{"1.50", "1.5"}, {"１２．５", "12.5"}, {" -3 ", "-3"},
                                                       {"007", "7"},    {"+4", "4"},          {"1,25", "1.25"}};
  for (const auto& [text, value] : taken) {
    EXPECT_TRUE(box.UserEdit(text).Accepted());
    EXPECT_EQ(box.Value(), value);
  }
}

TEST_F(Values, TextBoxForIntegersRefusesFractions) {
  TextBox box(window_, "T", {}, "5", Content::Integer);
  for (const char* text : {"", "abc", "1.5", "1e3", "99999999999"}) {
    EXPECT_EQ(box.UserEdit(text).refusal, "只接受整数，例如 300");
    EXPECT_EQ(box.Value(), "5");
  }
  EXPECT_TRUE(box.UserEdit("１０６２").Accepted());
  EXPECT_EQ(box.Value(), "1062");
}

TEST_F(Values, TextBoxLeavesLimitsToItsHandler) {
  TextBox box(window_, "T", {}, "5", Content::Integer, {.min = 30, .max = 99});
  EXPECT_TRUE(box.UserEdit("120").Accepted());
  EXPECT_EQ(box.Value(), "120");
}

TEST_F(Values, TextBoxRefusesWhatIsBeyondItsLimitsIfItShould) {
  TextBox box(window_, "T", {}, "5", Content::Integer, {1, 500000, Beyond::Refused});
  for (const char* text : {"0", "-3", "500001"}) {
    EXPECT_EQ(box.UserEdit(text).refusal, "只接受 1 到 500000 的整数，例如 300");
    EXPECT_EQ(box.Value(), "5");
  }
  for (const char* text : {"1", "500000"}) EXPECT_TRUE(box.UserEdit(text).Accepted());
  box.SetNumber(0);
  EXPECT_EQ(box.Value(), "0");
}

TEST_F(Values, TextBoxConvertsUnitsIfItHasALength) {
  TextBox box(window_, "T", {}, "5", Content::Integer, {1, 1000, Beyond::Refused});
  box.SetUnits([](const base::Measure& measure) {
    return measure.unit == base::Unit::Percent ? Converted{0, "没有图片"} : Converted{measure.value * 10.06};
  });
  EXPECT_TRUE(box.UserEdit("3.5cm").Accepted());
  EXPECT_EQ(box.Value(), "35");
  EXPECT_EQ(box.UserEdit("10%").refusal, "没有图片");
  EXPECT_FALSE(box.UserEdit("200mm").Accepted());
  EXPECT_FALSE(box.UserEdit("3.5").Accepted());
  EXPECT_FALSE(box.UserEdit("3 foot").Accepted());
  EXPECT_EQ(box.Value(), "35");
}

TEST_F(Values, TextBoxShowsPeopleSixDigits) {
  TextBox box(window_, "T", {}, "5", Content::Number);
  box.SetNumber(33.333333333333336);
  EXPECT_EQ(box.Text(), "33.3333");
  EXPECT_EQ(box.Value(), "33.333333333333336");
  box.SetText("");
  EXPECT_EQ(box.Text(), "");
}

TEST_F(Values, TextBoxReturnsItsLimits) {
  TextBox box(window_, "T", {}, "5");
  EXPECT_EQ(box.MinText(), "");
  EXPECT_EQ(box.MaxText(), "");
  Probe probe(window_);
  probe.NoteHandlerOf(box);
  box.SetLimits({.min = 0.5, .max = 90});
  EXPECT_EQ(probe.Drain(), Notes{"appearance T"});
  EXPECT_EQ(box.MinText(), "0.5");
  EXPECT_EQ(box.MaxText(), "90");
  EXPECT_EQ(box.GetLimits(), (Limits{.min = 0.5, .max = 90}));
  box.SetLimits({.min = 0.5, .max = 90});
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST_F(Values, TextBoxReadsTheNumberAtItsHead) {
  TextBox box(window_, "T", {}, "");
  EXPECT_EQ(box.Number(), 0);
  box.SetText("12.5cm");
  EXPECT_EQ(box.Number(), 12.5);
  EXPECT_EQ(box.Integer(), 12);
  box.SetText("13.5");
  EXPECT_EQ(box.Integer(), 14);
  box.SetText("abc");
  EXPECT_EQ(box.Integer(), 0);
}

TEST_F(Values, TextBoxSetByTheProgramNotifiesOnlyOfARealChange) {
  TextBox box(window_, "T", {}, "5");
  Probe probe(window_);
  probe.NoteHandlerOf(box);
  box.SetNumber(5);
  box.SetText("5");
  EXPECT_EQ(probe.Drain(), Notes());
  box.SetNumber(2.5);
  EXPECT_EQ(box.Value(), "2.5");
  EXPECT_EQ(probe.Drain(), (Notes{"value T", "handler T"}));
}

TEST_F(Values, ListStartsWithItsEntrySelectedOrNone) {
  const ComboBox first(window_, "CmbA", {}, {"jpg", "png"}, 0);
  EXPECT_EQ(first.Index(), 0);
  EXPECT_EQ(first.Value(), "0");
  EXPECT_EQ(first.Text(), "jpg");
  EXPECT_EQ(first.Items(), (Notes{"jpg", "png"}));
  EXPECT_FALSE(first.IsEditable());
  for (const int index : {-1, 2, 99}) {
    const ComboBox none(window_, "CmbB", {}, {"jpg", "png"}, index);
    EXPECT_EQ(none.Index(), -1);
    EXPECT_EQ(none.Text(), "");
  }
}

TEST_F(Values, ListSelectsByIndex) {
  ComboBox list(window_, "Cmb", {}, {"jpg", "png", "gif"}, 0);
  Probe probe(window_);
  probe.NoteHandlerOf(list);
  list.Select(2);
  EXPECT_EQ(list.Text(), "gif");
  EXPECT_EQ(probe.Drain(), (Notes{"value Cmb", "handler Cmb"}));
  list.Select(2);
  EXPECT_EQ(probe.Drain(), Notes());
  for (const int outside : {3, -5}) {
    list.Select(1);
    list.Select(outside);
    EXPECT_EQ(list.Index(), -1);
    EXPECT_EQ(list.Text(), "");
  }
}

TEST_F(Values, ListIsSetByTextAndLeavesUnknownTextAlone) {
  ComboBox list(window_, "Cmb", {}, {"jpg", "png"}, 0);
  Probe probe(window_);
  list.SetText("png");
  EXPECT_EQ(list.Index(), 1);
  EXPECT_EQ(probe.Drain(), Notes{"value Cmb"});
  list.SetText("pdf");
  EXPECT_EQ(list.Index(), 1);
  EXPECT_EQ(list.Text(), "png");
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST_F(Values, EditableListAcceptsATextOfItsOwn) {
  ComboBox list(window_, "Cmb", {}, {"72", "300"}, 0, Editable::Yes);
  Probe probe(window_);
  probe.NoteHandlerOf(list);
  EXPECT_TRUE(list.IsEditable());
  list.SetText("254");
  EXPECT_EQ(list.Index(), -1);
  EXPECT_EQ(list.Value(), "-1");
  EXPECT_EQ(list.Text(), "254");
  EXPECT_EQ(probe.Drain(), (Notes{"value Cmb", "handler Cmb"}));
  list.SetText("254");
  EXPECT_EQ(probe.Drain(), Notes());
  list.SetText("300");
  EXPECT_EQ(list.Index(), 1);
  list.SetText("1");
  EXPECT_EQ(list.Index(), -1);
  list.Select(-1);
  EXPECT_EQ(list.Text(), "");
}

TEST_F(Values, UsersEditOfAListIsAnEntryOrElseAnIndex) {
  ComboBox list(window_, "Cmb", {}, {"0", "72", "1"}, 0);
  EXPECT_TRUE(list.UserEdit("72").Accepted());
  EXPECT_EQ(list.Index(), 1);
  // The entry "1" stands at index 2: the text wins.
  EXPECT_TRUE(list.UserEdit("1").Accepted());
  EXPECT_EQ(list.Index(), 2);
  for (const char* text : {"3", "-1", "x", "", "1.0"}) {
    EXPECT_EQ(list.UserEdit(text).refusal, std::string("没有这一项：") + text);
    EXPECT_EQ(list.Index(), 2);
  }
  ComboBox types(window_, "CmbT", {}, {"jpg", "png"}, 0);
  EXPECT_TRUE(types.UserEdit("1").Accepted());
  EXPECT_EQ(types.Text(), "png");
}

TEST_F(Values, UsersEditOfAnEditableListIsAlwaysAText) {
  ComboBox list(window_, "Cmb", {}, {"72", "300"}, 0, Editable::Yes);
  EXPECT_TRUE(list.UserEdit("300").Accepted());
  EXPECT_EQ(list.Index(), 1);
  EXPECT_TRUE(list.UserEdit("0").Accepted());
  EXPECT_EQ(list.Index(), -1);
  EXPECT_EQ(list.Text(), "0");
}

TEST_F(Values, NewItemsSelectTheFirst) {
  ComboBox list(window_, "Cmb", {}, {"a", "b", "c"}, 2);
  Probe probe(window_);
  probe.NoteHandlerOf(list);
  list.SetItems({"x", "y"});
  EXPECT_EQ(list.Items(), (Notes{"x", "y"}));
  EXPECT_EQ(list.Index(), 0);
  EXPECT_EQ(list.Text(), "x");
  EXPECT_EQ(probe.Drain(), (Notes{"appearance Cmb", "value Cmb", "handler Cmb"}));
  list.SetItems({"x", "z"});
  EXPECT_EQ(probe.Drain(), Notes{"appearance Cmb"});
  list.SetItems({});
  EXPECT_EQ(list.Index(), -1);
  EXPECT_EQ(list.Text(), "");
}

TEST_F(Values, NewItemsAreShownTogetherWithTheirSelection) {
  ComboBox list(window_, "Cmb", {}, {"a", "b", "c"}, 2);
  std::vector<int> seen;
  window_.Observe([&](Control&, Aspect) { seen.push_back(list.Index()); });
  list.SetItems({"x"});
  EXPECT_EQ(seen, (std::vector<int>{0, 0}));
}

TEST_F(Values, LabelShowsItsCaptionAsValue) {
  Label label(window_, "LInfo", {"文件数：0"});
  Probe probe(window_);
  probe.NoteHandlerOf(label);
  EXPECT_EQ(label.Value(), "文件数：0");
  label.SetText("文件数：3");
  EXPECT_EQ(label.Caption(), "文件数：3");
  EXPECT_EQ(label.Value(), "文件数：3");
  EXPECT_EQ(probe.Drain(), (Notes{"appearance LInfo", "value LInfo", "handler LInfo"}));
  label.SetText("文件数：3");
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST_F(Values, LabelIsEditedByTheUserOnlyIfItIsEditable) {
  Label fixed(window_, "LInfo", {"说明"});
  EXPECT_EQ(fixed.UserEdit("x").refusal, "不能填写");
  EXPECT_EQ(fixed.Value(), "说明");
  Label folder(window_, "LOutDir", {"输出目录未指定"}, Editable::Yes);
  EXPECT_TRUE(folder.UserEdit("/照片").Accepted());
  EXPECT_EQ(folder.Value(), "/照片");
}

TEST_F(Values, MenuKnowsItsShortcut) {
  const Menu with(window_, "MenuA", {}, "Ctrl+O");
  const Menu without(window_, "MenuB", {});
  EXPECT_EQ(with.Shortcut(), "Ctrl+O");
  EXPECT_EQ(without.Shortcut(), "");
}

TEST_F(Values, ColourIsReadAsANumberOrAsHexDigits) {
  ColourBox box(window_, "PCl", {}, base::kWhite);
  EXPECT_EQ(box.Value(), "16777215");
  const std::pair<const char*, std::int32_t> taken[] = {{"#FF8001", 0x0180FF}, {"#000000", 0}, {"#0000ff", 0xFF0000},
                                                        {"255", 0xFF},         {"0", 0},       {"16777215", 0xFFFFFF}};
  for (const auto& [text, value] : taken) {
    EXPECT_TRUE(box.UserEdit(text).Accepted()) << text;
    EXPECT_EQ(box.Colour().value, value) << text;
  }
  EXPECT_EQ(box.Value(), "16777215");
  for (const char* text : {"", "#", "#FFF", "#GGGGGG", "#-12345", "#FFFFFF0", "-1", "16777216", "white", "12x", " 1"}) {
    EXPECT_EQ(box.UserEdit(text).refusal, "只接受颜色值，例如 #FFFFFF") << text;
    EXPECT_EQ(box.Colour(), base::kWhite);
  }
}

TEST_F(Values, ColourNotifiesOnlyOfARealChange) {
  ColourBox box(window_, "PCl", {}, base::kWhite);
  Probe probe(window_);
  probe.NoteHandlerOf(box);
  box.Set(base::kWhite);
  EXPECT_EQ(probe.Drain(), Notes());
  box.Set({0});
  EXPECT_EQ(probe.Drain(), (Notes{"value PCl", "handler PCl"}));
}

TEST_F(Values, ArrayNamesItsControlsByIndex) {
  ControlArray<TextBox, 4> margins(window_, "TCutValue",
                                   [](Window& window, const std::string& name, std::size_t index) {
                                     return TextBox(window, name, {}, index == 3 ? "5" : "0");
                                   });
  EXPECT_EQ(margins.Size(), 4u);
  EXPECT_EQ(margins[0].Name(), "TCutValue(0)");
  EXPECT_EQ(margins[3].FullName(), "Form1.TCutValue(3)");
  EXPECT_EQ(margins[2].Value(), "0");
  EXPECT_EQ(margins[3].Value(), "5");
  std::vector<const Control*> listed;
  for (const TextBox& margin : std::as_const(margins)) listed.push_back(&margin);
  EXPECT_EQ(listed, std::vector<const Control*>(window_.Controls().begin(), window_.Controls().end()));
  for (TextBox& margin : margins) margin.SetText("7");
  EXPECT_EQ(std::as_const(margins)[1].Value(), "7");
}

TEST_F(Values, SliderAcceptsWholeNumbersWithinItsRange) {
  Slider slider(window_, "Slider1", {}, 40, 1, 800);
  EXPECT_EQ(slider.Value(), "40");
  EXPECT_EQ(slider.MinText(), "1");
  EXPECT_EQ(slider.MaxText(), "800");
  EXPECT_TRUE(slider.UserEdit("800").Accepted());
  EXPECT_EQ(slider.Position(), 800);
  for (const char* text : {"0", "801", "", "1.5", "x"}) {
    EXPECT_EQ(slider.UserEdit(text).refusal, "只接受 1 到 800 的整数") << text;
  }
  EXPECT_EQ(slider.Position(), 800);
  slider.Set(-3);
  EXPECT_EQ(slider.Position(), 1);
}

TEST_F(Values, SliderFollowsItsRangeAndNotifiesOnlyOfARealChange) {
  Slider slider(window_, "HS", {}, 40, 0, 100);
  Probe probe(window_);
  probe.NoteHandlerOf(slider);
  slider.Set(40);
  slider.SetRange(0, 100);
  EXPECT_EQ(probe.Drain(), Notes());
  slider.SetRange(0, 30);
  EXPECT_EQ(slider.Position(), 30);
  EXPECT_EQ(probe.Drain(), (Notes{"appearance HS", "value HS", "handler HS"}));
  slider.SetRange(0, 50);
  EXPECT_EQ(probe.Drain(), (Notes{"appearance HS"}));
}

}  // namespace
}  // namespace quillon::controls
