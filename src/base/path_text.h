// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace quillon::base {

// The three parts of "folder/name.extension". The folder has no trailing separator (except the root itself); the
// extension has no point and is what stands behind the last point of the last part; a leading point starts a name. The
// entries "." and ".." are names without an extension.
struct PathParts {
  std::string folder;
  std::string name;
  std::string extension;
};

PathParts SplitPath(std::string_view path);

// folder + separator + name + "." + extension; no doubled separator behind a root, no point without an extension.
std::string JoinPath(std::string_view folder, std::string_view name, std::string_view extension);

// folder + separator + entry, without a doubled separator.
std::string JoinPath(std::string_view folder, std::string_view entry);

// Without trailing separators; a root stays "/".
std::string TrimTrailingSeparator(std::string_view path);

// The path with every ".psd" in its last part, in any case, replaced by ".jpg" (".PSD" by ".JPG"), because no psd is
// ever written.
std::string WithoutPsd(std::string path);

// Text with the ASCII letters changed; all other bytes stay.
std::string ToLowerAscii(std::string_view text);
std::string ToUpperAscii(std::string_view text);

}  // namespace quillon::base
