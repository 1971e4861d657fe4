// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon::controls {

class Control;
class Window;

// The kind of a control, which decides how a window shows it.
enum class Kind { CheckBox, Option, TextBox, ComboBox, Button, Menu, Label, Frame, ColourBox, Slider, Grid };

// What changed about a control: its value, or its appearance (caption, tooltip, enabled, visible, effect, note, items,
// limits).
enum class Aspect { Value, Appearance };

// Whether the value of a control has an effect now. That is not the same as whether it can be edited: a field may be
// disabled because a preset sets it, and another setting may override a field that can be edited.
enum class Effect {
  AsEnabled,  // it has one while it is enabled
  Counts,     // it has one, also while it is disabled
  None
};

// The initial appearance of a control. A control inside a disabled or hidden parent counts as disabled or hidden
// itself.
struct Appearance {
  std::string caption = {};
  std::string tooltip = {};
  bool enabled = true;
  bool visible = true;
  Control* parent = nullptr;
};

// Return the appearance of a control inside a frame or menu: enabled from the start, or disabled until something
// enables it.
inline Appearance Inside(Control& parent, std::string caption, std::string tooltip = {}) {
  return {.caption = std::move(caption), .tooltip = std::move(tooltip), .parent = &parent};
}

inline Appearance DisabledInside(Control& parent, std::string caption, std::string tooltip = {}) {
  return {.caption = std::move(caption), .tooltip = std::move(tooltip), .enabled = false, .parent = &parent};
}

// The result of a user's edit: accepted, or refused with one Chinese sentence that says why. The sentence has no
// subject, so that whoever shows it can name the control as its readers know it.
struct EditResult {
  std::string refusal;

  bool Accepted() const { return refusal.empty(); }
  static EditResult Ok() { return {}; }
  static EditResult Refused(std::string why) { return {std::move(why)}; }
};

// One control of a window, as data. It belongs to its window and registers itself there when it is constructed.
//
// A value can change in two ways. The program's own setters (of the derived classes) always act. The user's way,
// UserEdit and UserClick, is refused while the control is disabled or hidden. Either way the handler runs once if the
// value really changed, and the observers of the window are notified before it.
class Control {
 public:
  Control(Window& window, Kind kind, std::string name, Appearance appearance);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Kind GetKind() const { return kind_; }
  // The name, followed by the index if the control is an element of an array: "TCutValue(0)".
  const std::string& Name() const { return name_; }
  // The name after that of the window: "Form1.TCutValue(0)".
  std::string FullName() const;
  Window& GetWindow() const { return window_; }
  Control* Parent() const { return appearance_.parent; }

  const std::string& Caption() const { return appearance_.caption; }
  const std::string& Tooltip() const { return appearance_.tooltip; }
  // As the user sees it: false if the control or any of its parents is disabled or hidden.
  bool Enabled() const;
  bool Visible() const;
  // The state of the control alone, regardless of its parents.
  bool OwnEnabled() const { return appearance_.enabled; }

  // SetCaption, SetTooltip, SetEnabled and SetVisible notify the observers with Aspect::Appearance, unless nothing
  // changes. They run no handler.
  void SetCaption(std::string caption);
  void SetTooltip(std::string tooltip);
  // why explains to the user what prevents the use, in one sentence without a full stop. It is kept only while the
  // control is disabled.
  void SetEnabled(bool enabled, std::string why = {});
  // Returns why the user cannot use the control: its own reason, or that of the nearest disabled parent.
  // Returns "" if the control is enabled or no reason was given.
  std::string WhyDisabled() const;
  void SetVisible(bool visible);

  // why explains to the user what takes part or what prevents it, in one sentence without a full stop.
  void SetEffect(Effect effect, std::string why = {});
  Effect GetEffect() const { return effect_; }
  const std::string& WhyEffect() const { return whyEffect_; }
  // A few words that windows show after the value: what is written in its place. "" if the value says it.
  void SetNote(std::string note);
  const std::string& Note() const { return note_; }
  // A free text, "" at first. Handlers use it to remember that a question has been answered.
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string tag) { tag_ = std::move(tag); }

  // Value() is meant for scripts ("0" or "1", the index of a list entry, a text as it is), Text() for people (the text
  // of the list entry). The limits are "" if the control has none.
  virtual std::string Value() const { return {}; }
  virtual std::string Text() const { return Value(); }
  // The entries of a list, in order.
  virtual std::vector<std::string> Items() const { return {}; }
  virtual std::string MinText() const { return {}; }
  virtual std::string MaxText() const { return {}; }

  // Sets the value as a user would, by typing or choosing. Refused if the control is not usable or the text is invalid.
  EditResult UserEdit(std::string_view text);
  // Presses a button or menu entry, or toggles a check box. Refused by controls of every other kind.
  EditResult UserClick();

  // Called after each change of the value, or on a click on a button or menu entry. There is one handler.
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }

 protected:
  // Sets the value from a user's text; the derived class decides which texts are valid. The default refuses.
  virtual EditResult Apply(std::string_view text);
  // Called on a user's click. The default refuses.
  virtual EditResult Press();
  // Notifies the observers of a changed value and then runs the handler.
  void NotifyValueChanged();
  void NotifyAppearanceChanged();
  void RunHandler();

 private:
  // Returns why a user may not change the control now, or Ok().
  EditResult RefusalForUser() const;

  Window& window_;
  Kind kind_;
  std::string name_;
  Appearance appearance_;
  std::string whyDisabled_;
  Effect effect_ = Effect::AsEnabled;
  std::string whyEffect_;
  std::string note_;
  std::string tag_;
  std::function<void()> handler_;
};

}  // namespace quillon::controls
