// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
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
  std::vector<LateFailure> Flush();

 private:
  struct Item {
    std::string path;
    int handle = -1;
    OnFailure onFailure = OnFailure::Keep;
    Status status;
    bool nameSynced = false;  // the folder entry is on the disk too
  };

  void Add(Item item);
  void Run();
  void SyncAll(std::vector<Item>& batch);
  void SyncFiles(std::vector<Item>& batch);
  void RemoveIncomplete(const Item& item);

  Disk& disk_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  std::vector<Item> waiting_;
  std::vector<LateFailure> failures_;
  std::size_t inProgress_ = 0;  // items of the current batch
  int flushing_ = 0;            // callers inside Flush, which skip the batch delay
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace quillon::host
