// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "imaging/image.h"
#include "imaging/services.h"

namespace quillon::imaging {

// Turns a picture into CMYK by the ICC profile of a press ("" or one that is not for CMYK: a generic press), relative
// with black point compensation. Pictures that are CMYK already stay as they are.
Status ConvertToCmyk(Image& image, const std::string& profile);

}  // namespace quillon::imaging
