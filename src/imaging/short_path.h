// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::imaging {

// The 8.3 form of a file name, as order files carry it. A name that fits already (up to 8 characters, a point, up to
// 3, none of them a blank, a further point or one of "+,;=[]") is itself. Of any other the blanks and further points
// go, the signs become "_", the first 6 characters get "~1" and the first 3 of the extension follow: "Tiff.tiff" is
// "Tiff~1.tif". Letters keep their case; a character beyond ASCII counts as one.
std::string ShortName(const std::string& name);

// The path with its last part in 8.3 form.
std::string ShortPath(const std::string& path);

}  // namespace quillon::imaging
