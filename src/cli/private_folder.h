// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"
#include "host/files/files.h"

namespace quillon::cli {

// A program folder for one run, below the folder for temporary files: work files and helper programs of runs that go
// side by side never meet. It is locked while it is used and removed at the end; one that a killed run left behind is
// removed by the next that is made.
class PrivateFolder {
 public:
  PrivateFolder(host::Disk& disk, host::Files& files) : disk_(disk), files_(files) {}
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  // Makes it in base and lays it out from the installed files: what is only read is linked, not copied.
  host::Status Make(const std::string& base, const std::string& executableFolder);
  // "" before Make.
  const std::string& Path() const { return path_; }
  // Removes the folder; may be called from any thread, more than once.
  void Remove();

 private:
  void Sweep(const std::string& base);
  host::Status MakeLocked(const std::string& path);
  void LinkFrom(const std::string& folder);

  host::Disk& disk_;
  host::Files& files_;
  std::string path_;
  int lock_ = -1;
};

// $TMPDIR where it is an absolute path, else /tmp. Work files can be as large as a picture without compression, so the
// run-time folder, which lies in memory, is not for them.
std::string TemporaryBase();

}  // namespace quillon::cli
