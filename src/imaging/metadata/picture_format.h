// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace quillon::imaging {

// The file formats that can be read.
enum class Format { Unknown, Jpeg, Png, Gif, Tiff, Bmp, Psd };

// Recognises the format by the first bytes of a file; 16 bytes are enough.
Format FormatOf(std::string_view start);

}  // namespace quillon::imaging
