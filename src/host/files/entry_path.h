// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::host {

// The longest name of an entry that disks take, in bytes.
inline constexpr std::size_t kLongestName = 255;

// A path as the folder it lies in ("." for a bare name, "/" for the root) and the name behind the last separator,
// which is empty where the path ends in one.
struct EntryPath {
  std::string folder;
  std::string name;
};

EntryPath SplitEntry(const std::string& path);

// The head of a name that is at most limit bytes long and does not end inside a UTF-8 character.
std::string HeadOfName(std::string_view name, std::size_t limit);

}  // namespace quillon::host
