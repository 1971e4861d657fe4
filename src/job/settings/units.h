// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::job {

// Centimetres as whole pixels at dpi dots per inch. The length in inches, cm times 0.3937, is kept in single precision
// before it is multiplied; the product is rounded with ties to even.
int CmToPixels(float cm, int dpi);

}  // namespace quillon::job
