// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"

namespace quillon::base {

// The size of the bounding box of a picture turned by angle degrees, rounded up to whole pixels.
base::Size TurnedSize(base::Size size, double angle);

}  // namespace quillon::base
