// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_count.h"

#include <atomic>
#include <set>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "host/files/file_stamp.h"

namespace quillon::job {
namespace {

using Seen = std::set<host::FileId>;

// Walks by the same rule as FileWalk, in a loop of its own: nothing is measured, reported or waited for here.
std::size_t Count(const host::Files& files, const std::string& root, const WalkRule& rule,
                  const DoneElsewhere& doneElsewhere, const std::atomic<bool>& stop) {
  std::size_t count = 0;
  Seen seen;
  if (const auto out = files.Stat(rule.leftOut)) seen.insert(IdOf(*out));
  const std::string realRoot = files.RealPath(root).value_or(root);
  const std::string realBase = rule.shard.Whole() ? "" : files.RealPath(rule.shard.base).value_or("");
  std::set<std::string> targets;
  const auto counts = [&](const host::FolderEntry& entry, const std::string& below, const std::string& path) {
    const std::string target =
        entry.link && rule.links == Links::Refused ? files.RealPath(path).value_or("") : std::string();
    if (!(target.empty() ? rule.Owns(below) : rule.OwnsReal(target, realBase))) return false;
    return target.empty() || (!rule.Reaches(target, realRoot) && targets.insert(target).second);
  };
  std::vector<std::string> todo{""};  // relative to the root
  while (!todo.empty() && !stop) {
    const std::string folder = std::move(todo.back());
    todo.pop_back();
    const std::string path = folder.empty() ? root : base::JoinPath(root, folder);
    const auto facts = files.Stat(path);
    if (!facts || !seen.insert(IdOf(*facts)).second) continue;
    (void)files.ListFolder(path, [&](const host::FolderEntry& entry) {
      if (stop) return false;
      const std::string below = folder.empty() ? entry.name : base::JoinPath(folder, entry.name);
      const bool fits = entry.kind == host::FileKind::File && rule.accepts(entry.name);
      const std::string full = base::JoinPath(path, entry.name);
      if (fits && !doneElsewhere.contains(full) && counts(entry, below, full)) ++count;
      const bool entered = !entry.link || rule.links == Links::Followed;
      if (entry.kind == host::FileKind::Folder && rule.subfolders == Subfolders::Yes && entered) todo.push_back(below);
      return true;
    });
  }
  return count;
}

}  // namespace

FileCount::FileCount(const host::Files& files, std::string root, WalkRule rule, const DoneElsewhere& doneElsewhere)
    : count_(std::make_shared<std::size_t>(0)),
      call_([count = count_, &files, root = std::move(root), rule = std::move(rule), &doneElsewhere](
                const std::atomic<bool>& stop) { *count = Count(files, root, rule, doneElsewhere, stop); }) {}

std::optional<std::size_t> FileCount::Result() const { return call_.Done() ? std::optional(*count_) : std::nullopt; }

}  // namespace quillon::job
