// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "regions/timed/folder_watch.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/path_text.h"
#include "base/utf8.h"

namespace quillon::regions {
namespace {

using job::FileResult;
using job::Result;
using job::Retry;

// Sources are discarded in groups of this size, with one flush for each group.
constexpr std::size_t kDiscardedTogether = 32;

struct TypeFilter {
  const char* item;
  std::array<const char*, 7> extensions;
};

constexpr std::array<TypeFilter, 6> kTypes{{
    {"jpg/bmp/png/gif/tif常用类型", {"jpg", "jpeg", "bmp", "png", "gif", "tif", "tiff"}},
    {"*.jpg/jpeg", {"jpg", "jpeg"}},
    {"*.gif", {"gif"}},
    {"*.bmp", {"bmp"}},
    {"*.png", {"png"}},
    {"*.tif/tiff", {"tif", "tiff"}},
}};

}  // namespace

std::vector<std::string> WatchTypes() {
  std::vector<std::string> items;
  items.reserve(kTypes.size());
  for (const TypeFilter& type : kTypes) items.emplace_back(type.item);
  return items;
}

bool PassesType(int type, const std::string& name) {
  if (type < 0 || type >= static_cast<int>(kTypes.size()) || name.starts_with('.')) return false;
  const std::string extension = base::ToLowerAscii(base::SplitPath(name).extension);
  const auto& extensions = kTypes[static_cast<std::size_t>(type)].extensions;
  return std::any_of(extensions.begin(), extensions.end(), [&](const char* one) { return one && extension == one; });
}

FolderWatch::FolderWatch(const job::RunContext& context, job::FileDriver& driver, const std::string& folder, int type,
                         WatchHooks hooks)
    : context_(context),
      driver_(driver),
      folder_(folder),
      hooks_(std::move(hooks)),
      poller_(context.host, folder, [type](const std::string& name) { return PassesType(type, name); }),
      ledger_(context, 0) {
  ledger_.NoteLateTo([this](const std::string& source, const std::string& why) { Note(source, why); });
  driver_.Begin(ledger_);
}

void FolderWatch::Round() {
  const std::vector<std::string> ready = poller_.Poll();
  ShowWhetherThere();
  for (std::size_t next = 0; next < ready.size() && hooks_.goesOn(); ++next) {
    Prefetch(ready, next);
    Handle(ready[next]);
    if (ledger_.Discards() >= kDiscardedTogether) Flush();
    context_.host.pump.Turn();
  }
  if (ready.empty()) return;
  driver_.EndPrefetch();
  Flush();
  ledger_.Forget();
}

void FolderWatch::ShowWhetherThere() {
  if (shownMissing_ == !poller_.FolderThere()) return;
  shownMissing_ = !poller_.FolderThere();
  hooks_.note(shownMissing_ ? "工作目录打不开，恢复之后自动继续：" + base::DisplayText(folder_) : std::string());
}

void FolderWatch::Prefetch(const std::vector<std::string>& ready, std::size_t next) {
  const std::size_t end = std::min(ready.size(), next + driver_.Lookahead());
  std::vector<std::string> paths;
  for (; next < end; ++next) paths.push_back(base::JoinPath(folder_, ready[next]));
  driver_.Prefetch(paths);
}

void FolderWatch::Handle(const std::string& name) {
  const job::RunFile file{0, base::JoinPath(folder_, name), ++number_, poller_.StampOf(name)};
  std::vector<FileResult> results;
  driver_.Cut(file, [&](FileResult result) { results.push_back(std::move(result)); });
  const auto again = [&](Retry retry) {
    return std::any_of(results.begin(), results.end(), [&](const FileResult& result) { return result.retry == retry; });
  };
  if (again(Retry::Soon)) return;
  if (again(Retry::OnceChanged)) return poller_.Refuse(name);
  poller_.MarkHandled(name);
  for (const FileResult& result : results) Report(result);
}

void FolderWatch::Report(const FileResult& result) {
  if (result.result != Result::Skipped && !result.why.empty()) Note(result.source, result.why);
  ledger_.Add(result);
  hooks_.counted(ledger_.Totals().written);
}

// Reports the count again if outputs were lost.
void FolderWatch::Flush() {
  const std::size_t written = ledger_.Totals().written;
  ledger_.Flush();
  if (ledger_.Totals().written != written) hooks_.counted(ledger_.Totals().written);
}

void FolderWatch::Note(const std::string& path, const std::string& why) {
  hooks_.note(base::DisplayText(path.substr(path.rfind('/') + 1)) + "：" + why);
}

}  // namespace quillon::regions
