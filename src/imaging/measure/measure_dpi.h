// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::imaging {

// Horizontal resolution in dots per inch, nearest integer, from the header of a jpg, png, tif (also BigTIFF) or bmp
// file, told apart by their first bytes. 0 when the file tells none, is of another kind, or cannot be followed.
int ReadDpi(const std::string& path);

}  // namespace quillon::imaging
