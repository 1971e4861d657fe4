// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/control.h"

#include "controls/window.h"

namespace quillon::controls {

Control::Control(Window& window, Kind kind, std::string name, Look look)
    : window_(window), kind_(kind), name_(std::move(name)), look_(std::move(look)) {
  window_.Add(*this);
}

std::string Control::FullName() const { return window_.Name() + "." + name_; }

bool Control::Enabled() const { return look_.enabled && (!look_.parent || look_.parent->Enabled()); }

bool Control::Visible() const { return look_.visible && (!look_.parent || look_.parent->Visible()); }

void Control::SetCaption(std::string caption) {
  if (look_.caption == caption) return;
  look_.caption = std::move(caption);
  TellLookChanged();
}

void Control::SetTooltip(std::string tooltip) {
  if (look_.tooltip == tooltip) return;
  look_.tooltip = std::move(tooltip);
  TellLookChanged();
}

void Control::SetEnabled(bool enabled, std::string why) {
  if (enabled) why.clear();
  if (look_.enabled == enabled && whyDisabled_ == why) return;
  look_.enabled = enabled;
  whyDisabled_ = std::move(why);
  TellLookChanged();
}

std::string Control::WhyDisabled() const {
  if (!look_.enabled) return whyDisabled_;
  return look_.parent ? look_.parent->WhyDisabled() : std::string();
}

void Control::SetVisible(bool visible) {
  if (look_.visible == visible) return;
  look_.visible = visible;
  TellLookChanged();
}

EditResult Control::RefusalForUser() const {
  if (!Visible()) return EditResult::Refused(FullName() + " 当前不可见");
  if (Enabled()) return EditResult::Ok();
  const std::string why = WhyDisabled();
  return EditResult::Refused(FullName() + " 当前不可用" + (why.empty() ? why : "：" + why));
}

EditResult Control::UserEdit(std::string_view text) {
  EditResult result = RefusalForUser();
  return result.Accepted() ? Apply(text) : result;
}

EditResult Control::UserClick() {
  EditResult result = RefusalForUser();
  return result.Accepted() ? Press() : result;
}

EditResult Control::Apply(std::string_view) { return EditResult::Refused(FullName() + " 不能填写"); }

EditResult Control::Press() { return EditResult::Refused(FullName() + " 不能点击"); }

void Control::TellValueChanged() {
  window_.Tell(*this, Aspect::Value);
  RunHandler();
}

void Control::TellLookChanged() { window_.Tell(*this, Aspect::Look); }

void Control::RunHandler() {
  if (handler_) handler_();
}

}  // namespace quillon::controls
