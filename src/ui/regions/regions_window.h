// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "regions/lists/fmultcut.h"
#include "ui/kit/tool_window.h"

namespace quillon::ui {

// FMultCut beside the main window.
class RegionsWindow : public ToolWindow {
 public:
  RegionsWindow(regions::FMultCut& record, Binder::Refusal onRefusal, QWidget* parent = nullptr);
};

}  // namespace quillon::ui
