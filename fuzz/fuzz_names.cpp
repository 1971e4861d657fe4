// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Any bytes as the name and path of a file: what is made of them is again a name or path, no part is lost, and what is
// shown is well-formed.
#include <cstdint>
#include <string>

#include "base/path_text.h"
#include "base/utf8.h"
#include "fuzz_pictures.h"
#include "host/files/files.h"
#include "host/files/paths.h"

namespace base = quillon::base;
namespace host = quillon::host;
using quillon::fuzz::Require;

namespace {

void CheckParts(const std::string& path) {
  const base::PathParts parts = base::SplitPath(path);
  Require(parts.name.find('/') == std::string::npos && parts.extension.find('/') == std::string::npos);
  Require(parts.extension.find('.') == std::string::npos);
  const std::string joined = base::JoinPath(parts.folder, parts.name, parts.extension);
  const base::PathParts again = base::SplitPath(joined);
  // The parts do not say whether an empty extension had its point.
  if (!parts.extension.empty()) Require(again.name == parts.name && again.extension == parts.extension);
  Require(base::WithoutPsd(base::WithoutPsd(path)) == base::WithoutPsd(path));
  Require(base::IsUtf8(base::DisplayText(path)));
}

void CheckAbsolute(const std::string& path) {
  const std::string absolute = host::AbsolutePath(path, "/some/folder");
  Require(absolute.starts_with('/') && absolute.find("//") == std::string::npos);
  Require(host::AbsolutePath(absolute, "/other") == absolute);
}

void CheckDraft(const std::string& path, std::size_t longest) {
  const host::EntryPath entry = host::SplitEntry(path);
  Require(entry.name.find('/') == std::string::npos);
  const std::string draft = host::DraftName(entry.name, path.size(), longest);
  Require(draft.size() <= longest && host::IsDraftName(draft));
  const std::string head = host::HeadOfName(entry.name, longest);
  Require(head.size() <= longest && entry.name.starts_with(head));
  if (base::IsUtf8(entry.name)) Require(base::IsUtf8(head));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  // Names of files hold no zero byte.
  std::string path(reinterpret_cast<const char*>(data) + 1, size - 1);
  std::replace(path.begin(), path.end(), '\0', '0');
  CheckParts(path);
  if (!path.empty()) CheckAbsolute(path);
  constexpr std::size_t kShortest = 32;
  CheckDraft(path, kShortest + data[0] % (host::kLongestName - kShortest));
  return 0;
}
