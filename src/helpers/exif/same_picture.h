// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace quillon::helpers {

// Returns true if two files, given as their whole content, contain the same coded picture. Metadata is ignored.
// Compared are: in a JPEG everything after the metadata segments (tables, frame and scans), in a PNG the chunks of the
// picture, in a TIFF the coded data of every page.
// Returns false if a file cannot be parsed, or is of another format.
bool SamePicture(std::string_view before, std::string_view after);

}  // namespace quillon::helpers
