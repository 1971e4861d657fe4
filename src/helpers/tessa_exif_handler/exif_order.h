// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::helpers {

struct ExifOrder {
  std::string source;
  std::string target;
};

// "<source>|<target>|<marker>"; false for anything else.
bool ReadExifOrder(const std::string& text, ExifOrder& order);

}  // namespace quillon::helpers
