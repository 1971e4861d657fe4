// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"

class QMainWindow;

namespace quillon::ui {

// Fills the menu bar from the menu entries of the record, in their order.
void BuildMenuBar(job::Form1& form, Binder& binder, QMainWindow& window);

// The action of a menu entry that the menu bar was built with.
QAction* ActionOf(const controls::Menu& menu, const QMainWindow& window);

}  // namespace quillon::ui
