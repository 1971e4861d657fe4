// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/colour.h"
#include "base/number_text.h"
#include "controls/control.h"

namespace quillon::controls {

// A check box. A user's edit accepts "0" and "1".
class CheckBox : public Control {
 public:
  CheckBox(Window& window, std::string name, Appearance appearance, bool on = false)
      : Control(window, Kind::CheckBox, std::move(name), std::move(appearance)), on_(on) {}

  bool On() const { return on_; }
  // Like all setters of values below: runs the handler if the value really changes.
  void Set(bool on);
  std::string Value() const override { return on_ ? "1" : "0"; }

 protected:
  EditResult Apply(std::string_view text) override;
  EditResult Press() override;

 private:
  bool on_;
};

// What a text box accepts from a user. A number box refuses any text that is not a number and keeps its value; it shows
// an accepted number in its shortest form.
enum class Content { Any, Integer, Number };

// What happens if a user enters a number outside of the limits: the handler of the box decides, or it is refused.
enum class Beyond { LeftToHandler, Refused };

// The range that is shown to the user.
struct Limits {
  std::optional<double> min;
  std::optional<double> max;
  Beyond beyond = Beyond::LeftToHandler;
  bool operator==(const Limits&) const = default;
};

// A typed length in the unit of its box, or why it cannot be converted.
struct Converted {
  double value = 0;
  std::string refusal = {};
};

// A line of text, or a number as text. The program's own setters accept any text.
class TextBox : public Control {
 public:
  TextBox(Window& window, std::string name, Appearance appearance, std::string text, Content content = Content::Any,
          Limits limits = {})
      : Control(window, Kind::TextBox, std::move(name), std::move(appearance)),
        text_(std::move(text)),
        content_(content),
        limits_(limits) {}

  void SetText(std::string text);
  // Sets the shortest text of the number (see base::NumberText).
  void SetNumber(double value);
  // Changes the displayed range only; the text stays as it is.
  void SetLimits(Limits limits);
  Content GetContent() const { return content_; }
  const Limits& GetLimits() const { return limits_; }
  // Lets a user type a unit after the number. convert is called with every measure that has one; the result is rounded
  // if the box holds an integer.
  void SetUnits(std::function<Converted(const base::Measure&)> convert) { convert_ = std::move(convert); }
  bool HasUnits() const { return convert_ != nullptr; }
  // The number at the start of the text, 0 if there is none.
  double Number() const;
  // That number rounded; ties go to the even neighbour.
  int Integer() const;

  std::string Value() const override { return text_; }
  // Returns a number with at most six significant digits; arithmetic uses all of them.
  std::string Text() const override;
  std::string MinText() const override;
  std::string MaxText() const override;

 protected:
  EditResult Apply(std::string_view text) override;

 private:
  EditResult ApplyNumber(std::string_view text);
  // Returns which texts the box accepts, as the sentence of a refusal.
  std::string AcceptedForms() const;

  std::string text_;
  Content content_;
  Limits limits_;
  std::function<Converted(const base::Measure&)> convert_;
};

// Whether a user may enter a text of their own.
enum class Editable { No, Yes };

// A drop-down list with at most one selected entry. An editable list also accepts a text that is not in the list; its
// index is then -1.
// A user's edit accepts the text of an entry, or an index if the list is not editable.
class ComboBox : public Control {
 public:
  ComboBox(Window& window, std::string name, Appearance appearance, std::vector<std::string> items, int index = -1,
           Editable editable = Editable::No);

  int Index() const { return index_; }
  // Selects nothing (-1) if the index is out of range, and clears a text that is not in the list.
  void Select(int index);
  // Selects the first entry with this text. If there is none, an editable list keeps the text as its own and any other
  // list stays unchanged.
  void SetText(std::string text);
  // Replaces the entries and selects the first of them, or nothing if there are none.
  void SetItems(std::vector<std::string> items);
  bool IsEditable() const { return editable_ == Editable::Yes; }

  std::string Value() const override { return std::to_string(index_); }
  std::string Text() const override { return text_; }
  std::vector<std::string> Items() const override { return items_; }

 protected:
  EditResult Apply(std::string_view text) override;

 private:
  int ValidIndex(int index) const;
  std::string TextAt(int index) const;
  void Assign(int index, std::string text);

  std::vector<std::string> items_;
  int index_;
  Editable editable_;
  std::string text_;
};

// A label whose caption is its value (LInDir, LOutDir, status texts). A user's edit is accepted only by editable
// labels, such as the folder labels: choosing a folder stores its path there.
class Label : public Control {
 public:
  Label(Window& window, std::string name, Appearance appearance, Editable editable = Editable::No)
      : Control(window, Kind::Label, std::move(name), std::move(appearance)), editable_(editable) {}

  // Changes the caption. If it differs, the handler runs.
  void SetText(std::string text);
  bool IsEditable() const { return editable_ == Editable::Yes; }
  std::string Value() const override { return Caption(); }

 protected:
  EditResult Apply(std::string_view text) override;

 private:
  Editable editable_;
};

// A push button. A click runs its handler.
class Button : public Control {
 public:
  Button(Window& window, std::string name, Appearance appearance)
      : Control(window, Kind::Button, std::move(name), std::move(appearance)) {}

 protected:
  EditResult Press() override;
};

// An entry of the menu bar. A menu without a parent is a top-level entry; a parent contains sub-entries.
class Menu : public Control {
 public:
  Menu(Window& window, std::string name, Appearance appearance, std::string shortcut = {})
      : Control(window, Kind::Menu, std::move(name), std::move(appearance)), shortcut_(std::move(shortcut)) {}

  // The key sequence, such as "Ctrl+O"; "" if there is none.
  const std::string& Shortcut() const { return shortcut_; }

 protected:
  EditResult Press() override;

 private:
  std::string shortcut_;
};

// A group with a title, which is its value. Disabling it disables all controls inside.
class Frame : public Control {
 public:
  Frame(Window& window, std::string name, Appearance appearance)
      : Control(window, Kind::Frame, std::move(name), std::move(appearance)) {}

  std::string Value() const override { return Caption(); }
};

// A colour that the user picks. A user's edit accepts the value 0x00BBGGRR as a decimal number, or "#RRGGBB".
class ColourBox : public Control {
 public:
  ColourBox(Window& window, std::string name, Appearance appearance, base::Colour colour)
      : Control(window, Kind::ColourBox, std::move(name), std::move(appearance)), colour_(colour) {}

  base::Colour Colour() const { return colour_; }
  void Set(base::Colour colour);
  std::string Value() const override { return std::to_string(colour_.value); }

 protected:
  EditResult Apply(std::string_view text) override;

 private:
  base::Colour colour_;
};

// A slider over integers, both ends included. A user's edit outside of the range is refused.
class Slider : public Control {
 public:
  Slider(Window& window, std::string name, Appearance appearance, int value, int min, int max)
      : Control(window, Kind::Slider, std::move(name), std::move(appearance)), value_(value), min_(min), max_(max) {}

  int Position() const { return value_; }
  int Min() const { return min_; }
  int Max() const { return max_; }
  // Clamps value to the range.
  void Set(int value);
  // Sets the range, and clamps the value to it. min must not exceed max.
  void SetRange(int min, int max);

  std::string Value() const override { return std::to_string(value_); }
  std::string MinText() const override { return std::to_string(min_); }
  std::string MaxText() const override { return std::to_string(max_); }

 protected:
  EditResult Apply(std::string_view text) override;

 private:
  int value_;
  int min_;
  int max_;
};

// An array of N controls with one name, reached by index: TCutValue[0] is named "TCutValue(0)".
template <typename T, std::size_t N>
class ControlArray {
 public:
  // make(window, name, index) returns the control with that index.
  template <typename Make>
  ControlArray(Window& window, const std::string& name, Make make)
      : items_(Build(window, name, make, std::make_index_sequence<N>())) {}

  T& operator[](std::size_t index) { return items_[index]; }
  const T& operator[](std::size_t index) const { return items_[index]; }
  constexpr std::size_t Size() const { return N; }
  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

 private:
  template <typename Make, std::size_t... I>
  static std::array<T, N> Build(Window& window, const std::string& name, Make make, std::index_sequence<I...>) {
    return {make(window, name + "(" + std::to_string(I) + ")", I)...};
  }

  std::array<T, N> items_;
};

}  // namespace quillon::controls
