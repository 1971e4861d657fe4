// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::helpers {

// Appends the coded data of all pages of a tiff, and what is needed to decode it; false where they cannot be read.
bool TiffPictures(std::string_view bytes, std::string& all);

}  // namespace quillon::helpers
