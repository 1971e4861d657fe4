// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::controls {

class Window;

enum class Kind { CheckBox, Option, TextBox, ComboBox, Button, Menu, Label, Frame, ColourBox, Slider, Grid };

// What changed about a control: its value, its looks (caption, tooltip, enabled, visible, items, limits) or grid rows.
enum class Aspect { Value, Appearance };

// How a control starts. A control inside a disabled or hidden parent counts as disabled or hidden itself.
struct Appearance {
  std::string caption = {};
  std::string tooltip = {};
  bool enabled = true;
  bool visible = true;
  class Control* parent = nullptr;
};

// What became of a user's edit: accepted, or refused with a sentence.
struct EditResult {
  std::string refusal;

  bool Accepted() const { return refusal.empty(); }
  static EditResult Ok() { return {}; }
  static EditResult Refused(std::string why) { return {std::move(why)}; }
};

// One control of a window, as data. It belongs to its window and lists itself there when it is made.
//
// Values are changed in two ways. The program's own setters (of the derived classes) always act; the user's way,
// UserEdit and UserClick, is refused while the control is disabled or hidden. Either way the handler runs once when the
// value really changed, and observers of the window are told.
class Control {
 public:
  Control(Window& window, Kind kind, std::string name, Appearance appearance);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Kind GetKind() const { return kind_; }
  // The name with its index where the control is one of an array: "TCutValue(0)".
  const std::string& Name() const { return name_; }
  // With the window in front: "Form1.TCutValue(0)".
  std::string FullName() const;
  Window& GetWindow() const { return window_; }
  Control* Parent() const { return appearance_.parent; }

  const std::string& Caption() const { return appearance_.caption; }
  const std::string& Tooltip() const { return appearance_.tooltip; }
  // Enabled and visible for the user: together with all parents.
  bool Enabled() const;
  bool Visible() const;
  // Of the control alone, whatever its parents say.
  bool OwnEnabled() const { return appearance_.enabled; }
  bool OwnVisible() const { return appearance_.visible; }

  void SetCaption(std::string caption);
  void SetTooltip(std::string tooltip);
  // why tells the user what stands in the way, one sentence without its full stop; it only counts while disabled.
  void SetEnabled(bool enabled, std::string why = {});
  // Why the user cannot use the control, of itself or else of its nearest disabled parent; "" while it can be used and
  // where nobody told.
  std::string WhyDisabled() const;
  void SetVisible(bool visible);
  // Marker text of a control, "" at start; handlers use it to remember that a question was answered.
  const std::string& Tag() const { return tag_; }
  void SetTag(std::string tag) { tag_ = std::move(tag); }

  // The value for machines ("0"/"1", a list's index, a text as it is) and for people (a list's entry).
  virtual std::string Value() const { return {}; }
  virtual std::string Text() const { return Value(); }
  virtual std::vector<std::string> Items() const { return {}; }
  virtual std::string MinText() const { return {}; }
  virtual std::string MaxText() const { return {}; }

  EditResult UserEdit(std::string_view text);
  // Presses a button or a menu entry, ticks or clears a box; refused by every other kind.
  EditResult UserClick();

  // Runs after each change of the value, or at a click of a button or menu entry.
  void SetHandler(std::function<void()> handler) { handler_ = std::move(handler); }

 protected:
  // Puts a checked or unchecked text into the value; the derived class decides what it takes.
  virtual EditResult Apply(std::string_view text);
  // What a click does.
  virtual EditResult Press();
  void NotifyValueChanged();
  void NotifyAppearanceChanged();
  void RunHandler();

 private:
  EditResult RefusalForUser() const;

  Window& window_;
  Kind kind_;
  std::string name_;
  Appearance appearance_;
  std::string whyDisabled_;
  std::string tag_;
  std::function<void()> handler_;
};

}  // namespace quillon::controls
