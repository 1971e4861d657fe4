// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/units.h"

#include "base/rounding.h"

namespace quillon::job {

int CmToPixels(float cm, int dpi) {
  const auto inches = static_cast<float>(static_cast<double>(cm) * 0.3937);
  return base::R(static_cast<double>(inches) * dpi);
}

}  // namespace quillon::job
