// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

#include "controls/control.h"

namespace quillon::controls {

// Looks of controls that lie in a frame or menu: usable from the start, or switched off until something enables them.
inline controls::Appearance Inside(controls::Control& parent, std::string caption, std::string tooltip = {}) {
  return {.caption = std::move(caption), .tooltip = std::move(tooltip), .parent = &parent};
}

inline controls::Appearance DisabledInside(controls::Control& parent, std::string caption, std::string tooltip = {}) {
  return {.caption = std::move(caption), .tooltip = std::move(tooltip), .enabled = false, .parent = &parent};
}

}  // namespace quillon::controls
