// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QToolBar>

#include "job/windows/form1.h"
#include "ui/kit/bind/binder.h"

class QMainWindow;

namespace quillon::ui {

// Creates menus and actions for all menu entries of the record, in their order, with separators between groups.
// The actions are also added to the window, so that shortcuts work wherever the focus is.
void BuildMenuBar(job::Form1& form, Binder& binder, QMainWindow& window);

// Returns the action of a menu entry, or nullptr if the menu bar was not built with it.
QAction* ActionOf(const controls::Menu& menu, const QMainWindow& window);

// Buttons for the commands that are used most. The cut button starts the driver that belongs to the chosen cut mode.
class ToolBar : public QToolBar {
 public:
  ToolBar(job::Form1& form, Binder& binder, QWidget* parent = nullptr);
  ~ToolBar() override;

  // Shows at the cut button how many rows of the list give no file; nothing if all give one.
  void ShowForeseen(std::size_t rows, std::size_t withoutFile);

 private:
  void Add(controls::Menu& menu, const QString& icon, const QString& words);
  // Returns the menu entry of the driver that can start now, or nullptr.
  controls::Menu* Driver() const;
  // Clicks that entry, after sending typed edits to the record.
  void Cut();

  job::Form1& form_;
  Binder& binder_;
  QAction* cut_;
  int token_;
};

}  // namespace quillon::ui
