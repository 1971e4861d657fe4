// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/window.h"

#include "base/path_text.h"

namespace quillon::controls {

Window::Window(std::string name, std::string title) : name_(std::move(name)), title_(std::move(title)) {}

void Window::SetTitle(std::string title) {
  if (title_ == title) return;
  title_ = std::move(title);
  TellWindow();
}

void Window::Load() {
  if (loaded_) return;
  loaded_ = true;
  OnLoad();
  TellWindow();
}

void Window::Show() {
  Load();
  if (visible_) return;
  visible_ = true;
  TellWindow();
}

void Window::Hide() {
  if (!visible_) return;
  visible_ = false;
  TellWindow();
}

Control* Window::Find(std::string_view name) const {
  const std::string wanted = base::ToLowerAscii(name);
  for (Control* control : controls_) {
    if (base::ToLowerAscii(control->Name()) == wanted) return control;
  }
  return nullptr;
}

int Window::Observe(Observer onControl, WindowObserver onWindow) {
  watches_.push_back({nextToken_, std::move(onControl), std::move(onWindow)});
  return nextToken_++;
}

void Window::Forget(int token) {
  watches_.remove_if([token](const Watch& watch) { return watch.token == token; });
}

void Window::Tell(Control& control, Aspect aspect) {
  for (const Watch& watch : watches_) {
    if (watch.onControl) watch.onControl(control, aspect);
  }
}

void Window::TellWindow() {
  for (const Watch& watch : watches_) {
    if (watch.onWindow) watch.onWindow(*this);
  }
}

}  // namespace quillon::controls
