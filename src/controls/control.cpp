// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/control.h"

#include "controls/window.h"

namespace quillon::controls {

Control::Control(Window& window, Kind kind, std::string name, Appearance appearance)
    : window_(window), kind_(kind), name_(std::move(name)), appearance_(std::move(appearance)) {
  window_.Add(*this);
}

std::string Control::FullName() const { return window_.Name() + "." + name_; }

bool Control::Enabled() const { return appearance_.enabled && (!appearance_.parent || appearance_.parent->Enabled()); }

bool Control::Visible() const { return appearance_.visible && (!appearance_.parent || appearance_.parent->Visible()); }

void Control::SetCaption(std::string caption) {
  if (appearance_.caption == caption) return;
  appearance_.caption = std::move(caption);
  NotifyAppearanceChanged();
}

void Control::SetTooltip(std::string tooltip) {
  if (appearance_.tooltip == tooltip) return;
  appearance_.tooltip = std::move(tooltip);
  NotifyAppearanceChanged();
}

void Control::SetEnabled(bool enabled, std::string why) {
  // Callers may pass a reason in any case; it counts only while the control is disabled.
  if (enabled) why.clear();
  if (appearance_.enabled == enabled && whyDisabled_ == why) return;
  appearance_.enabled = enabled;
  whyDisabled_ = std::move(why);
  NotifyAppearanceChanged();
}

std::string Control::WhyDisabled() const {
  if (!appearance_.enabled) return whyDisabled_;
  return appearance_.parent ? appearance_.parent->WhyDisabled() : std::string();
}

void Control::SetVisible(bool visible) {
  if (appearance_.visible == visible) return;
  appearance_.visible = visible;
  NotifyAppearanceChanged();
}

void Control::SetEffect(Effect effect, std::string why) {
  if (effect_ == effect && whyEffect_ == why) return;
  effect_ = effect;
  whyEffect_ = std::move(why);
  NotifyAppearanceChanged();
}

void Control::SetNote(std::string note) {
  if (note_ == note) return;
  note_ = std::move(note);
  NotifyAppearanceChanged();
}

// Hidden is reported first: a control that the user cannot see needs no reason why it is disabled.
EditResult Control::RefusalForUser() const {
  if (!Visible()) return EditResult::Refused("当前不可见");
  if (Enabled()) return EditResult::Ok();
  const std::string why = WhyDisabled();
  return EditResult::Refused("当前不可用" + (why.empty() ? why : "：" + why));
}

EditResult Control::UserEdit(std::string_view text) {
  EditResult result = RefusalForUser();
  return result.Accepted() ? Apply(text) : result;
}

EditResult Control::UserClick() {
  EditResult result = RefusalForUser();
  return result.Accepted() ? Press() : result;
}

// Kinds that the user can neither fill in nor click inherit these refusals.
EditResult Control::Apply(std::string_view) { return EditResult::Refused("不能填写"); }

EditResult Control::Press() { return EditResult::Refused("不能点击"); }

void Control::NotifyValueChanged() {
  window_.Notify(*this, Aspect::Value);
  RunHandler();
}

void Control::NotifyAppearanceChanged() { window_.Notify(*this, Aspect::Appearance); }

void Control::RunHandler() {
  if (handler_) handler_();
}

}  // namespace quillon::controls
