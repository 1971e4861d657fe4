// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <string>

#include "base/rect.h"
#include "tools/tools.h"

// Helpers that do one thing in one call.
namespace quillon::tools {

// The text that QxBackOCRer reads from a picture; empty where it found or left none. The wait has no limit.
host::Status RecogniseText(Tools& tools, const std::string& picture, std::string& text);

// PicCirleCut: the ellipse inside box as a picture of its own. Fine when target is a new file; one from before is
// replaced, or goes where none was made, unless it is source itself.
host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box);

// CutMedia, with arguments of FFmpeg in one text, which holds paths in quotes. Fine when it came to its end: then its
// output is to be looked for.
host::Status RunCutMedia(Tools& tools, const std::string& parameters, std::initializer_list<std::string> paths);

}  // namespace quillon::tools
