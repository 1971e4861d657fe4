// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/control.h"

#include <gtest/gtest.h>

#include "controls/grid.h"
#include "controls/probe.h"
#include "controls/values.h"

namespace quillon::controls {
namespace {

struct Sheet : Window {
  Sheet() : Window("Form1", "标题") {}
  Frame group{*this, "Frame1", {"参数"}};
  Frame inner{*this, "Frame2", {.caption = "内", .parent = &group}};
  CheckBox box{*this, "ChBox", {.caption = "框", .tooltip = "提示", .parent = &inner}};
  TextBox text{*this, "TText", {}, "5"};
  Button button{*this, "CmdGo", {"走"}};
  Menu menu{*this, "MenuGo", {"走(&G)"}, "Ctrl+G"};
  Label label{*this, "LInfo", {"说明"}};
  ComboBox list{*this, "CmbList", {}, {"a", "b"}, 0};
  ColourBox colour{*this, "PCl", {}, base::kWhite};
  Grid grid{*this, "MSF", {}, {"一", "二"}};
};

TEST(Control, ListsItselfInItsWindowInTheOrderOfDeclaration) {
  Sheet sheet;
  std::vector<std::string> names;
  for (const Control* control : sheet.Controls()) names.push_back(control->Name());
  EXPECT_EQ(names, (Notes{"Frame1", "Frame2", "ChBox", "TText", "CmdGo", "MenuGo", "LInfo", "CmbList", "PCl", "MSF"}));
}

TEST(Control, KnowsItsKindNameWindowAndParent) {
  Sheet sheet;
  EXPECT_EQ(sheet.box.GetKind(), Kind::CheckBox);
  EXPECT_EQ(sheet.text.GetKind(), Kind::TextBox);
  EXPECT_EQ(sheet.list.GetKind(), Kind::ComboBox);
  EXPECT_EQ(sheet.button.GetKind(), Kind::Button);
  EXPECT_EQ(sheet.menu.GetKind(), Kind::Menu);
  EXPECT_EQ(sheet.label.GetKind(), Kind::Label);
  EXPECT_EQ(sheet.group.GetKind(), Kind::Frame);
  EXPECT_EQ(sheet.colour.GetKind(), Kind::ColourBox);
  EXPECT_EQ(sheet.grid.GetKind(), Kind::Grid);
  EXPECT_EQ(sheet.box.Name(), "ChBox");
  EXPECT_EQ(sheet.box.FullName(), "Form1.ChBox");
  EXPECT_EQ(&sheet.box.GetWindow(), &sheet);
  EXPECT_EQ(sheet.box.Parent(), &sheet.inner);
  EXPECT_EQ(sheet.box.Caption(), "框");
  EXPECT_EQ(sheet.box.Tooltip(), "提示");
}

TEST(Control, IsEnabledTogetherWithAllItsParents) {
  Sheet sheet;
  EXPECT_TRUE(sheet.box.Enabled());
  sheet.group.SetEnabled(false);
  EXPECT_FALSE(sheet.box.Enabled());
  EXPECT_TRUE(sheet.box.OwnEnabled());
  EXPECT_TRUE(sheet.text.Enabled());
  sheet.group.SetEnabled(true);
  sheet.box.SetEnabled(false);
  EXPECT_FALSE(sheet.box.Enabled());
  EXPECT_FALSE(sheet.box.OwnEnabled());
  EXPECT_TRUE(sheet.inner.Enabled());
}

TEST(Control, IsVisibleTogetherWithAllItsParents) {
  Sheet sheet;
  EXPECT_TRUE(sheet.box.Visible());
  sheet.group.SetVisible(false);
  EXPECT_FALSE(sheet.box.Visible());
  sheet.group.SetVisible(true);
  sheet.box.SetVisible(false);
  EXPECT_FALSE(sheet.box.Visible());
}

TEST(Control, StartsWithItsAppearance) {
  Sheet sheet;
  const CheckBox off(sheet, "ChOff", {.enabled = false, .visible = false});
  EXPECT_FALSE(off.Enabled());
  EXPECT_FALSE(off.Visible());
}

TEST(Control, NotifiesOfAChangedAppearanceOnceAndOnlyOfAChange) {
  Sheet sheet;
  Probe probe(sheet);
  sheet.box.SetCaption("新");
  sheet.box.SetTooltip("新提示");
  sheet.box.SetEnabled(false);
  sheet.box.SetVisible(false);
  EXPECT_EQ(probe.Drain(), Notes(4, "appearance ChBox"));
  EXPECT_EQ(sheet.box.Caption(), "新");
  EXPECT_EQ(sheet.box.Tooltip(), "新提示");
  sheet.box.SetCaption("新");
  sheet.box.SetTooltip("新提示");
  sheet.box.SetEnabled(false);
  sheet.box.SetVisible(false);
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST(Control, RemembersAMarkerText) {
  Sheet sheet;
  EXPECT_EQ(sheet.box.Tag(), "");
  sheet.box.SetTag("asked");
  EXPECT_EQ(sheet.box.Tag(), "asked");
}

TEST(Control, HasNothingToShowUnlessItsKindHas) {
  Sheet sheet;
  EXPECT_EQ(sheet.button.Value(), "");
  EXPECT_EQ(sheet.button.Text(), "");
  EXPECT_TRUE(sheet.button.Items().empty());
  EXPECT_EQ(sheet.button.MinText(), "");
  EXPECT_EQ(sheet.button.MaxText(), "");
}

TEST(UserEdit, IsRefusedWhileDisabledOrHiddenThoughTheProgramMayStillSet) {
  Sheet sheet;
  Probe probe(sheet);
  probe.NoteHandlerOf(sheet.box);
  sheet.inner.SetEnabled(false);
  probe.Drain();
  EXPECT_EQ(sheet.box.UserEdit("1").refusal, "当前不可用");
  EXPECT_FALSE(sheet.box.On());
  EXPECT_EQ(probe.Drain(), Notes());
  sheet.box.Set(true);
  EXPECT_TRUE(sheet.box.On());
  EXPECT_EQ(probe.Drain(), (Notes{"value ChBox", "handler ChBox"}));

  sheet.inner.SetEnabled(true);
  sheet.inner.SetVisible(false);
  EXPECT_EQ(sheet.box.UserEdit("0").refusal, "当前不可见");
  EXPECT_TRUE(sheet.box.On());
}

TEST(Control, GivesTheReasonWhyItCannotBeUsed) {
  Sheet sheet;
  EXPECT_EQ(sheet.box.WhyDisabled(), "");
  sheet.group.SetEnabled(false, "外面");
  EXPECT_EQ(sheet.box.WhyDisabled(), "外面");
  EXPECT_EQ(sheet.box.UserEdit("1").refusal, "当前不可用：外面");
  sheet.inner.SetEnabled(false, "里面");
  EXPECT_EQ(sheet.box.WhyDisabled(), "里面");
  sheet.box.SetEnabled(false);
  EXPECT_EQ(sheet.box.WhyDisabled(), "");
  sheet.box.SetEnabled(true, "不算");
  sheet.inner.SetEnabled(true);
  sheet.group.SetEnabled(true);
  EXPECT_EQ(sheet.box.WhyDisabled(), "");
}

TEST(Control, ANewReasonIsAChangeOfAppearance) {
  Sheet sheet;
  Probe probe(sheet);
  sheet.box.SetEnabled(false, "甲");
  sheet.box.SetEnabled(false, "甲");
  EXPECT_EQ(probe.Drain(), (Notes{"appearance ChBox"}));
  sheet.box.SetEnabled(false, "乙");
  EXPECT_EQ(probe.Drain(), (Notes{"appearance ChBox"}));
  EXPECT_EQ(sheet.box.WhyDisabled(), "乙");
}

TEST(UserEdit, RunsTheHandlerOnceAndOnlyWhenTheValueChanged) {
  Sheet sheet;
  Probe probe(sheet);
  probe.NoteHandlerOf(sheet.text);
  EXPECT_TRUE(sheet.text.UserEdit("6").Accepted());
  EXPECT_EQ(probe.Drain(), (Notes{"value TText", "handler TText"}));
  EXPECT_TRUE(sheet.text.UserEdit("6").Accepted());
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST(UserEdit, IsRefusedByWhatHoldsNoValue) {
  Sheet sheet;
  EXPECT_EQ(sheet.button.UserEdit("1").refusal, "不能填写");
  EXPECT_EQ(sheet.menu.UserEdit("1").refusal, "不能填写");
  EXPECT_EQ(sheet.group.UserEdit("1").refusal, "不能填写");
}

TEST(UserClick, PressesButtonsAndMenuEntries) {
  Sheet sheet;
  Probe probe(sheet);
  probe.NoteHandlerOf(sheet.button);
  probe.NoteHandlerOf(sheet.menu);
  EXPECT_TRUE(sheet.button.UserClick().Accepted());
  EXPECT_TRUE(sheet.menu.UserClick().Accepted());
  EXPECT_EQ(probe.Drain(), (Notes{"handler CmdGo", "handler MenuGo"}));
}

TEST(UserClick, OfAButtonWithoutHandlerDoesNothing) {
  Sheet sheet;
  EXPECT_TRUE(sheet.button.UserClick().Accepted());
}

TEST(UserClick, TicksAndClearsABox) {
  Sheet sheet;
  Probe probe(sheet);
  probe.NoteHandlerOf(sheet.box);
  EXPECT_TRUE(sheet.box.UserClick().Accepted());
  EXPECT_TRUE(sheet.box.On());
  EXPECT_TRUE(sheet.box.UserClick().Accepted());
  EXPECT_FALSE(sheet.box.On());
  EXPECT_EQ(probe.Drain(), (Notes{"value ChBox", "handler ChBox", "value ChBox", "handler ChBox"}));
}

TEST(UserClick, IsRefusedByEveryOtherKind) {
  Sheet sheet;
  Probe probe(sheet);
  for (Control* control : std::initializer_list<Control*>{&sheet.text, &sheet.list, &sheet.label, &sheet.group,
                                                          &sheet.colour, &sheet.grid}) {
    probe.NoteHandlerOf(*control);
    EXPECT_EQ(control->UserClick().refusal, "不能点击");
  }
  EXPECT_EQ(probe.Drain(), Notes());
}

TEST(UserClick, IsRefusedWhileDisabledOrHidden) {
  Sheet sheet;
  Probe probe(sheet);
  probe.NoteHandlerOf(sheet.button);
  sheet.button.SetEnabled(false);
  EXPECT_EQ(sheet.button.UserClick().refusal, "当前不可用");
  sheet.button.SetVisible(false);
  EXPECT_EQ(sheet.button.UserClick().refusal, "当前不可见");
  EXPECT_EQ(probe.Drain(), (Notes{"appearance CmdGo", "appearance CmdGo"}));
}

TEST(Handler, MayPutTheValueBack) {
  Sheet sheet;
  sheet.text.SetHandler([&] {
    if (sheet.text.Integer() > 90) sheet.text.SetText("5");
  });
  EXPECT_TRUE(sheet.text.UserEdit("91").Accepted());
  EXPECT_EQ(sheet.text.Value(), "5");
}

TEST(Control, StatesItsEffectApartFromItsUse) {
  Sheet sheet;
  int changes = 0;
  sheet.Observe([&](Control&, Aspect aspect) { changes += aspect == Aspect::Appearance; });
  EXPECT_EQ(sheet.text.GetEffect(), Effect::AsEnabled);
  sheet.text.SetEffect(Effect::None, "另一项决定");
  sheet.text.SetEffect(Effect::None, "另一项决定");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(sheet.text.WhyEffect(), "另一项决定");
  EXPECT_TRUE(sheet.text.UserEdit("6").Accepted());
  EXPECT_EQ(sheet.text.Value(), "6");
}

TEST(Control, HasANoteBesideItsValue) {
  Sheet sheet;
  int changes = 0;
  sheet.Observe([&](Control&, Aspect) { ++changes; });
  sheet.list.SetNote("（写入 300）");
  sheet.list.SetNote("（写入 300）");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(sheet.list.Note(), "（写入 300）");
  EXPECT_EQ(sheet.list.Text(), "a");
}

}  // namespace
}  // namespace quillon::controls
