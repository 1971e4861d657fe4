// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/expected_file.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"

namespace quillon::tools {

ExpectedFile::ExpectedFile(Tools& tools, std::string path, const std::vector<std::string>& sources)
    : tools_(tools),
      path_(std::move(path)),
      before_(tools.World().files.Stat(path_)),
      isSource_(std::any_of(sources.begin(), sources.end(),
                            [&](const std::string& source) { return tools.World().files.SameFile(source, path_); })) {}

bool ExpectedFile::Made() const {
  const auto now = tools_.World().files.Stat(path_);
  if (!now || now->kind != host::FileKind::File) return false;
  return !before_ || before_->device != now->device || before_->inode != now->inode || before_->changed != now->changed;
}

host::Status ExpectedFile::Result(Waited waited, const std::string& missing, const Sound& sound) const {
  if (Made()) {
    if (!sound || sound(tools_.World().files, path_)) return host::Status::Ok();
    Drop();
    return {host::Problem::Damaged, missing + "：结果已损坏"};
  }
  if (waited == Waited::Stopped) return Interrupted();
  if (before_ && !isSource_) Drop();
  return {host::Problem::Other, missing};
}

void ExpectedFile::Drop() const {
  host::Files& files = tools_.World().files;
  const bool own = base::SplitPath(path_).folder == tools_.App();
  static_cast<void>(own ? files.RemoveOwn(path_) : files.Discard(path_));
}

}  // namespace quillon::tools
