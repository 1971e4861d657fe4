// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "job/list/file_list.h"
#include "job/list/run_context.h"

namespace quillon::job {

// Returns true if the dialog filter contains the extension of path with its point, ignoring case. Returns false for a
// name without an extension.
bool FitsFilter(const std::string& filter, const std::string& path);

enum class WalkEnd { Complete, Stopped };

// Which files a walk visits.
struct WalkRule {
  // Returns whether a file of that name in a walked folder is visited. May be called on any thread.
  using Accepts = std::function<bool(const std::string& name)>;

  Subfolders subfolders = Subfolders::No;
  Accepts accepts;
  Shard shard;            // files of other shards are skipped
  std::string leftOut;    // a folder below a root that is skipped with all it contains; "" for none
  bool byFolder = false;  // all files of a folder belong to one shard
  Links links = Links::Followed;

  // Returns whether a file belongs to the shard; see Shard.
  bool Owns(const std::string& relativePath) const;
  bool OwnsNamed(const std::string& path) const;
  // As OwnsNamed, for a real path. All names of a file that differ by links belong to one shard then. realBase: the
  // real path of the base of the shard.
  bool OwnsReal(const std::string& path, const std::string& realBase) const;
  // Returns whether the walk over root also visits target, the file that a link leads to, by its own name. Both are
  // real paths.
  bool Reaches(const std::string& target, const std::string& root) const;
};

// Walks files and folders; every list and every large-capacity run uses it.
//
// Order: the files of a folder, then its subfolders, each as the file system lists them; links to folders after all
// roots. A folder that links lead to twice is walked once. Drafts, and entries that are neither file nor folder, are
// skipped.
//
// The pump gets a turn at each step, and Flags::StopRequested ends the walk. A folder that cannot be read is skipped,
// and reported to the observer if it exists. An unresponsive disk is given up after a timeout; the files found before
// it are visited first. The next pictures are planned for measuring.
class FileWalk {
 public:
  // Called with each file. Returns false to end the walk.
  using Visit = std::function<bool(const std::string& path)>;

  FileWalk(const RunContext& context, WalkRule rule);
  ~FileWalk();
  FileWalk(const FileWalk&) = delete;
  FileWalk& operator=(const FileWalk&) = delete;

  // Walks the roots in order. A root that is no folder is visited as it is, even if it does not exist. Returns Stopped
  // if visit or StopRequested ended the walk.
  WalkEnd Run(const std::vector<std::string>& roots, const Visit& visit);

  // Returns how the present file was reached.
  Reached How() const;
  // Returns at most `count` files that follow the present one, as far as they are found.
  std::vector<std::string> Upcoming(std::size_t count) const;
  // Returns how many files were skipped because another shard owns them or an earlier worker has handled them.
  std::size_t LeftToOthers() const;
  // Returns false if a folder could not be read because its disk failed or is unresponsive; a denied folder does not
  // count.
  bool ReachedAll() const;

 private:
  class Finder;

  const RunContext& context_;
  WalkRule rule_;
  std::unique_ptr<Finder> finder_;
};

}  // namespace quillon::job
