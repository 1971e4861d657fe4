// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "tools/tools.h"

// What PicHandler does for the program: colours for the press, and pictures as pdf.
namespace quillon::tools {

// Turns the colours of a finished picture into ink, by the profiles ColorConfigs/sRGB.icc and ColorConfigs/Default.icm.
// The picture is replaced when the result stands and sound says that it is one; otherwise it stays as it was and the
// status says why.
using Sound = std::function<bool(const std::string& file)>;
host::Status ConvertToCmyk(Tools& tools, const std::string& file, const Sound& sound);

// Makes "<base>.pdf" of a picture by that parameter text (PdfText). An older pdf of that name is replaced; where none
// was made it goes to the trash, so that nobody takes it for the result. So does one that has no beginning and no end.
host::Status MakePdf(Tools& tools, const std::string& picture, const std::string& base, const std::string& text);

// Makes out of file in the colours of a profile in ColorConfigs, as the press would print it. The helper is started
// from systemFolder where it lies there, else from the program folder.
host::Status MakeCmykPreview(Tools& tools, const std::string& file, const std::string& profile, const std::string& out,
                             const std::string& systemFolder = kSystemFolder);

}  // namespace quillon::tools
