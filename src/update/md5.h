// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::update {

// MD5 of a file as lower-case hexadecimal digits; "" when it cannot be read.
std::string Md5OfFile(const std::string& path);

}  // namespace quillon::update
