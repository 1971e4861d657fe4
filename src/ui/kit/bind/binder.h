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

class QAbstractSlider;
class QAction;
class QLabel;
class QMenu;
class QWidget;

namespace quillon::ui {

class Binding;

// Connects the record of a window to Qt widgets, in both directions.
// Each control gets the widget for its kind, with the name of the control as object name.
// The widget follows the record. What the user does with it goes to the record as an edit or a click.
// If the record refuses an edit, the widget shows the value of the record again and onRefusal receives the reason.
class Binder {
 public:
  using Refusal = std::function<void(const std::string& sentence)>;

  // The record has to outlive the binder.
  explicit Binder(controls::Window& window, Refusal onRefusal = {});
  ~Binder();
  Binder(const Binder&) = delete;
  Binder& operator=(const Binder&) = delete;

  controls::Window& Window() const { return window_; }

  // Returns a new widget for a control that is not a menu. It has no parent until it is put in a layout.
  QWidget* Make(controls::Control& control);
  // Returns a new label with text, or with the caption of the control if text is empty. Its mnemonic focuses buddy.
  // The label is hidden and disabled together with the control.
  QLabel* MakeLabel(controls::Control& control, QWidget* buddy, const QString& text = {});
  // Returns the action of a menu entry without a submenu, with its name and shortcut.
  QAction* MakeAction(controls::Menu& menu, QObject* parent);
  // Returns another action for the same entry, for a button; it has neither the name nor the shortcut.
  QAction* MakeButtonAction(controls::Menu& menu, QObject* parent);
  // Names a submenu after its entry in the record and lets it follow that entry.
  void Join(controls::Menu& menu, QMenu* target);
  // Lets a widget that was made elsewhere represent a frame or a grid.
  void Join(controls::Control& control, QWidget* widget);
  // Lets a slider or scroll bar that was made elsewhere represent a slider of the record.
  void Join(controls::Slider& slider, QAbstractSlider* widget);

  // Returns true if the control has a widget.
  bool Has(const controls::Control& control) const { return bindings_.count(&control) != 0; }
  // Sends what the user has typed but not confirmed to the record. Called before a command that reads the record.
  void CommitTyped();

  // For bindings: registers one and shows the current state of its control.
  void Attach(Binding* binding);
  // Reports why an edit or click was refused, and names the control by its caption.
  void Refused(const controls::Control& control, const std::string& refusal) const;

 private:
  void OnChange(controls::Control& control, controls::Aspect aspect);

  controls::Window& window_;
  Refusal onRefusal_;
  int token_;
  std::unordered_map<const controls::Control*, std::vector<QPointer<QObject>>> bindings_;
};

}  // namespace quillon::ui
