// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "helpers/runtime/helper.h"

namespace quillon::helpers {

// What the program hands over: the settings application, a line break, the path of the picture.
struct Recognition {
  std::string application;
  std::string picture;
};

// Fails where there is no line break, or nothing behind it.
host::Status ParseRecognition(const std::string& text, Recognition& order);

// The simplified Chinese text of a picture, without the blanks and line ends behind it. Missing: the picture, Tesseract
// or its data are not there; each says so.
host::Status Recognise(Helper& helper, const std::string& picture, std::string& text);

}  // namespace quillon::helpers
