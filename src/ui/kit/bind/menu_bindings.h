// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"

class QAction;
class QMenu;
class QObject;

namespace quillon::ui {

class Binder;

QAction* MakeMenuAction(controls::Menu& menu, Binder& binder, QObject* parent);
QAction* MakeMenuTwin(controls::Menu& menu, Binder& binder, QObject* parent);
void JoinMenu(controls::Menu& menu, Binder& binder, QMenu* target);

}  // namespace quillon::ui
