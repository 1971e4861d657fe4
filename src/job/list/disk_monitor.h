// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/status.h"

namespace quillon::host {
class BackgroundCall;
}

namespace quillon::job {

class Program;

// Whether disks still answer. They are asked behind the program, so that it waits for none that does not: the pump has
// its turns, a stop request is obeyed at once, and after half a minute of silence the disk is given up. As long as it
// stays silent, everything on it is refused at once.
//
// A disk of this machine is asked at most every half second for each folder, one on the network before every file.
class DiskMonitor {
 public:
  explicit DiskMonitor(Program& program);
  ~DiskMonitor();
  DiskMonitor(const DiskMonitor&) = delete;
  DiskMonitor& operator=(const DiskMonitor&) = delete;

  // Looks at the file and at the folders above it, and begins to read it. Fine when the disk has answered, whatever;
  // Stopped, or Other for a silent disk, with a sentence.
  host::Status AskFile(const std::string& path);
  // The same of a folder.
  host::Status AskFolder(const std::string& folder);
  // The same of a source and, where results go elsewhere, of the output folder.
  host::Status AskForCut(const std::string& source);

  // Whether the disk of the file at path is known to be silent; asks nothing.
  bool Silent(const std::string& path);

 private:
  struct Asking;
  struct Silence {
    std::string place;  // nothing below it answers
    std::unique_ptr<host::BackgroundCall> errand;
  };
  struct Answered {
    double when = 0;
    bool here = true;  // see host::Files::IsLocalDisk
  };

  host::Status Ask(const std::string& folder, const std::string& path, const char* sentence);
  bool Fresh(const std::string& folder) const;
  bool SilentBelow(const std::string& folder);
  void Note(const std::string& folder, bool here);

  Program& program_;
  std::vector<Silence> silent_;
  std::unordered_map<std::string, Answered> answered_;  // by folder
};

}  // namespace quillon::job
