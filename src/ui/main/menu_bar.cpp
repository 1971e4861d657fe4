// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/main/menu_bar.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <algorithm>

#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

bool HoldsOthers(const job::Form1& form, const controls::Control& menu) {
  return std::any_of(form.Controls().begin(), form.Controls().end(), [&menu](const controls::Control* other) {
    return other->GetKind() == controls::Kind::Menu && other->Parent() == &menu;
  });
}

// Entries that begin a group of their own.
bool BeginsGroup(const job::Form1& form, const controls::Control& menu) {
  return &menu == &form.MenuInputDir || &menu == &form.MenuExit || &menu == &form.MenuClearList ||
         &menu == &form.MenuAbout;
}

void Fill(job::Form1& form, Binder& binder, QMainWindow& window, QMenu* target, const controls::Control* parent) {
  for (controls::Control* control : form.Controls()) {
    if (control->GetKind() != controls::Kind::Menu || control->Parent() != parent) continue;
    auto& menu = static_cast<controls::Menu&>(*control);
    if (parent && BeginsGroup(form, menu)) target->addSeparator();
    if (!HoldsOthers(form, menu)) {
      QAction* action = binder.MakeAction(menu, &window);
      (parent ? static_cast<QWidget*>(target) : window.menuBar())->addAction(action);
      // In the window too, so that its shortcut works whatever has the focus.
      window.addAction(action);
      continue;
    }
    QMenu* submenu = parent ? target->addMenu(QString()) : window.menuBar()->addMenu(QString());
    submenu->setToolTipsVisible(true);
    binder.Join(menu, submenu);
    Fill(form, binder, window, submenu, &menu);
  }
}

}  // namespace

void BuildMenuBar(job::Form1& form, Binder& binder, QMainWindow& window) {
  Fill(form, binder, window, nullptr, nullptr);
}

QAction* ActionOf(const controls::Menu& menu, const QMainWindow& window) {
  return window.findChild<QAction*>(Shown(menu.Name()));
}

}  // namespace quillon::ui
