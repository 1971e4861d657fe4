// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "tools/tools.h"

// Calls to PicHandler: conversion to CMYK, and pictures as PDF.
namespace quillon::tools {

// Converts a finished picture to CMYK with the profiles ColorConfigs/sRGB.icc and ColorConfigs/Default.icm.
// The picture is replaced if the helper wrote a result and validate accepts it. Otherwise it stays unchanged and the
// failure says why.
using FileValidator = std::function<bool(const std::string& file)>;
host::Status ConvertToCmyk(Tools& tools, const std::string& file, const FileValidator& validate);

// Makes "<base>.pdf" from a picture, with a parameter text from PdfText. An existing PDF is replaced.
// If the helper fails, an older PDF is moved to the trash, so that it is not mistaken for the result. So is an
// incomplete one.
host::Status MakePdf(Tools& tools, const std::string& picture, const std::string& base, const std::string& text);

// Writes to out how file would be printed with a profile in ColorConfigs.
// The helper is started from systemFolder if it exists there, otherwise from the program folder.
host::Status MakeCmykPreview(Tools& tools, const std::string& file, const std::string& profile, const std::string& out,
                             const std::string& systemFolder = kSystemFolder);

}  // namespace quillon::tools
