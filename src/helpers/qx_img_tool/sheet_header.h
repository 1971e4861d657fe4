// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"
#include "imaging/pixels/text_mask.h"

namespace quillon::helpers {

// The header line of a sheet of that many pixels, and where it lies: in the middle, 20 times width / height below the
// upper edge. Its font has 50 times width / height points.
struct SheetHeader {
  imaging::TextMask text;
  base::Rect place;
};

host::Status DrawHeader(const std::string& text, base::Size sheet, SheetHeader& header);

}  // namespace quillon::helpers
