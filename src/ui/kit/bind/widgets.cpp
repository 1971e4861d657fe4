// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "controls/values.h"
#include "ui/kit/bind/binding.h"
#include "ui/kit/bind/box_bindings.h"
#include "ui/kit/bind/elided_label.h"
#include "ui/kit/bind/fold_group.h"
#include "ui/kit/bind/menu_bindings.h"
#include "ui/kit/bind/slider_binding.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

// Check boxes, options and buttons: things with a caption that are pressed.
class PressBinding : public Binding {
 public:
  PressBinding(controls::Control& control, Binder& binder, QAbstractButton* button)
      : Binding(control, binder, button), button_(button) {
    connect(button, &QAbstractButton::clicked, this, [this](bool on) {
      if (button_->isCheckable()) {
        Edit(on ? "1" : "0");
      } else {
        Click();
      }
    });
  }

  void ShowValue() override {
    if (button_->isCheckable()) button_->setChecked(Control().Value() == "1");
  }

  void ShowLook() override {
    ShowCommon(Control(), *button_);
    button_->setText(Shown(Control().Caption()).replace(u'&', QStringLiteral("&&")));
    button_->setAccessibleName(Shown(Control().Caption()));
  }

 private:
  QAbstractButton* button_;
};

// A plain label, a frame or a grid: something that only follows.
class FollowBinding : public Binding {
 public:
  FollowBinding(controls::Control& control, Binder& binder, QWidget* widget)
      : Binding(control, binder, widget), widget_(*widget) {}

  void ShowLook() override {
    const QString caption = Shown(Control().Caption());
    if (auto* group = dynamic_cast<FoldGroup*>(&widget_)) {
      ShowVisible(Control(), *group);
      group->Body()->setEnabled(Control().Enabled());
      group->SetTitle(caption);
      return;
    }
    ShowCommon(Control(), widget_);
    if (auto* label = dynamic_cast<QLabel*>(&widget_)) label->setText(caption);
    if (!caption.isEmpty()) widget_.setAccessibleName(caption);
  }

 private:
  QWidget& widget_;
};

// The words beside a box.
class BuddyBinding : public Binding {
 public:
  BuddyBinding(controls::Control& control, Binder& binder, QLabel* label, QWidget* buddy, QString text)
      : Binding(control, binder, label), label_(label), buddy_(buddy), text_(std::move(text)) {}

  void ShowLook() override {
    const QString words = text_.isEmpty() ? Shown(Control().Caption()) : text_;
    label_->setText(words);
    label_->setEnabled(Control().Enabled());
    label_->setToolTip(TooltipOf(Control()));
    ShowVisible(Control(), *label_);
    if (buddy_) buddy_->setAccessibleName(words);
  }

 private:
  QLabel* label_;
  QPointer<QWidget> buddy_;
  QString text_;
};

template <typename ButtonType>
QWidget* MakePress(controls::Control& control, Binder& binder, bool checkable) {
  auto* button = new ButtonType;
  if constexpr (std::is_same_v<ButtonType, QRadioButton>) button->setAutoExclusive(false);
  button->setCheckable(checkable);
  binder.Attach(new PressBinding(control, binder, button));
  return button;
}

QWidget* MakeFor(controls::Control& control, Binder& binder) {
  switch (control.GetKind()) {
    case controls::Kind::CheckBox:
      return MakePress<QCheckBox>(control, binder, true);
    case controls::Kind::Option:
      return MakePress<QRadioButton>(control, binder, true);
    case controls::Kind::Button:
      return MakePress<QPushButton>(control, binder, false);
    case controls::Kind::TextBox:
      return MakeTextBox(static_cast<controls::TextBox&>(control), binder);
    case controls::Kind::ComboBox:
      return MakeComboBox(static_cast<controls::ComboBox&>(control), binder);
    case controls::Kind::ColourBox:
      return MakeColourBox(static_cast<controls::ColourBox&>(control), binder);
    case controls::Kind::Slider: {
      auto* slider = new QSlider(Qt::Horizontal);
      JoinSlider(static_cast<controls::Slider&>(control), binder, slider);
      return slider;
    }
    case controls::Kind::Label:
      if (auto& label = static_cast<controls::Label&>(control); label.IsEditable()) return MakePathBox(label, binder);
      break;
    default:
      break;
  }
  const bool frame = control.GetKind() == controls::Kind::Frame;
  QWidget* widget = frame ? static_cast<QWidget*>(new FoldGroup({})) : new ElidedLabel;
  binder.Attach(new FollowBinding(control, binder, widget));
  return widget;
}

}  // namespace

QWidget* Binder::Make(controls::Control& control) {
  QWidget* widget = MakeFor(control, *this);
  widget->setObjectName(Shown(control.Name()));
  return widget;
}

QLabel* Binder::MakeLabel(controls::Control& control, QWidget* buddy, const QString& text) {
  auto* label = new QLabel;
  label->setBuddy(buddy);
  Attach(new BuddyBinding(control, *this, label, buddy, text));
  return label;
}

void Binder::Join(controls::Control& control, QWidget* widget) {
  widget->setObjectName(Shown(control.Name()));
  Attach(new FollowBinding(control, *this, widget));
}

QAction* Binder::MakeAction(controls::Menu& menu, QObject* parent) { return MakeMenuAction(menu, *this, parent); }

QAction* Binder::MakeTwin(controls::Menu& menu, QObject* parent) { return MakeMenuTwin(menu, *this, parent); }

void Binder::Join(controls::Menu& menu, QMenu* target) { JoinMenu(menu, *this, target); }

}  // namespace quillon::ui
