// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QTableView>

#include "ui/kit/bind/binding.h"
#include "ui/kit/bind/fold_group.h"
#include "ui/user_hand.h"

namespace quillon::ui {
namespace {

using controls::Control;
using controls::Kind;

// --- Every control of every window has a widget that follows the record

class EveryControl : public ::testing::Test {
 protected:
  std::vector<Control*> Controls() {
    std::vector<Control*> all;
    for (controls::Window* window : ui_.program.windows.All()) {
      all.insert(all.end(), window->Controls().begin(), window->Controls().end());
    }
    return all;
  }

  UiWorld ui_;
};

TEST_F(EveryControl, IsFoundByItsName) {
  std::size_t menus = 0;
  std::size_t widgets = 0;
  for (Control* control : Controls()) {
    if (control->GetKind() == Kind::Menu) {
      EXPECT_NE(ui_.Find<QAction>(*control), nullptr) << control->FullName();
      ++menus;
    } else {
      EXPECT_NE(ui_.Find<QWidget>(*control), nullptr) << control->FullName();
      ++widgets;
    }
  }
  EXPECT_GE(menus, 30u);
  EXPECT_GE(widgets, 60u);
}

TEST_F(EveryControl, BearsItsNameOnce) {
  for (Control* control : Controls()) {
    const QString name = Shown(control->Name());
    QWidget& holder = ui_.Holder(*control);
    int count = static_cast<int>(holder.findChildren<QAction*>(name).size());
    for (const QWidget* widget : holder.findChildren<QWidget*>(name)) count += widget->window() == holder.window();
    EXPECT_EQ(count, 1) << control->FullName();
  }
}

TEST_F(EveryControl, StartsAsTheRecordSays) {
  for (Control* control : Controls()) {
    if (auto* action = ui_.Find<QAction>(*control)) {
      EXPECT_EQ(action->text(), Shown(control->Caption())) << control->FullName();
      EXPECT_EQ(action->isEnabled(), control->Enabled()) << control->FullName();
      EXPECT_EQ(action->isVisible(), control->Visible()) << control->FullName();
      continue;
    }
    auto* widget = ui_.Find<QWidget>(*control);
    ASSERT_NE(widget, nullptr) << control->FullName();
    EXPECT_EQ(!widget->isHidden(), control->Visible()) << control->FullName();
    if (control->GetKind() == Kind::Frame || control->GetKind() == Kind::Grid) continue;
    if (control->GetKind() == Kind::Button) {
      EXPECT_EQ(ui_.Find<QAbstractButton>(*control)->text(), Shown(control->Caption())) << control->FullName();
      continue;
    }
    EXPECT_EQ(widget->isEnabled(), control->Enabled()) << control->FullName();
    const bool edited = control->GetKind() == Kind::ComboBox && static_cast<controls::ComboBox*>(control)->IsEditable();
    EXPECT_EQ(ShownValue(ui_, *control), edited ? control->Text() : control->Value()) << control->FullName();
  }
}

TEST_F(EveryControl, FollowsEnabledAndVisible) {
  for (Control* control : Controls()) {
    for (const bool on : {false, true}) {
      control->SetEnabled(on);
      control->SetVisible(on);
      if (auto* action = ui_.Find<QAction>(*control)) {
        EXPECT_EQ(action->isEnabled(), control->Enabled()) << control->FullName();
        EXPECT_EQ(action->isVisible(), control->Visible()) << control->FullName();
      } else {
        auto* widget = ui_.Find<QWidget>(*control);
        auto* group = dynamic_cast<FoldGroup*>(widget);
        EXPECT_EQ(group ? group->Body()->isEnabled() : widget->isEnabled(), control->Enabled()) << control->FullName();
        EXPECT_EQ(!widget->isHidden(), control->Visible()) << control->FullName();
      }
    }
  }
}

TEST_F(EveryControl, ShowsWhyItCannotBeUsedAboveItsTooltip) {
  Control& quality = ui_.program.form1.TQuality;
  auto* widget = ui_.Find<QWidget>(quality);
  EXPECT_EQ(widget->toolTip(),
            QStringLiteral("请先启用“压缩”\n没有启用“压缩”，也按这个品质写入\n") + Shown(quality.Tooltip()));
  ui_.program.form1.ChJpgComp.Set(true);
  EXPECT_EQ(widget->toolTip(), Shown(quality.Tooltip()));
  EXPECT_EQ(ui_.Find<QAction>(ui_.program.form1.MenuGifCut)->toolTip(),
            QStringLiteral("请先把裁剪模式选为“1-动态Gif裁剪”"));
  ui_.program.form1.BeginRun();
  EXPECT_EQ(ui_.Find<QWidget>(ui_.program.form1.ChOver)->toolTip(), QStringLiteral("正在处理，请等待处理完毕或先终止"));
  ui_.program.form1.EndRun();
  EXPECT_EQ(ui_.Find<QWidget>(ui_.program.form1.ChOver)->toolTip(), QString());
}

TEST_F(EveryControl, FollowsCaptionAndTooltip) {
  for (Control* control : Controls()) {
    control->SetTooltip("提示 " + control->Name());
    auto* action = ui_.Find<QAction>(*control);
    auto* widget = ui_.Find<QWidget>(*control);
    const bool path = control->GetKind() == Kind::Label && static_cast<controls::Label*>(control)->IsEditable();
    if (action) {
      EXPECT_EQ(action->toolTip(), TooltipOf(*control));
    } else if (!dynamic_cast<FoldGroup*>(widget) && !path) {
      EXPECT_EQ(widget->toolTip(), TooltipOf(*control)) << control->FullName();
    }
    if (control->GetKind() == Kind::CheckBox) {
      control->SetCaption("新标题 & 更多");
      EXPECT_EQ(ui_.Find<QAbstractButton>(*control)->text(), QStringLiteral("新标题 && 更多"));
      EXPECT_EQ(widget->accessibleName(), QStringLiteral("新标题 & 更多"));
    }
    if (action) {
      control->SetCaption("新菜单");
      EXPECT_EQ(action->text(), QStringLiteral("新菜单")) << control->FullName();
    }
  }
}

TEST_F(EveryControl, OfAFrameGreysWithIt) {
  ui_.program.form1.Frame1.SetEnabled(false);
  for (Control* control : ui_.program.form1.Controls()) {
    if (!control->Parent() || control->GetKind() == Kind::Menu || control->GetKind() == Kind::Frame) continue;
    EXPECT_FALSE(ui_.Find<QWidget>(*control)->isEnabled()) << control->FullName();
  }
  ui_.program.form1.Frame1.SetEnabled(true);
  EXPECT_TRUE(ui_.Find<QWidget>(ui_.program.form1.ChSubFold)->isEnabled());
}

TEST_F(EveryControl, HasAnAccessibleName) {
  for (Control* control : Controls()) {
    if (control->GetKind() == Kind::Menu || control->GetKind() == Kind::Label) continue;
    EXPECT_FALSE(ui_.Find<QWidget>(*control)->accessibleName().isEmpty() &&
                 !dynamic_cast<FoldGroup*>(ui_.Find<QWidget>(*control)))
        << control->FullName();
  }
}

TEST_F(EveryControl, OfABoxHasALabelBesideIt) {
  for (Control* control : Controls()) {
    if (!IsBox(*control)) continue;
    auto* widget = ui_.Find<QWidget>(*control);
    const auto labels = ui_.Holder(*control).findChildren<QLabel*>();
    const auto found =
        std::find_if(labels.begin(), labels.end(), [widget](const QLabel* label) { return label->buddy() == widget; });
    ASSERT_NE(found, labels.end()) << control->FullName();
    EXPECT_FALSE((*found)->text().isEmpty()) << control->FullName();
    for (Control* holder = control->Parent(); holder; holder = holder->Parent()) holder->SetVisible(true);
    control->SetVisible(false);
    EXPECT_TRUE((*found)->isHidden()) << control->FullName();
    control->SetVisible(true);
    EXPECT_FALSE((*found)->isHidden()) << control->FullName();
  }
}

TEST_F(EveryControl, IsReachedByTheTabKey) {
  for (Control* control : Controls()) {
    if (!IsBox(*control) && control->GetKind() != Kind::CheckBox) continue;
    EXPECT_TRUE(ui_.Find<QWidget>(*control)->focusPolicy() & Qt::TabFocus) << control->FullName();
  }
}

// The Tab key visits the panel from top to bottom and each row from left to right.
TEST_F(EveryControl, ComesInTheOrderOfTheScreen) {
  auto* panel = ui_.Find<QWidget>(ui_.program.form1.Frame1);
  QPoint last(-1, -1);
  QWidget* first = ui_.Find<QWidget>(ui_.program.form1.LInDir);
  QWidget* widget = first;
  int steps = 0;
  do {
    if (panel->isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() &&
        widget->isVisible() && !widget->focusProxy() && !dynamic_cast<QLineEdit*>(widget->parentWidget())) {
      const QPoint at = widget->mapTo(panel, QPoint(0, widget->height() / 2));
      const bool below = at.y() > last.y() + 8;
      const bool besides = std::abs(at.y() - last.y()) <= 8 && at.x() > last.x();
      EXPECT_TRUE(below || besides) << widget->objectName().toStdString() << " at " << at.x() << "," << at.y();
      last = at;
      ++steps;
    }
    widget = widget->nextInFocusChain();
  } while (widget != first && widget->objectName() != Shown(ui_.program.form1.MSF.Name()));
  EXPECT_GE(steps, 25);
}

}  // namespace
}  // namespace quillon::ui
