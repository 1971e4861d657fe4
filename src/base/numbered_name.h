// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>

namespace quillon::base {

// "<name>_01" and on, for part number of count, counted from 1. All of one count have the same number of digits, two at
// least, so that they sort in their order.
std::string NumberedName(const std::string& name, std::size_t number, std::size_t count);

}  // namespace quillon::base
