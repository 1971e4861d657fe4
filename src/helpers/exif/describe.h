// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::helpers {

// Copies Exif, XMP and IPTC from source to target, and the ICC profile if target has none and its colours match.
// Values about the pixels themselves (sizes, orientation, resolution, coding) are kept from target.
// Thumbnails and previews are not copied, because they may show parts that were cropped away.
//
// target is replaced only by a copy that was verified to contain exactly the same picture. It stays unchanged on any
// failure, and if another file has replaced it meanwhile.
// Errors: Unsupported if the format cannot hold metadata, Damaged if one of the files cannot be read.
host::Status CopyDescription(host::Files& files, const std::string& source, const std::string& target);

}  // namespace quillon::helpers
