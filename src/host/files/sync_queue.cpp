// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/sync_queue.h"

#include <cerrno>
#include <chrono>
#include <map>
#include <system_error>

#include "host/files/entry_path.h"
#include "host/files/file_stamp.h"

namespace quillon::host {
namespace {

constexpr std::size_t kMaxPending = 64;
// A batch starts when the queue is half full, or after a short delay if it does not fill up.
constexpr std::size_t kBatch = kMaxPending / 2;
constexpr auto kBatchDelay = std::chrono::milliseconds(100);

}  // namespace

SyncQueue::SyncQueue(Disk& disk) : disk_(disk) {}

SyncQueue::~SyncQueue() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void SyncQueue::Add(const std::string& path, int handle, OnFailure onFailure) {
  Add({.path = path, .handle = handle, .onFailure = onFailure, .status = {}});
}

void SyncQueue::AddFolderOf(const std::string& path) { Add({.path = path, .status = {}}); }

void SyncQueue::Add(Item item) {
  std::unique_lock lock(mutex_);
  done_.wait(lock, [&] { return waiting_.size() + inProgress_ < kMaxPending; });
  waiting_.push_back(std::move(item));
  if (!thread_.joinable()) {
    try {
      thread_ = std::thread([this] { Run(); });
    } catch (const std::system_error&) {
      // If no thread can be created, the caller syncs by itself.
      std::vector<Item> batch = std::move(waiting_);
      waiting_.clear();
      lock.unlock();
      SyncAll(batch);
      return;
    }
  }
  if (waiting_.size() == 1 || waiting_.size() >= kBatch) wake_.notify_one();
}

std::vector<LateFailure> SyncQueue::Flush() {
  std::unique_lock lock(mutex_);
  ++flushing_;
  wake_.notify_one();
  done_.wait(lock, [&] { return waiting_.empty() && inProgress_ == 0; });
  --flushing_;
  return std::exchange(failures_, {});
}

void SyncQueue::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [&] { return ending_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    wake_.wait_for(lock, kBatchDelay, [&] { return ending_ || flushing_ > 0 || waiting_.size() >= kBatch; });
    std::vector<Item> batch = std::exchange(waiting_, {});
    inProgress_ = batch.size();
    lock.unlock();
    SyncAll(batch);
    lock.lock();
    inProgress_ = 0;
    done_.notify_all();
  }
}

void SyncQueue::SyncAll(std::vector<Item>& batch) {
  SyncFiles(batch);
  std::map<std::string, int> folders;
  for (Item& item : batch) {
    if (!item.status || item.nameSynced) continue;
    const auto [folder, fresh] = folders.try_emplace(SplitEntry(item.path).folder, 0);
    if (fresh) folder->second = disk_.SyncFolder(folder->first);
    // If the folder is gone, there is no name left to sync.
    if (folder->second < 0 && folder->second != -ENOENT) item.status = Status::FromErrno(-folder->second);
  }
  for (const Item& item : batch) {
    if (!item.status && item.onFailure == OnFailure::Remove) RemoveIncomplete(item);
    if (item.handle >= 0) disk_.Close(item.handle);
    if (item.status) continue;
    const std::lock_guard lock(mutex_);
    failures_.push_back({item.path, item.status});
  }
}

void SyncQueue::SyncFiles(std::vector<Item>& batch) {
  std::vector<int> handles;
  std::vector<Item*> items;
  for (Item& item : batch) {
    if (item.handle < 0) continue;
    // A file without a name was replaced or removed meanwhile and need not be synced.
    DiskFacts facts;
    if (disk_.StatOpen(item.handle, facts) == 0 && facts.links == 0) continue;
    handles.push_back(item.handle);
    items.push_back(&item);
  }
  // All writes are started before the first one is waited for, so that the disk can order them.
  for (const int handle : handles) disk_.StartSync(handle);
  const std::vector<int> results = disk_.SyncAll(handles);
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (results[i] < 0) items[i]->status = Status::FromErrno(-results[i]);
    items[i]->nameSynced = results[i] == Disk::kSyncedWithName;
  }
}

void SyncQueue::RemoveIncomplete(const Item& item) {
  DiskFacts written;
  DiskFacts standing;
  if (disk_.StatOpen(item.handle, written) < 0 || disk_.StatLink(item.path, standing) < 0) return;
  if (SameFile(written, standing)) disk_.Remove(item.path);
}

}  // namespace quillon::host
