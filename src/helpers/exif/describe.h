// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

namespace quillon::helpers {

// Copies Exif, XMP and IPTC from source to target, and the ICC profile where target has none and it is for colours of
// its kind. What tells of the pixels themselves stays the target's own: sizes, orientation, resolution, coding.
// Thumbnails and previews, which show what may have been cut away, do not come along.
//
// target is replaced by a copy that was checked to hold the very same picture; on any failure it stays as it is.
// So does another file that took its place meanwhile.
// Unsupported: a format that can hold none of this. Damaged: one of the files cannot be read.
host::Status CopyDescription(host::Files& files, const std::string& source, const std::string& target);

}  // namespace quillon::helpers
