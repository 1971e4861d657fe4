// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/files/sync_queue.h"

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <system_error>
#include <thread>
#include <utility>

#include "host/files/file_stamp.h"
#include "host/files/paths.h"

namespace quillon::host {
namespace {

constexpr std::size_t kMaxPending = 64;
// A batch starts when the queue is half full, or after a short delay if it does not fill up.
constexpr std::size_t kBatch = kMaxPending / 2;
constexpr auto kBatchDelay = std::chrono::milliseconds(100);

// Most flushes end before the first of these.
constexpr auto kFirstLook = std::chrono::milliseconds(250);
constexpr auto kNextLook = std::chrono::milliseconds(10);

constexpr const char* kGivenUp = "磁盘没有响应";

struct Item {
  std::string path;
  int handle = -1;
  SyncQueue::OnFailure onFailure = SyncQueue::OnFailure::Keep;
  Status status;
  bool nameSynced = false;  // the folder entry is on the disk too
};

void SyncFiles(Disk& disk, std::vector<Item>& batch) {
  std::vector<int> handles;
  std::vector<Item*> items;
  for (Item& item : batch) {
    if (item.handle < 0) continue;
    // A file without a name was replaced or removed meanwhile and need not be synced.
    DiskFacts facts;
    if (disk.StatOpen(item.handle, facts) == 0 && facts.links == 0) continue;
    handles.push_back(item.handle);
    items.push_back(&item);
  }
  // All writes are started before the first one is waited for, so that the disk can order them.
  for (const int handle : handles) disk.StartSync(handle);
  const std::vector<int> results = disk.SyncAll(handles);
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (results[i] < 0) items[i]->status = Status::FromErrno(-results[i]);
    items[i]->nameSynced = results[i] == Disk::kSyncedWithName;
  }
}

void SyncFolders(Disk& disk, std::vector<Item>& batch) {
  std::map<std::string, int> folders;
  for (Item& item : batch) {
    if (!item.status || item.nameSynced) continue;
    const auto [folder, fresh] = folders.try_emplace(SplitEntry(item.path).folder, 0);
    if (fresh) folder->second = disk.SyncFolder(folder->first);
    // If the folder is gone, there is no name left to sync.
    if (folder->second < 0 && folder->second != -ENOENT) item.status = Status::FromErrno(-folder->second);
  }
}

void RemoveIncomplete(Disk& disk, const Item& item) {
  DiskFacts written;
  DiskFacts standing;
  if (disk.StatOpen(item.handle, written) < 0 || disk.StatLink(item.path, standing) < 0) return;
  if (SameFile(written, standing)) disk.Remove(item.path);
}

// Returns the failures.
std::vector<LateFailure> SyncBatch(Disk& disk, std::vector<Item>& batch) {
  SyncFiles(disk, batch);
  SyncFolders(disk, batch);
  std::vector<LateFailure> failures;
  for (const Item& item : batch) {
    if (!item.status && item.onFailure == SyncQueue::OnFailure::Remove) RemoveIncomplete(disk, item);
    if (item.handle >= 0) disk.Close(item.handle);
    if (!item.status) failures.push_back({item.path, item.status});
  }
  return failures;
}

}  // namespace

// The thread with its queue. The thread owns it as well: after a flush that was given up nobody else does.
class SyncQueue::Worker : public std::enable_shared_from_this<Worker> {
 public:
  explicit Worker(Disk& disk) : disk_(disk) {}

  // Waits for everything and ends the thread.
  void End() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
  }

  void Add(Item item) {
    std::unique_lock lock(mutex_);
    done_.wait(lock, [&] { return waiting_.size() + busy_.size() < kMaxPending; });
    waiting_.push_back(std::move(item));
    if (!thread_.joinable() && !abandoned_) {
      try {
        thread_ = std::thread([self = shared_from_this()] { self->Run(); });
      } catch (const std::system_error&) {
        // If no thread can be created, the caller syncs by itself.
        std::vector<Item> batch = std::exchange(waiting_, {});
        lock.unlock();
        Keep(SyncBatch(disk_, batch));
        return;
      }
    }
    if (waiting_.size() == 1 || waiting_.size() >= kBatch) wake_.notify_one();
  }

  // Returns false if the wait was given up; failures are then those of all that is pending, too.
  bool Flush(const Files::GoOn& goOn, std::vector<LateFailure>& failures) {
    std::unique_lock lock(mutex_);
    ++flushing_;
    wake_.notify_one();
    const bool ended = AwaitEmpty(lock, goOn);
    --flushing_;
    failures = std::exchange(failures_, {});
    if (ended) return true;
    for (const std::string& path : Pending()) failures.push_back({path, {Problem::Other, kGivenUp}});
    abandoned_ = true;
    ending_ = true;
    thread_.detach();
    return false;
  }

 private:
  using Lock = std::unique_lock<std::mutex>;

  // Called with the lock held.
  std::vector<std::string> Pending() const {
    std::vector<std::string> paths = busy_;
    for (const Item& item : waiting_) paths.push_back(item.path);
    return paths;
  }

  bool AwaitEmpty(Lock& lock, const Files::GoOn& goOn) {
    const auto empty = [&] { return waiting_.empty() && busy_.empty(); };
    if (!goOn) {
      done_.wait(lock, empty);
      return true;
    }
    for (auto look = kFirstLook; !done_.wait_for(lock, look, empty); look = kNextLook) {
      const std::vector<std::string> pending = Pending();
      lock.unlock();
      const bool waits = goOn(pending);
      lock.lock();
      if (!waits && !empty()) return false;
    }
    return true;
  }

  void Run() {
    Lock lock(mutex_);
    for (;;) {
      wake_.wait(lock, [&] { return ending_ || !waiting_.empty(); });
      if (waiting_.empty()) return;
      wake_.wait_for(lock, kBatchDelay, [&] { return ending_ || flushing_ > 0 || waiting_.size() >= kBatch; });
      std::vector<Item> batch = std::exchange(waiting_, {});
      for (const Item& item : batch) busy_.push_back(item.path);
      lock.unlock();
      std::vector<LateFailure> failures = SyncBatch(disk_, batch);
      lock.lock();
      failures_.insert(failures_.end(), failures.begin(), failures.end());
      busy_.clear();
      done_.notify_all();
    }
  }

  void Keep(const std::vector<LateFailure>& failures) {
    const std::lock_guard lock(mutex_);
    failures_.insert(failures_.end(), failures.begin(), failures.end());
  }

  Disk& disk_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable done_;
  std::vector<Item> waiting_;
  std::vector<std::string> busy_;  // paths of the current batch
  std::vector<LateFailure> failures_;
  int flushing_ = 0;  // callers inside Flush, which skip the batch delay
  bool ending_ = false;
  bool abandoned_ = false;
  std::thread thread_;
};

SyncQueue::SyncQueue(Disk& disk) : disk_(disk), worker_(std::make_shared<Worker>(disk)) {}

SyncQueue::~SyncQueue() { worker_->End(); }

std::shared_ptr<SyncQueue::Worker> SyncQueue::Current() {
  const std::lock_guard lock(mutex_);
  return worker_;
}

void SyncQueue::Add(const std::string& path, int handle, OnFailure onFailure) {
  Current()->Add({.path = path, .handle = handle, .onFailure = onFailure, .status = {}});
}

void SyncQueue::AddFolderOf(const std::string& path) { Current()->Add({.path = path, .status = {}}); }

std::vector<LateFailure> SyncQueue::Flush(const Files::GoOn& goOn) {
  std::vector<LateFailure> failures;
  const std::shared_ptr<Worker> flushed = Current();
  if (!flushed->Flush(goOn, failures)) {
    const std::lock_guard lock(mutex_);
    if (worker_ == flushed) worker_ = std::make_shared<Worker>(disk_);
  }
  return failures;
}

}  // namespace quillon::host
