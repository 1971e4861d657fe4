// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host {

class Files;

// The one text for a place: absolute, without ".", "..", doubled and trailing separators. Links stay in it, but
// "link/.." is the folder above the one that the link leads to. A relative path is taken from folder.
std::string AbsolutePath(const std::string& path, const std::string& folder);
// The same from the current folder of the process; "" stays.
std::string AbsolutePath(const std::string& path);

// The same for the text of a folder. A relative one that leads to no folder only loses its trailing separators: it may
// be a text that stands where none is chosen.
std::string AbsoluteFolder(const Files& files, const std::string& text);

}  // namespace quillon::host
