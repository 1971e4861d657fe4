// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"

namespace quillon::job {

class Program;

// The side of the picture along which a length is measured.
enum class Along { Width, Height };

// Return a typed length in the unit of its box. Millimetres become pixels by the resolution of the output (CmbDPI),
// else by that of the screen, as those of the presets do. Per cent are of the picture on show.

// For a box in pixels. Whole pixels.
controls::Converted ToPixels(const Program& program, const base::Measure& measure, Along along);
// For a margin: pixels or per cent, see Form1::MarginsInPixels.
controls::Converted ToMargin(const Program& program, const base::Measure& measure, Along along);
// For a box in millimetres. Pixels and per cent are refused.
controls::Converted ToMillimetres(const base::Measure& measure);

// Lets units be typed in all boxes of Form1 and FBaseOpt that hold a length.
void AcceptUnits(Program& program);

}  // namespace quillon::job
