// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/paths.h"

#include <algorithm>
#include <filesystem>

#include "base/path_text.h"
#include "host/files/files.h"

namespace quillon::host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kMark = ".quillon-";
constexpr std::size_t kSerialLength = 6;
constexpr std::uint64_t kSerials = 36ull * 36 * 36 * 36 * 36 * 36;
// Lower-case letters only, because some disks ignore case.
constexpr std::string_view kDigits = "0123456789abcdefghijklmnopqrstuvwxyz";

bool HasParentPart(const fs::path& path) { return std::find(path.begin(), path.end(), "..") != path.end(); }

}  // namespace

EntryPath SplitEntry(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return {".", path};
  return {separator == 0 ? "/" : path.substr(0, separator), path.substr(separator + 1)};
}

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

std::string HeadOfName(std::string_view name, std::size_t limit) {
  if (name.size() <= limit) return std::string(name);
  std::size_t end = limit;
  while (end > 0 && limit - end < 4 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) --end;
  // Four continuation bytes in a row are not UTF-8, so any cut is as good as another.
  if (limit - end == 4) end = limit;
  return std::string(name.substr(0, end));
}

std::string DraftName(std::string_view name, std::uint64_t serial, std::size_t longest) {
  const std::size_t extra = 1 + kMark.size() + kSerialLength;
  std::string draft = "." + HeadOfName(name, longest > extra ? longest - extra : 0);
  draft += kMark;
  serial %= kSerials;
  for (std::size_t i = 0; i < kSerialLength; ++i) {
    draft += kDigits[serial % kDigits.size()];
    serial /= kDigits.size();
  }
  return draft;
}

bool IsDraftName(std::string_view name) {
  const std::size_t tail = kMark.size() + kSerialLength;
  if (name.size() < 1 + tail || name.front() != '.') return false;
  name.remove_prefix(name.size() - tail);
  return name.starts_with(kMark) && name.find_first_not_of(kDigits, kMark.size()) == std::string_view::npos;
}

bool IsDraftOf(std::string_view name, std::string_view draft) {
  if (!IsDraftName(draft)) return false;
  draft.remove_prefix(1);
  draft.remove_suffix(kMark.size() + kSerialLength);
  return !draft.empty() && name.starts_with(draft);
}

}  // namespace quillon::host
