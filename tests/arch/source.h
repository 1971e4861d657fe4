// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::arch {

// A file of the source tree; path is relative to its root, "src/base/rect.h".
struct Source {
  std::string path;
  std::string text;

  bool IsCpp() const { return path.ends_with(".cpp"); }
  bool IsHeader() const { return path.ends_with(".h"); }
  bool IsCode() const { return IsCpp() || IsHeader(); }
  bool In(std::string_view folder) const { return path.starts_with(folder); }
};

// A place that breaks a rule. Lines count from 1; 0 is the file as a whole.
struct Breach {
  std::string path;
  int line = 0;
  std::string what;

  bool operator==(const Breach&) const = default;
};

using Breaches = std::vector<Breach>;

inline std::ostream& operator<<(std::ostream& out, const Breach& breach) {
  return out << breach.path << ":" << breach.line << ": " << breach.what;
}

// Every file of the house's own folders and of its root, build results and hidden tools' folders excepted.
std::vector<Source> ReadTree(const std::string& root);

std::vector<std::string_view> Lines(std::string_view text);
int LineAt(std::string_view text, std::size_t position);

enum class Literals { Keep, Blank };

// Returns the text with its comments, and if asked the inside of its literals, replaced by blanks. Length and lines
// stay the same.
std::string CodeOf(std::string_view text, Literals literals);

struct Include {
  int line = 0;
  std::string name;
  bool quoted = false;
};

std::vector<Include> IncludesOf(std::string_view text);

struct Function {
  int line = 0;   // the first line of its signature
  int lines = 0;  // from there to the closing brace, both counted
};

// Functions with their bodies, in order; a lambda inside a function counts as part of it.
std::vector<Function> FunctionsOf(std::string_view text);

}  // namespace quillon::arch
