// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QAbstractSlider>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

#include "controls/values.h"
#include "ui/kit/bind/binding.h"
#include "ui/kit/bind/box_bindings.h"
#include "ui/kit/bind/elided_label.h"
#include "ui/kit/bind/fold_group.h"
#include "ui/kit/text.h"

// Bindings for the simple kinds of control, and the functions of Binder that make widgets. Those with an editable text
// are in box_bindings.cpp.
namespace quillon::ui {
namespace {

// Check boxes, options and buttons: controls with a caption that are clicked.
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

  void ShowAppearance() override {
    ShowCommon(Control(), *button_);
    // Captions of these controls have no mnemonics, so an ampersand is text.
    button_->setText(Shown(Control().Caption()).replace(u'&', QStringLiteral("&&")));
    button_->setAccessibleName(Shown(Control().Caption()));
  }

 private:
  QAbstractButton* button_;
};

// A slider or scroll bar. Signals are blocked while the record sets it, since it would come back as an edit.
class SliderBinding : public Binding {
 public:
  SliderBinding(controls::Slider& slider, Binder& binder, QAbstractSlider* widget)
      : Binding(slider, binder, widget), slider_(slider), widget_(widget) {
    connect(widget, &QAbstractSlider::valueChanged, this, [this](int value) { Edit(std::to_string(value)); });
  }

  void ShowValue() override {
    const QSignalBlocker quiet(widget_);
    widget_->setValue(slider_.Position());
  }

  void ShowAppearance() override {
    const QSignalBlocker quiet(widget_);
    ShowCommon(slider_, *widget_);
    widget_->setRange(slider_.Min(), slider_.Max());
    widget_->setAccessibleName(Shown(slider_.Caption()));
  }

 private:
  controls::Slider& slider_;
  QAbstractSlider* widget_;
};

// A menu entry. The action of a submenu is never triggered.
class ActionBinding : public Binding {
 public:
  ActionBinding(controls::Menu& menu, Binder& binder, QAction* action)
      : Binding(menu, binder, action), action_(action) {
    if (!action->menu()) connect(action, &QAction::triggered, this, [this] { Click(); });
  }

  void ShowAppearance() override {
    action_->setText(Shown(Control().Caption()));
    const QString tip = TooltipOf(Control());
    action_->setToolTip(tip);
    action_->setStatusTip(tip);
    action_->setEnabled(Control().Enabled());
    action_->setVisible(Control().Visible());
  }

 private:
  QAction* action_;
};

// A label, a frame or a grid, which only follow the record.
class FollowBinding : public Binding {
 public:
  FollowBinding(controls::Control& control, Binder& binder, QWidget* widget)
      : Binding(control, binder, widget), widget_(*widget) {}

  void ShowAppearance() override {
    const QString caption = Shown(Control().Caption());
    if (auto* group = dynamic_cast<FoldGroup*>(&widget_)) {
      ShowVisible(Control(), *group);
      // The header stays enabled: a group can be folded at any time.
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

// The label beside a field.
class BuddyBinding : public Binding {
 public:
  BuddyBinding(controls::Control& control, Binder& binder, QLabel* label, QWidget* buddy, QString text)
      : Binding(control, binder, label), label_(label), buddy_(buddy), text_(std::move(text)) {}

  void ShowAppearance() override {
    const QString words = text_.isEmpty() ? Shown(Control().Caption()) : text_;
    label_->setText(words);
    label_->setEnabled(Control().Enabled());
    label_->setToolTip(TooltipOf(Control()));
    ShowEffect(Control(), *label_);
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
  if constexpr (std::is_same_v<ButtonType, QRadioButton>)
    button->setAutoExclusive(false);  // the record decides which options exclude each other
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
      binder.Join(static_cast<controls::Slider&>(control), slider);
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

void Binder::Join(controls::Slider& slider, QAbstractSlider* widget) {
  widget->setObjectName(Shown(slider.Name()));
  Attach(new SliderBinding(slider, *this, widget));
}

QAction* Binder::MakeAction(controls::Menu& menu, QObject* parent) {
  auto* action = new QAction(parent);
  action->setObjectName(Shown(menu.Name()));
  action->setShortcut(QKeySequence(Shown(menu.Shortcut())));
  Attach(new ActionBinding(menu, *this, action));
  return action;
}

QAction* Binder::MakeButtonAction(controls::Menu& menu, QObject* parent) {
  auto* action = new QAction(parent);
  Attach(new ActionBinding(menu, *this, action));
  return action;
}

void Binder::Join(controls::Menu& menu, QMenu* target) {
  target->menuAction()->setObjectName(Shown(menu.Name()));
  Attach(new ActionBinding(menu, *this, target->menuAction()));
}

}  // namespace quillon::ui
