// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"

class QAbstractSlider;

namespace quillon::ui {

class Binder;

// Joins a slider of the record to a slider or scroll bar of the toolkit.
void JoinSlider(controls::Slider& slider, Binder& binder, QAbstractSlider* widget);

}  // namespace quillon::ui
