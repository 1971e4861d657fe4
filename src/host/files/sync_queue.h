// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "host/files/disk.h"
#include "host/files/files.h"

namespace quillon::host {

// Syncs saved files and their folders on a background thread, so that a run does not wait for the disk.
//
// Add queues a file with its open handle. The thread collects a batch, syncs all files of it, then each folder once,
// unless the names were synced together with the files. At most 64 items are pending; Add blocks while the queue is
// full.
// Failures are kept until Flush returns them. The destructor returns only after everything is synced.
//
// A disk may stop answering in the middle of a sync, and no call can end such a sync. A Flush that is given up leaves
// the thread and its files to themselves and begins a new queue; the thread ends if its sync returns.
class SyncQueue {
 public:
  // What to do with a file that could not be synced. A new file is removed, because its content may be incomplete.
  enum class OnFailure { Remove, Keep };

  explicit SyncQueue(Disk& disk);
  ~SyncQueue();
  SyncQueue(const SyncQueue&) = delete;
  SyncQueue& operator=(const SyncQueue&) = delete;

  // Queues a file that was placed under path, and its folder. Takes ownership of the handle.
  void Add(const std::string& path, int handle, OnFailure onFailure);
  // Queues only the folder of path, for a file that is already synced or for a changed folder entry.
  void AddFolderOf(const std::string& path);
  // Waits until the queue is empty. Returns the failures since the last call.
  // If the wait lasts, goOn is called every few milliseconds with the paths of all pending items. If it returns false,
  // these are returned as failures.
  std::vector<LateFailure> Flush(const Files::GoOn& goOn = {});

 private:
  class Worker;
  std::shared_ptr<Worker> Current();

  Disk& disk_;
  std::mutex mutex_;
  std::shared_ptr<Worker> worker_;
};

}  // namespace quillon::host
