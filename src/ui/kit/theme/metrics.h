// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::ui {

// The grid that all spacing comes from, in device-independent pixels.
inline constexpr int kGap = 8;

}  // namespace quillon::ui
