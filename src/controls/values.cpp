// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/values.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "base/number_text.h"
#include "base/rounding.h"

namespace quillon::controls {
namespace {

std::string LimitText(const std::optional<double>& limit) { return limit ? base::NumberText(*limit) : std::string(); }

// "#RRGGBB" has red first, but the value holds red in its lowest byte: red and blue are swapped.
std::optional<std::int32_t> ParseColour(std::string_view text) {
  const bool hex = text.size() == 7 && text[0] == '#';
  std::int32_t value = 0;
  const std::string_view digits = hex ? text.substr(1) : text;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size() || value < 0 || value > 0xFFFFFF) {
    return std::nullopt;
  }
  return hex ? ((value & 0xFF) << 16) | (value & 0xFF00) | (value >> 16) : value;
}

}  // namespace

void CheckBox::Set(bool on) {
  if (on_ == on) return;
  on_ = on;
  NotifyValueChanged();
}

EditResult CheckBox::Apply(std::string_view text) {
  if (text != "0" && text != "1") return EditResult::Refused("只接受 0 或 1");
  Set(text == "1");
  return EditResult::Ok();
}

EditResult CheckBox::Press() {
  Set(!on_);
  return EditResult::Ok();
}

void TextBox::SetText(std::string text) {
  if (text_ == text) return;
  text_ = std::move(text);
  NotifyValueChanged();
}

void TextBox::SetNumber(double value) { SetText(base::NumberText(value)); }

void TextBox::SetLimits(Limits limits) {
  if (limits_ == limits) return;
  limits_ = limits;
  NotifyAppearanceChanged();
}

double TextBox::Number() const { return base::LeadingNumber(text_); }

int TextBox::Integer() const { return base::R(Number()); }

std::string TextBox::MinText() const { return LimitText(limits_.min); }

std::string TextBox::MaxText() const { return LimitText(limits_.max); }

EditResult TextBox::Apply(std::string_view text) {
  if (content_ == Content::Any) {
    SetText(std::string(text));
    return EditResult::Ok();
  }
  return ApplyNumber(text);
}

EditResult TextBox::ApplyNumber(std::string_view text) {
  const auto measure = base::ParseMeasure(text);
  const bool plain = measure && measure->unit == base::Unit::None;
  const bool fits = measure && (plain ? content_ == Content::Number || base::ParseInteger(text) : HasUnits());
  if (!fits) return EditResult::Refused(AcceptedForms());
  double value = measure->value;
  if (!plain) {
    const Converted converted = convert_(*measure);
    if (!converted.refusal.empty()) return EditResult::Refused(converted.refusal);
    value = content_ == Content::Integer ? base::R(converted.value) : converted.value;
  }
  const bool beyond = (limits_.min && value < *limits_.min) || (limits_.max && value > *limits_.max);
  if (beyond && limits_.beyond == Beyond::Refused) return EditResult::Refused(AcceptedForms());
  SetNumber(value);
  return EditResult::Ok();
}

std::string TextBox::AcceptedForms() const {
  const bool bounded = limits_.beyond == Beyond::Refused && limits_.min && limits_.max;
  std::string forms = "只接受" + (bounded ? " " + MinText() + " 到 " + MaxText() + " 的" : std::string());
  forms += content_ == Content::Number ? "数字，例如 12.5" : "整数，例如 300";
  return HasUnits() ? forms + "；也可以带单位，例如 35mm、3.5cm、2in" : forms;
}

std::string TextBox::Text() const {
  const auto number = content_ == Content::Number ? base::ParseNumber(text_) : std::nullopt;
  return number ? base::ShortNumberText(*number) : text_;
}

ComboBox::ComboBox(Window& window, std::string name, Appearance appearance, std::vector<std::string> items, int index,
                   Editable editable)
    : Control(window, Kind::ComboBox, std::move(name), std::move(appearance)),
      items_(std::move(items)),
      index_(ValidIndex(index)),
      editable_(editable),
      text_(TextAt(index_)) {}

int ComboBox::ValidIndex(int index) const { return index >= 0 && index < static_cast<int>(items_.size()) ? index : -1; }

std::string ComboBox::TextAt(int index) const {
  return index < 0 ? std::string() : items_[static_cast<std::size_t>(index)];
}

void ComboBox::Select(int index) {
  index = ValidIndex(index);
  Assign(index, TextAt(index));
}

void ComboBox::Assign(int index, std::string text) {
  if (index_ == index && text_ == text) return;
  index_ = index;
  text_ = std::move(text);
  NotifyValueChanged();
}

void ComboBox::SetText(std::string text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  if (found != items_.end()) {
    Select(static_cast<int>(found - items_.begin()));
  } else if (editable_ == Editable::Yes) {
    Assign(-1, std::move(text));
  }
}

void ComboBox::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  // The index and the text may stay the same although the entries differ. The handler must not run then.
  const int before = std::exchange(index_, ValidIndex(0));
  const std::string textBefore = std::exchange(text_, TextAt(index_));
  NotifyAppearanceChanged();
  if (before != index_ || textBefore != text_) NotifyValueChanged();
}

EditResult ComboBox::Apply(std::string_view text) {
  const auto found = std::find(items_.begin(), items_.end(), text);
  if (found != items_.end()) {
    Select(static_cast<int>(found - items_.begin()));
    return EditResult::Ok();
  }
  if (editable_ == Editable::Yes) {
    SetText(std::string(text));
    return EditResult::Ok();
  }
  const auto index = base::ParseInteger(text);
  if (!index || *index < 0 || *index >= static_cast<int>(items_.size())) {
    return EditResult::Refused("没有这一项：" + std::string(text));
  }
  Select(*index);
  return EditResult::Ok();
}

EditResult Button::Press() {
  RunHandler();
  return EditResult::Ok();
}

EditResult Menu::Press() {
  RunHandler();
  return EditResult::Ok();
}

void Label::SetText(std::string text) {
  if (Caption() == text) return;
  SetCaption(std::move(text));
  NotifyValueChanged();
}

EditResult Label::Apply(std::string_view text) {
  if (editable_ == Editable::No) return Control::Apply(text);
  SetText(std::string(text));
  return EditResult::Ok();
}

void ColourBox::Set(base::Colour colour) {
  if (colour_ == colour) return;
  colour_ = colour;
  NotifyValueChanged();
}

EditResult ColourBox::Apply(std::string_view text) {
  const auto value = ParseColour(text);
  if (!value) return EditResult::Refused("只接受颜色值，例如 #FFFFFF");
  Set({*value});
  return EditResult::Ok();
}

void Slider::Set(int value) {
  value = std::clamp(value, min_, max_);
  if (value_ == value) return;
  value_ = value;
  NotifyValueChanged();
}

void Slider::SetRange(int min, int max) {
  if (min_ == min && max_ == max) return;
  min_ = min;
  max_ = max;
  NotifyAppearanceChanged();
  // Clamps the value to the new range.
  Set(value_);
}

EditResult Slider::Apply(std::string_view text) {
  const auto value = base::ParseInteger(text);
  if (!value || *value < min_ || *value > max_) {
    return EditResult::Refused("只接受 " + MinText() + " 到 " + MaxText() + " 的整数");
  }
  Set(*value);
  return EditResult::Ok();
}

}  // namespace quillon::controls
