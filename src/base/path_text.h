// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon::base {

// The three parts of "folder/name.extension".
// The folder has no trailing separator, except for the root itself.
// The extension is the text after the last point of the last part, without that point.
// A leading point belongs to the name, and "." and ".." are names without an extension.
struct PathParts {
  std::string folder;
  std::string name;
  std::string extension;
};

PathParts SplitPath(std::string_view path);

// Returns folder + "/" + name + "." + extension.
// Adds no separator if the folder is empty or ends in one, and no point if the extension is empty.
std::string JoinPath(std::string_view folder, std::string_view name, std::string_view extension);

// Returns folder + "/" + entry; adds no separator if the folder is empty or ends in one.
std::string JoinPath(std::string_view folder, std::string_view entry);

// Returns the path without trailing separators; "/" stays "/".
std::string TrimTrailingSeparator(std::string_view path);

// Returns the path with every ".psd" in its last part, in any case, replaced by ".jpg" (".PSD" by ".JPG"), because no
// PSD file is ever written.
std::string WithoutPsd(std::string path);

// Return the text with its ASCII letters converted; all other bytes are copied unchanged.
std::string ToLowerAscii(std::string_view text);
std::string ToUpperAscii(std::string_view text);

// Returns whether a name comes before another for people: numbers in it count by their value, so that "7" precedes
// "12", and upper and lower case of ASCII letters do not matter. Names that differ in nothing else are ordered by their
// bytes.
bool NaturalLess(std::string_view left, std::string_view right);

// Returns a path as part of a URL: every byte becomes %XX unless it is an ASCII letter, a digit or one of -_.!~*'()/.
std::string PercentEncoded(std::string_view path);

// Returns "<name>_<number>" for one of count parts, numbered from 1.
// Numbers are padded with zeros to the width of count, at least two digits, so that the names sort in order.
std::string NumberedName(const std::string& name, std::size_t number, std::size_t count);

}  // namespace quillon::base
