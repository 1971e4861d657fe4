// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillon::job {

class Program;

enum class Subfolders { No, Yes };
enum class WalkEnd { Complete, Stopped };

// The one walk over files and folders that all drivers share: of each folder first its files, then its subfolders, in
// the order of the file system. The pump gets a turn at each step; Flags::StopRequested ends the walk. What cannot be
// listed is passed over, as are drafts and what is neither file nor folder; a folder reached twice over links is walked
// once. The pictures that come next are announced for measuring.
class FileWalk {
 public:
  // Whether a file that lies in a walked folder is handed out; told its name.
  using Accepts = std::function<bool(const std::string& name)>;
  // Takes the next file; false ends the walk.
  using Visit = std::function<bool(const std::string& path)>;

  FileWalk(Program& program, Subfolders subfolders, Accepts accepts);

  // Walks the roots in order. A root that is no folder is handed out as it is, whether it exists or not. Stopped when
  // visit or StopRequested ended it.
  WalkEnd Run(const std::vector<std::string>& roots, const Visit& visit);

 private:
  Program& program_;
  Subfolders subfolders_;
  Accepts accepts_;
};

}  // namespace quillon::job
