// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::tools {

// The 8.3 form of a file name, as order files carry it. A name that fits already (up to 8 characters, a point, up to
// 3, none of them a blank, a further point or one of "+,;=[]") is itself. Of any other the blanks and further points
// go, the signs become "_", the first 6 characters get "~" with the number and the first 3 of the extension follow:
// "Tiff.tiff" is "Tiff~1.tif". Letters keep their case; a character beyond ASCII counts as one. The number, 1 to 9,
// tells apart names that would be the same.
std::string ShortName(const std::string& name, int number = 1);

// The path with its last part in 8.3 form.
std::string ShortPath(const std::string& path, int number = 1);

}  // namespace quillon::tools
