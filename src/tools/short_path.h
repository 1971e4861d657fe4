// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::tools {

// Returns the 8.3 form of a file name, as order files contain it.
// A name that fits is returned unchanged: up to 8 characters, a point, up to 3 characters, none of them a blank,
// another point or one of "+,;=[]".
// From any other name blanks and other points are removed, and those signs become "_". The result is the first 6
// characters, "~", the number, a point and the first 3 characters of the extension: "Tiff.tiff" becomes "Tiff~1.tif".
// Case is kept, and a character beyond ASCII counts as one.
// number (1 to 9) distinguishes names whose short forms would be equal.
std::string ShortName(const std::string& name, int number = 1);

// Returns the path with its last part in 8.3 form.
std::string ShortPath(const std::string& path, int number = 1);

}  // namespace quillon::tools
