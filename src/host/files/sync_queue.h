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

// Files and folders that wait to be synced, and the thread that does it behind the run. Files are synced in batches,
// and each folder once per batch, unless its names went with the files. At most 64 files wait; then Add waits for the
// disk. Ends only when everything is synced.
class SyncQueue {
 public:
  // What becomes of a file whose syncing failed: one that was not there before is removed, since it may be torn.
  enum class OnFailure { Remove, Keep };

  explicit SyncQueue(Disk& disk);
  ~SyncQueue();
  SyncQueue(const SyncQueue&) = delete;
  SyncQueue& operator=(const SyncQueue&) = delete;

  // Takes over the handle of a file placed under path, and its folder with it.
  void Add(const std::string& path, int handle, OnFailure onFailure);
  // A file that stands synced under path, but whose folder does not, or a folder that was changed itself.
  void AddFolderOf(const std::string& path);
  // Waits until nothing waits, and hands out what failed since the last call.
  std::vector<LateFailure> Flush();

 private:
  struct Item {
    std::string path;
    int handle = -1;
    OnFailure onFailure = OnFailure::Keep;
    Status status;
    bool named = false;  // its name stands synced too
  };

  void Add(Item item);
  void Run();
  void SyncAll(std::vector<Item>& batch);
  void SyncFiles(std::vector<Item>& batch);
  void RemoveTorn(const Item& item);

  Disk& disk_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  std::vector<Item> waiting_;
  std::vector<LateFailure> failures_;
  std::size_t underWay_ = 0;
  int hurry_ = 0;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace quillon::host
