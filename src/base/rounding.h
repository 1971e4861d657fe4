// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::base {

// Rounds to the nearest integer; a tie goes to the even neighbour. Values beyond the range of int become its nearest
// end; NaN becomes 0.
int R(double value);

// The largest integer not above value, limited to the range of int; NaN becomes 0.
int Floor(double value);

}  // namespace quillon::base
