// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillon::host {

class Files;

// The longest name of an entry that disks accept, in bytes.
inline constexpr std::size_t kLongestName = 255;

// A path, split into the folder and the name after the last separator.
// The folder is "." for a bare name and "/" for an entry of the root. The name is empty if the path ends in a
// separator.
struct EntryPath {
  std::string folder;
  std::string name;
};

EntryPath SplitEntry(const std::string& path);

// Returns the canonical text for a place: absolute, without ".", "..", doubled and trailing separators.
// A relative path is resolved against folder.
// Symbolic links are kept, but "link/.." becomes the parent of the folder that the link points to.
std::string AbsolutePath(const std::string& path, const std::string& folder);
// The same, with relative paths resolved against the current folder of the process. "" stays "".
std::string AbsolutePath(const std::string& path);

// The same for the text of a folder label. A relative text that does not lead to a folder only loses its trailing
// separators: it may be a message that stands there while no folder is chosen.
std::string AbsoluteFolder(const Files& files, const std::string& text);

// Returns the start of a name, at most limit bytes long, without cutting a UTF-8 character.
std::string HeadOfName(std::string_view name, std::size_t limit);

// Returns the name of a draft for the file of that name: ".<name>.quillon-<serial>", at most longest bytes long.
// <name> is shortened if necessary, at the end of a character.
// Names differ if the serials differ by less than 36^6.
std::string DraftName(std::string_view name, std::uint64_t serial, std::size_t longest);

// Returns true if draft may be the name of a draft for a file of that name. See also IsDraftName in files.h.
bool IsDraftOf(std::string_view name, std::string_view draft);

}  // namespace quillon::host
