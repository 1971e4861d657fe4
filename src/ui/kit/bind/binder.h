// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "controls/control.h"
#include "controls/values.h"

class QAction;
class QLabel;
class QMenu;
class QWidget;

namespace quillon::ui {

class Binding;

// Joins a window's record to Qt widgets. Each control gets the widget of its kind, named after the control; the widget
// follows the record, and what the user does with it goes to the record as an edit or a click. A refused edit puts the
// record's value back and tells why.
class Binder {
 public:
  using Refusal = std::function<void(const std::string& sentence)>;

  explicit Binder(controls::Window& window, Refusal onRefusal = {});
  ~Binder();
  Binder(const Binder&) = delete;
  Binder& operator=(const Binder&) = delete;

  controls::Window& Window() const { return window_; }

  // The widget for a control that is not a menu. It has no parent; laying it out gives it one.
  QWidget* Make(controls::Control& control);
  // A label with the given text, or the control's own caption where the text is empty; clicking its mnemonic goes to
  // the widget. It hides and greys with the control.
  QLabel* MakeLabel(controls::Control& control, QWidget* buddy, const QString& text = {});
  // The action of a menu entry that holds no others.
  QAction* MakeAction(controls::Menu& menu, QObject* parent);
  // A second action for the same entry, for a button: it bears neither the entry's name nor its shortcut.
  QAction* MakeTwin(controls::Menu& menu, QObject* parent);
  // Names a menu after its record entry and lets it follow that.
  void Join(controls::Menu& menu, QMenu* target);
  // Lets a widget that is made elsewhere stand for a frame or a grid.
  void Join(controls::Control& control, QWidget* widget);

  bool Has(const controls::Control& control) const { return bindings_.count(&control) != 0; }
  // Hands over what stands typed but not yet finished in a box, before a command acts on the record.
  void CommitTyped();

  // For bindings.
  void Attach(Binding* binding);
  void Refused(const std::string& sentence) const;

 private:
  void OnChange(controls::Control& control, controls::Aspect aspect);

  controls::Window& window_;
  Refusal onRefusal_;
  int token_;
  std::unordered_map<const controls::Control*, std::vector<QPointer<QObject>>> bindings_;
};

}  // namespace quillon::ui
