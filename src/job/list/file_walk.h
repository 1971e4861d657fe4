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

// True if the extension of path, with its point, stands in the dialog filter; upper and lower case do not matter. False
// for a name without an extension.
bool FitsFilter(const std::string& filter, const std::string& path);

enum class WalkEnd { Complete, Stopped };

// Which files a walk hands out.
struct WalkRule {
  // Whether a file of that name in a walked folder is handed out. May be called on any thread.
  using Accepts = std::function<bool(const std::string& name)>;

  Subfolders subfolders = Subfolders::No;
  Accepts accepts;
  Shard shard;            // files of other shards are passed over
  std::string leftOut;    // a folder below a root that is passed over with all it holds, "" for none
  bool byFolder = false;  // all files of a folder fall to one share
  Links links = Links::Followed;

  // Whether a file belongs to the shard; see Shard.
  bool Owns(const std::string& relativePath) const;
  bool OwnsNamed(const std::string& path) const;
  // Whether the walk over a root hands out the file that a link leads to under its own name. Both are real paths.
  bool Reaches(const std::string& target, const std::string& root) const;
};

// The one walk over files and folders that all drivers share: of each folder first its files, then its subfolders, in
// the order of the file system; links to folders come last, after all roots. The pump gets a turn at each step;
// Flags::StopRequested ends the walk. What cannot be listed is passed over, as are drafts and what is neither file nor
// folder. A folder that links lead to twice is walked once. An unresponsive disk is given up after a while; what was
// found before it is visited first. Folders that exist and could not be listed are reported to the observer. The
// pictures that come next are announced for measuring.
class FileWalk {
 public:
  // Called with each file; false ends the walk.
  using Visit = std::function<bool(const std::string& path)>;

  FileWalk(const RunContext& context, WalkRule rule);
  ~FileWalk();
  FileWalk(const FileWalk&) = delete;
  FileWalk& operator=(const FileWalk&) = delete;

  // Walks the roots in order. A root that is no folder is handed out as it is, whether it exists or not. Returns
  // Stopped if visit or StopRequested ended it.
  WalkEnd Run(const std::vector<std::string>& roots, const Visit& visit);

  // How the file that is visited was reached.
  Reached How() const;
  // While a file is visited: at most `count` of the files that follow it, as far as they are found.
  std::vector<std::string> Upcoming(std::size_t count) const;
  // How many files were passed over because of the shard or because they were handled already.
  std::size_t LeftToOthers() const;
  // False if a folder could not be read now but may be another time: its disk failed or did not answer. A folder that
  // the user may not read does not count.
  bool ReachedAll() const;

 private:
  class Finder;

  const RunContext& context_;
  WalkRule rule_;
  std::unique_ptr<Finder> finder_;
};

}  // namespace quillon::job
