// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "controls/control.h"

namespace quillon::controls {

// A window as a record of its controls, in order of declaration. The records of the program derive from it.
//
// A window starts unloaded and hidden. Load() runs OnLoad() once, Show() loads and shows, Hide() keeps all values.
class Window {
 public:
  // Called after each change of a control, and of the window itself.
  using Observer = std::function<void(Control&, Aspect)>;
  using WindowObserver = std::function<void(Window&)>;

  Window(std::string name, std::string title);
  virtual ~Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Title() const { return title_; }
  void SetTitle(std::string title);

  bool Loaded() const { return loaded_; }
  bool Visible() const { return visible_; }
  void Load();
  void Show();
  void Hide();
  // Hides the window and marks it as not loaded: the next Show() runs OnLoad() again. Values are kept.
  void Unload();
  // Called when the user presses the close button. The default hides the window.
  virtual void Close() { Hide(); }

  const std::vector<Control*>& Controls() const { return controls_; }
  // Returns the control of that name, with its index if it has one ("TCutValue(0)"). Ignores case. nullptr if not
  // found.
  Control* Find(std::string_view name) const;

  // Registers an observer and returns a token, never 0. Forget(token) removes it and may be called from inside an
  // observer.
  // onWindow is called after changes of the title and after the window is loaded, shown, hidden or unloaded.
  int Observe(Observer onControl, WindowObserver onWindow = {});
  // Registers an observer of one control of this window.
  int Observe(const Control& control, Observer onControl);
  void Forget(int token);

 protected:
  // Called when the window is loaded, before it is shown for the first time.
  virtual void OnLoad() {}

 private:
  friend class Control;
  struct Subscription {
    int token;
    Observer onControl;
    WindowObserver onWindow;
    const Control* only = nullptr;  // the one control that onControl is called for; nullptr: all
  };

  void Add(Control& control) { controls_.push_back(&control); }
  void Notify(Control& control, Aspect aspect);
  void NotifyWindow();
  void NotifyAll(const std::function<void(const Subscription&)>& notify);

  std::string name_;
  std::string title_;
  bool loaded_ = false;
  bool visible_ = false;
  std::vector<Control*> controls_;
  std::list<Subscription> subscriptions_;
  int nextToken_ = 1;
  int notifying_ = 0;  // nested notifications in progress; removed observers are erased once it is 0 again
};

}  // namespace quillon::controls
