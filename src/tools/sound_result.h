// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/files.h"

// Whether what a helper left is what was asked for, and no garbage.
namespace quillon::tools {

// A PDF with its beginning and its end. One that is too large to be looked at is taken on trust.
bool IsWholePdf(const host::Files& files, const std::string& path);

// A picture of a kind that this program reads, whose head is whole; its pixels are not looked at.
bool IsPicture(const host::Files& files, const std::string& path);

}  // namespace quillon::tools
