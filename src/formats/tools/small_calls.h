// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/rect.h"
#include "formats/tools/tools.h"

// Helpers that do one thing in one call.
namespace quillon::formats {

// The text that QxBackOCRer reads from a picture; empty where it found or left none. The wait has no limit.
std::string RecogniseText(Tools& tools, const std::string& picture);

// PicCirleCut: the ellipse inside box as a picture of its own. Fine when target is a new file; one from before is
// replaced, or goes where none was made, unless it is source itself.
host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box);

// CutMedia, with arguments of FFmpeg in one text; a result other than Gone is no reason to look for its output.
Waited RunCutMedia(Tools& tools, const std::string& parameters);

}  // namespace quillon::formats
