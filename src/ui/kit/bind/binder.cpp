// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/binder.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include "controls/window.h"
#include "ui/kit/bind/binding.h"
#include "ui/kit/bind/field_note.h"
#include "ui/kit/text.h"
#include "ui/kit/theme/theme.h"

// Each widget has a Binding, a child object that translates between it and its control. The binder keeps the bindings
// of each control and forwards the changes of the record to them. A change of appearance also goes to the controls
// inside a frame, since they are disabled or hidden with it.
namespace quillon::ui {
namespace {

bool LiesIn(const controls::Control& control, const controls::Control& holder) {
  for (const controls::Control* parent = control.Parent(); parent; parent = parent->Parent()) {
    if (parent == &holder) return true;
  }
  return false;
}

// The ink of one widget, which is set again when the palette of the program changes. Owned by the widget.
class EffectInk : public QObject {
 public:
  explicit EffectInk(QWidget& widget) : QObject(&widget), widget_(widget) {
    setObjectName(kName);
    widget.installEventFilter(this);
  }

  static EffectInk* Of(const QWidget& widget) {
    return static_cast<EffectInk*>(widget.findChild<QObject*>(kName, Qt::FindDirectChildrenOnly));
  }

  void Show(controls::Effect effect) {
    if (effect == effect_) return;
    effect_ = effect;
    Apply();
  }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange && !applying_) Apply();
    return false;
  }

 private:
  void Apply() {
    const QPalette whole = QApplication::palette();
    QPalette own;
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
      if (effect_ == controls::Effect::None) {
        for (const auto group : {QPalette::Active, QPalette::Inactive}) own.setColor(group, role, FaintInk(whole));
      } else if (effect_ == controls::Effect::Counts) {
        own.setColor(QPalette::Disabled, role, whole.color(QPalette::Active, role));
      }
    }
    applying_ = true;
    widget_.setPalette(own);
    applying_ = false;
  }

  static constexpr QLatin1String kName{"effectInk"};

  QWidget& widget_;
  controls::Effect effect_ = controls::Effect::AsEnabled;
  bool applying_ = false;
};

// Returns the caption as people would say it, “左” for "左：", with nothing if the caption is no name.
QString NameOf(const controls::Control& control) {
  if (control.GetKind() == controls::Kind::Label) return {};
  QString name = Shown(control.Caption()).remove(QStringLiteral("...")).trimmed();
  if (name.endsWith(u'：')) name.chop(1);
  return name.isEmpty() ? QString() : QStringLiteral("“%1”").arg(name);
}

}  // namespace

Binder::Binder(controls::Window& window, Refusal onRefusal) : window_(window), onRefusal_(std::move(onRefusal)) {
  token_ = window_.Observe([this](controls::Control& control, controls::Aspect aspect) { OnChange(control, aspect); });
}

Binder::~Binder() {
  window_.Forget(token_);
  // While a window is destroyed, its widgets may outlive the binder and must not call it.
  for (auto& [control, list] : bindings_) {
    for (const QPointer<QObject>& binding : list) delete binding.data();
  }
}

void Binder::Attach(Binding* binding) {
  bindings_[&binding->Control()].emplace_back(binding);
  binding->ShowAppearance();
  binding->ShowValue();
}

void Binder::Refused(const controls::Control& control, const std::string& refusal) const {
  if (onRefusal_) onRefusal_(Bytes(NameOf(control)) + refusal);
}

void Binder::CommitTyped() {
  for (auto& [control, list] : bindings_) {
    for (const QPointer<QObject>& binding : list) {
      if (binding) static_cast<Binding*>(binding.data())->CommitTyped();
    }
  }
}

void Binder::OnChange(controls::Control& control, controls::Aspect aspect) {
  for (auto& [bound, list] : bindings_) {
    const bool itself = bound == &control;
    const bool inside = aspect == controls::Aspect::Appearance && !itself && LiesIn(*bound, control);
    if (!itself && !inside) continue;
    for (const QPointer<QObject>& pointer : list) {
      auto* binding = static_cast<Binding*>(pointer.data());
      if (!binding) continue;
      if (aspect == controls::Aspect::Appearance) binding->ShowAppearance();
      if (itself) binding->ShowValue();
    }
  }
}

QString TooltipOf(const controls::Control& control) {
  QStringList lines;
  // The reason why it is disabled says enough about a control that has no effect.
  const bool says = control.Enabled() || control.GetEffect() != controls::Effect::None;
  for (const std::string& line : {control.WhyDisabled(), says ? control.WhyEffect() : "", control.Tooltip()}) {
    if (!line.empty()) lines << Shown(line);
  }
  return lines.join(u'\n');
}

void ShowCommon(const controls::Control& control, QWidget& widget) {
  widget.setToolTip(TooltipOf(control));
  widget.setEnabled(control.Enabled());
  ShowEffect(control, widget);
  ShowVisible(control, widget);
}

void ShowEffect(const controls::Control& control, QWidget& widget) {
  // What is locked as a whole, as during a run, looks locked.
  const bool locked = control.Parent() && !control.Parent()->Enabled();
  const controls::Effect effect = locked ? controls::Effect::AsEnabled : control.GetEffect();
  EffectInk* ink = EffectInk::Of(widget);
  if (!ink && effect == controls::Effect::AsEnabled) return;
  if (!ink) ink = new EffectInk(widget);
  ink->Show(effect);
}

void ShowVisible(const controls::Control& control, QWidget& widget) {
  const bool fresh = !widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
  if (!control.Visible() || !fresh) widget.setVisible(control.Visible());
}

void Binding::Edit(const std::string& text) {
  // The edit may close the window, which deletes this binding.
  const QPointer<QObject> alive(this);
  const controls::EditResult result = control_.UserEdit(text);
  if (!alive) return;
  ShowValue();
  auto* field = qobject_cast<QWidget*>(parent());
  if (result.Accepted()) {
    if (field) FieldNote::Hide(*field);
    return;
  }
  if (field) FieldNote::Show(*field, Shown(result.refusal));
  binder_.Refused(control_, result.refusal);
}

void Binding::Click() {
  const QPointer<QObject> alive(this);
  binder_.CommitTyped();
  const controls::EditResult result = control_.UserClick();
  if (alive && !result.Accepted()) binder_.Refused(control_, result.refusal);
}

}  // namespace quillon::ui
