// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/window.h"

#include "base/path_text.h"

namespace quillon::controls {
namespace {

constexpr int kForgotten = 0;

}  // namespace

Window::Window(std::string name, std::string title) : name_(std::move(name)), title_(std::move(title)) {}

void Window::SetTitle(std::string title) {
  if (title_ == title) return;
  title_ = std::move(title);
  NotifyWindow();
}

void Window::Load() {
  if (loaded_) return;
  loaded_ = true;
  OnLoad();
  NotifyWindow();
}

void Window::Show() {
  Load();
  if (visible_) return;
  visible_ = true;
  NotifyWindow();
}

void Window::Hide() {
  if (!visible_) return;
  visible_ = false;
  NotifyWindow();
}

void Window::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  visible_ = false;
  NotifyWindow();
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
  for (Watch& watch : watches_) {
    if (watch.token == token) watch.token = kForgotten;
  }
  if (telling_ == 0) watches_.remove_if([](const Watch& watch) { return watch.token == kForgotten; });
}

void Window::NotifyAll(const std::function<void(const Watch&)>& notify) {
  ++telling_;
  for (const Watch& watch : watches_) {
    if (watch.token != kForgotten) notify(watch);
  }
  if (--telling_ == 0) Forget(kForgotten);
}

void Window::Notify(Control& control, Aspect aspect) {
  NotifyAll([&](const Watch& watch) {
    if (watch.onControl) watch.onControl(control, aspect);
  });
}

void Window::NotifyWindow() {
  NotifyAll([&](const Watch& watch) {
    if (watch.onWindow) watch.onWindow(*this);
  });
}

}  // namespace quillon::controls
