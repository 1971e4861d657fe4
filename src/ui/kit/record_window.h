// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/kit/tool_window.h"

class QVBoxLayout;

namespace quillon::ui {

// A tool window that is laid out by its record alone, in the order of the controls: on top what is in no frame, then
// the frames as groups in two columns, and the buttons at the foot. Check boxes stand two in a row, labels fill a row,
// and every other control has its caption before it. Grids, menus and frames inside of frames need a window of their
// own.
class RecordWindow : public ToolWindow {
 public:
  RecordWindow(controls::Window& record, Binder::Refusal onRefusal, QWidget* parent);

 private:
  // Adds rows for the controls with that parent, nullptr for those without one, except frames and buttons.
  void AddRows(QWidget* body, const controls::Control* parent);
  void AddGroups(QVBoxLayout* column);
  void AddButtons(QVBoxLayout* column);

  controls::Window& record_;
};

}  // namespace quillon::ui
