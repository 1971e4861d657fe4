// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/absolute_path.h"

#include <algorithm>
#include <filesystem>

#include "base/path_text.h"
#include "host/files/files.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;

bool HasParentPart(const fs::path& path) { return std::find(path.begin(), path.end(), "..") != path.end(); }

}  // namespace

std::string AbsolutePath(const std::string& path, const std::string& folder) {
  fs::path full = fs::path(path).is_absolute() ? fs::path(path) : fs::path(folder) / path;
  // Removing ".." by text alone would be wrong after a link, so the folders above the last part are resolved. The last
  // part itself stays as it is, in case it is a link.
  if (HasParentPart(full)) {
    std::error_code error;
    const fs::path parent = fs::weakly_canonical(full.filename() == ".." ? full : full.parent_path(), error);
    if (!error) full = full.filename() == ".." ? parent : parent / full.filename();
  }
  return base::TrimTrailingSeparator(full.lexically_normal().native());
}

std::string AbsolutePath(const std::string& path) {
  if (path.empty()) return path;
  std::error_code error;
  const fs::path here = fs::path(path).is_absolute() ? fs::path() : fs::current_path(error);
  return error ? path : AbsolutePath(path, here.native());
}

std::string AbsoluteFolder(const Files& files, const std::string& text) {
  return text.starts_with('/') || files.IsFolder(text) ? AbsolutePath(text) : base::TrimTrailingSeparator(text);
}

}  // namespace quillon::host
