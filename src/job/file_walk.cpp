// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/file_walk.h"

#include <deque>
#include <memory>
#include <set>
#include <utility>

#include "base/path_text.h"
#include "job/program.h"

namespace quillon::job {
namespace {

// Enough to keep every core measuring while rows are added, and little enough that a folder which changes under the
// walk is seen late.
constexpr std::size_t kAnnounced = 64;
constexpr std::size_t kEntriesPerTurn = 256;

// Files in the order of the walk, found a little ahead of their visit.
class Finder {
 public:
  Finder(Program& program, Subfolders subfolders, const FileWalk::Accepts& accepts,
         const std::vector<std::string>& roots)
      : program_(program), subfolders_(subfolders), accepts_(accepts), todo_(roots.rbegin(), roots.rend()) {}

  // The next path, false at the end.
  bool Next(std::string& path) {
    const bool more = announced_ < found_.size() || !todo_.empty();
    if (announced_ <= kAnnounced / 2 && more) Announce();
    if (found_.empty()) return false;
    path = found_.front().Path();
    found_.pop_front();
    --announced_;
    return true;
  }

 private:
  struct Found {
    std::shared_ptr<const std::string> folder;  // none for a root
    std::string name;

    std::string Path() const { return folder ? base::JoinPath(*folder, name) : name; }
  };

  void Announce() {
    while (found_.size() < kAnnounced && !todo_.empty() && !program_.flags.StopRequested) Expand();
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < found_.size() && i < kAnnounced; ++i) paths.push_back(found_[i].Path());
    announced_ = paths.size();
    program_.images.PlanMeasures(std::move(paths));
  }

  void Expand() {
    const std::string path = std::move(todo_.back());
    todo_.pop_back();
    const auto facts = program_.host.files.Look(path);
    if (!facts || facts->kind != host::FileKind::Folder) {
      found_.push_back({nullptr, path});
    } else if (walked_.emplace(facts->device, facts->inode).second) {
      List(path);
    }
  }

  void List(const std::string& path) {
    const auto folder = std::make_shared<const std::string>(path);
    std::vector<std::string> below;
    std::size_t seen = 0;
    // Whatever was listed before an error counts; the rest of that folder is passed over.
    (void)program_.host.files.ListFolder(path, [&](const host::FolderEntry& entry) {
      if (entry.kind == host::FileKind::File && accepts_(entry.name)) found_.push_back({folder, entry.name});
      if (entry.kind == host::FileKind::Folder && subfolders_ == Subfolders::Yes) {
        below.push_back(base::JoinPath(path, entry.name));
      }
      if (++seen % kEntriesPerTurn == 0) program_.host.pump.Turn();
      return !program_.flags.StopRequested;
    });
    todo_.insert(todo_.end(), below.rbegin(), below.rend());
    program_.host.pump.Turn();
  }

  Program& program_;
  Subfolders subfolders_;
  const FileWalk::Accepts& accepts_;
  std::vector<std::string> todo_;  // roots and folders, the next one last
  std::deque<Found> found_;
  std::size_t announced_ = 0;  // how many of found_ stand in the plan
  std::set<std::pair<std::uint64_t, std::uint64_t>> walked_;
};

}  // namespace

FileWalk::FileWalk(Program& program, Subfolders subfolders, Accepts accepts)
    : program_(program), subfolders_(subfolders), accepts_(std::move(accepts)) {}

WalkEnd FileWalk::Run(const std::vector<std::string>& roots, const Visit& visit) {
  Finder finder(program_, subfolders_, accepts_, roots);
  WalkEnd end = WalkEnd::Complete;
  std::string path;
  while (end == WalkEnd::Complete && finder.Next(path)) {
    program_.host.pump.Turn();
    if (program_.flags.StopRequested || !visit(path)) end = WalkEnd::Stopped;
  }
  if (program_.flags.StopRequested) end = WalkEnd::Stopped;
  program_.images.PlanMeasures({});
  return end;
}

}  // namespace quillon::job
