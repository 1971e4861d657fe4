// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace quillon::imaging {

// The quality that the luminance table of a JPEG was made for, 1..100; 0 where bytes hold none. The beginning of a file
// is enough.
int JpegQuality(std::string_view bytes);

}  // namespace quillon::imaging
