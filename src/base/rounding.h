// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::base {

// Returns value rounded to the nearest integer; ties go to the even neighbour (2.5 gives 2, 3.5 gives 4).
// Values beyond the range of int are clamped to its nearest end. NaN gives 0.
// This is the rounding of every pixel coordinate and length of the program.
int R(double value);

}  // namespace quillon::base
