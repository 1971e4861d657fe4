// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace quillon::host {

class Files;

// Returns the canonical text for a place: absolute, without ".", "..", doubled and trailing separators.
// A relative path is resolved against folder.
// Symbolic links are kept, but "link/.." becomes the parent of the folder that the link points to.
std::string AbsolutePath(const std::string& path, const std::string& folder);
// The same, with relative paths resolved against the current folder of the process. "" stays "".
std::string AbsolutePath(const std::string& path);

// The same for the text of a folder label. A relative text that does not lead to a folder only loses its trailing
// separators: it may be a message that stands there while no folder is chosen.
std::string AbsoluteFolder(const Files& files, const std::string& text);

}  // namespace quillon::host
