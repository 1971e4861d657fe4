// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "regions/lists/fmultcut.h"
#include "ui/kit/tool_window.h"

namespace quillon::ui {

// FMultCut as a tool window beside the main window: the open lists, the regions of one list, and the buttons for both.
// The regions are shown and moved in the preview; this window only lists them.
class RegionsWindow : public ToolWindow {
 public:
  RegionsWindow(regions::FMultCut& record, Binder::Refusal onRefusal, QWidget* parent = nullptr);
};

}  // namespace quillon::ui
