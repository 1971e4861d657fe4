// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/kit/bind/menu_bindings.h"

#include <QAction>
#include <QMenu>

#include "ui/kit/bind/binding.h"
#include "ui/kit/text.h"

namespace quillon::ui {
namespace {

class ActionBinding : public Binding {
 public:
  ActionBinding(controls::Menu& menu, Binder& binder, QAction* action)
      : Binding(menu, binder, action), action_(action) {
    if (!action->menu()) connect(action, &QAction::triggered, this, [this] { Click(); });
  }

  void ShowLook() override {
    action_->setText(Shown(Control().Caption()));
    const QString tip = TooltipOf(Control());
    action_->setToolTip(tip);
    action_->setStatusTip(tip);
    action_->setEnabled(Control().Enabled());
    action_->setVisible(Control().Visible());
  }

 private:
  QAction* action_;
};

}  // namespace

QAction* MakeMenuAction(controls::Menu& menu, Binder& binder, QObject* parent) {
  auto* action = new QAction(parent);
  action->setObjectName(Shown(menu.Name()));
  action->setShortcut(QKeySequence(Shown(menu.Shortcut())));
  binder.Attach(new ActionBinding(menu, binder, action));
  return action;
}

QAction* MakeMenuTwin(controls::Menu& menu, Binder& binder, QObject* parent) {
  auto* action = new QAction(parent);
  binder.Attach(new ActionBinding(menu, binder, action));
  return action;
}

void JoinMenu(controls::Menu& menu, Binder& binder, QMenu* target) {
  target->menuAction()->setObjectName(Shown(menu.Name()));
  binder.Attach(new ActionBinding(menu, binder, target->menuAction()));
}

}  // namespace quillon::ui
