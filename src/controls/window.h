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

// A window as a record of its controls, in the order in which they are declared. Records derive from it.
//
// A window starts unloaded and hidden. Load() runs OnLoad() once; Show() loads and shows; Hide() keeps all values.
class Window {
 public:
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
  // Hides the window and forgets that it was loaded: the next Show() runs OnLoad() again. Values stay.
  void Unload();
  // What the user's close button does; the default hides.
  virtual void Close() { Hide(); }

  const std::vector<Control*>& Controls() const { return controls_; }
  // By name with index, "TCutValue(0)"; upper and lower case do not matter; nullptr if there is none.
  Control* Find(std::string_view name) const;

  // Keeps an observer until the returned token is handed to Forget, which an observer may also do while it is told.
  // Observers of the window itself hear title, loading and visibility.
  int Observe(Observer onControl, WindowObserver onWindow = {});
  void Forget(int token);

 protected:
  virtual void OnLoad() {}

 private:
  friend class Control;
  struct Watch {
    int token;
    Observer onControl;
    WindowObserver onWindow;
  };

  void Add(Control& control) { controls_.push_back(&control); }
  void Notify(Control& control, Aspect aspect);
  void NotifyWindow();
  void NotifyAll(const std::function<void(const Watch&)>& notify);

  std::string name_;
  std::string title_;
  bool loaded_ = false;
  bool visible_ = false;
  std::vector<Control*> controls_;
  std::list<Watch> watches_;
  int nextToken_ = 1;
  int telling_ = 0;  // tellings in progress; forgotten observers are only swept out when none is
};

}  // namespace quillon::controls
