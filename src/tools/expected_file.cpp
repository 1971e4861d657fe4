// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/expected_file.h"

#include <algorithm>
#include <utility>

#include "base/path_text.h"
#include "host/files/file_stamp.h"
#include "imaging/codecs/open_picture.h"

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
  return !before_ || !Unchanged(*before_, *now);
}

host::Status ExpectedFile::Result(WaitResult waited, const std::string& missing, const Validator& validate) const {
  if (Made()) {
    if (!validate || validate(tools_.World().files, path_)) return host::Status::Ok();
    Discard();
    return {host::Problem::Damaged, missing + "：结果已损坏"};
  }
  if (waited == WaitResult::Stopped) return Interrupted();
  if (before_ && !isSource_) Discard();
  return {host::Problem::Other, missing};
}

void ExpectedFile::Discard() const {
  host::Files& files = tools_.World().files;
  const bool own = base::SplitPath(path_).folder == tools_.App();
  static_cast<void>(own ? files.RemoveOwn(path_) : files.Discard(path_));
}

bool IsWholePdf(const host::Files& files, const std::string& path) {
  constexpr std::uint64_t kMaxChecked = 256U << 20;
  constexpr std::size_t kTail = 1024;
  const auto facts = files.Stat(path);
  if (facts && facts->size > kMaxChecked) return true;
  std::string bytes;
  if (!files.ReadFile(path, bytes) || !bytes.starts_with("%PDF-")) return false;
  return bytes.find("%%EOF", bytes.size() > kTail ? bytes.size() - kTail : 0) != std::string::npos;
}

bool IsPicture(const host::Files& files, const std::string& path) {
  const host::Status opened = imaging::Guarded({host::Problem::Damaged, ""}, [&] {
    imaging::OpenedPicture picture;
    return imaging::OpenPicture(files, path, {}, {}, picture);
  });
  // A picture that is too large for this process is still a valid one.
  return opened || opened.GetProblem() == host::Problem::TooLarge;
}

}  // namespace quillon::tools
