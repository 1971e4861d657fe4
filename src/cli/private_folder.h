// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/files/disk.h"
#include "host/files/files.h"

namespace quillon::cli {

// A program folder for one run, below the folder for temporary files. It keeps the work files and helper programs of
// runs that go on at the same time apart.
//
// The folder is locked while it is in use and removed at the end. A folder that a killed run left has no lock any more;
// the next Make() removes it.
class PrivateFolder {
 public:
  PrivateFolder(host::Disk& disk, host::Files& files) : disk_(disk), files_(files) {}
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  // Creates the folder in base, locks it and fills it from the installed files. Files that are only read are linked,
  // not copied. Also sweeps the folders of killed runs out of base. Fails with the errno of the system call that
  // failed, and then Path() may be "".
  host::Status Make(const std::string& base, const std::string& executableFolder);
  // Returns "" before Make().
  const std::string& Path() const { return path_; }
  // Removes the folder with everything in it. Can be called more than once and from any thread; failures are ignored,
  // because the next run sweeps what is left.
  void Remove();

 private:
  // Removes the folders in base whose lock is free and whose owner is this user.
  void Sweep(const std::string& base);
  void SweepFolder(const std::string& folder, const host::DiskFacts& facts);
  // Locks the new folder at path and sets path_. On failure the folder is removed again. Returns 0 or a negative errno.
  int MakeLocked(const std::string& path);
  // Links the helper programs and colour profiles of an installed folder into this one.
  void LinkFrom(const std::string& folder);

  host::Disk& disk_;
  host::Files& files_;
  std::string path_;
  int lock_ = -1;
};

// Returns $TMPDIR if it is an absolute path, else /tmp. $XDG_RUNTIME_DIR is not used: it lies in memory, and a work
// file can be as large as an uncompressed picture.
std::string TemporaryBase();

}  // namespace quillon::cli
