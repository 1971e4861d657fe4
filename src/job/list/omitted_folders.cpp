// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/omitted_folders.h"

#include <string_view>

#include "base/path_text.h"
#include "job/list/run_context.h"
#include "job/work_files.h"

namespace quillon::job {
namespace {

constexpr const char* kLineEnd = "\r\n";

}  // namespace

OmittedFolders::OmittedFolders(const RunContext& context) : context_(context) {}

void OmittedFolders::Clear() {
  folders_.clear();
  context_.flags.OmittedFolders.clear();
}

void OmittedFolders::Read() {
  for (const auto& [source, wrote] : context_.doneElsewhere) {
    if (wrote == Wrote::Yes) Add(base::SplitPath(source).folder);
  }
  std::string text;
  // The first run has no such file. If it cannot be read, no folder is omitted.
  if (!context_.host.files.ReadFile(context_.AppPath(work_files::kOmittedFolders), text)) return;
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    std::string line(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty() && context_.host.files.IsFolder(line)) Add(line);
  }
}

bool OmittedFolders::Add(const std::string& folder) {
  if (!folders_.insert(folder).second) return false;
  context_.flags.OmittedFolders += folder + kLineEnd;
  return true;
}

host::Status OmittedFolders::WriteBack() {
  const host::Status saved =
      context_.host.files.Save(context_.AppPath(work_files::kOmittedFolders), context_.flags.OmittedFolders);
  Clear();
  return saved;
}

}  // namespace quillon::job
