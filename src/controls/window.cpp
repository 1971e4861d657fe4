// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/window.h"

#include "base/path_text.h"

namespace quillon::controls {
namespace {

// The token of an observer that was removed while a notification was in progress. Such an entry is skipped, and erased
// after the last notification, because the list must not change while it is iterated.
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
  subscriptions_.push_back({nextToken_, std::move(onControl), std::move(onWindow)});
  return nextToken_++;
}

int Window::Observe(const Control& control, Observer onControl) {
  subscriptions_.push_back({nextToken_, std::move(onControl), {}, &control});
  return nextToken_++;
}

void Window::Forget(int token) {
  for (Subscription& subscription : subscriptions_) {
    if (subscription.token == token) subscription.token = kForgotten;
  }
  if (notifying_ == 0) {
    subscriptions_.remove_if([](const Subscription& subscription) { return subscription.token == kForgotten; });
  }
}

void Window::NotifyAll(const std::function<void(const Subscription&)>& notify) {
  ++notifying_;
  for (const Subscription& subscription : subscriptions_) {
    if (subscription.token != kForgotten) notify(subscription);
  }
  if (--notifying_ == 0) Forget(kForgotten);
}

void Window::Notify(Control& control, Aspect aspect) {
  NotifyAll([&](const Subscription& subscription) {
    const bool concerned = !subscription.only || subscription.only == &control;
    if (concerned && subscription.onControl) subscription.onControl(control, aspect);
  });
}

void Window::NotifyWindow() {
  NotifyAll([&](const Subscription& subscription) {
    if (subscription.onWindow) subscription.onWindow(*this);
  });
}

}  // namespace quillon::controls
