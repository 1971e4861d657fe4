// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace quillon::helpers {

// Whether two files, whole in memory, hold the same coded picture, whatever else is said in them: of jpeg everything
// from the tables on but for descriptions, of png the chunks of the picture, of tiff the coded data of every page.
// False for anything that cannot be followed.
bool SamePicture(std::string_view before, std::string_view after);

}  // namespace quillon::helpers
