// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "host/posix/posix_disk.h"
#include "imaging/prefetch/prefetcher.h"
#include "imaging/scratch_folder.h"

namespace quillon::imaging::testing {

// Lets work go on when the test says so.
class Gate {
 public:
  void Open() {
    {
      const std::lock_guard lock(mutex_);
      open_ = true;
    }
    changed_.notify_all();
  }
  // Ends early when stop is requested.
  void Pass(std::stop_token stop = {}) {
    std::unique_lock lock(mutex_);
    ++waiting_;
    changed_.notify_all();
    changed_.wait(lock, stop, [this] { return open_; });
    --waiting_;
  }
  void AwaitWaiting(int count) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return waiting_ >= count; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable_any changed_;
  bool open_ = false;
  int waiting_ = 0;
};

// What worker threads did, in order.
class Log {
 public:
  void Add(const std::string& what) {
    const std::lock_guard lock(mutex_);
    lines_.push_back(what);
  }
  std::vector<std::string> Lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
};

class PrefetcherTest : public ::testing::Test {
 protected:
  CropRequest Request(const std::string& name, int left = 0) {
    CropRequest request;
    request.source = folder_.Path(name);
    request.destination = folder_.Path("out-" + name);
    request.rect = {left, 0, 10, 10};
    return request;
  }

  // A source that exists, with a request for it.
  CropRequest Made(const std::string& name) {
    folder_.Put(name, "content of " + name);
    return Request(name);
  }

  void Start(Prefetcher::Worker crop, PrefetchLimits limits = {.threads = 2}, Prefetcher::Measurement measure = {}) {
    if (!measure) measure = [](const std::string&) {};
    prefetcher_ = std::make_unique<Prefetcher>(files_, std::move(crop), std::move(measure), limits);
  }

  static FileWork Work(const CropRequest& request) { return {{request}}; }
  void Plan(const std::vector<CropRequest>& requests) {
    std::vector<FileWork> works;
    for (const CropRequest& request : requests) works.push_back(Work(request));
    prefetcher_->PlanWork(works);
  }
  Status Pop(const CropRequest& request, const std::function<void()>& pump, std::optional<std::string>& bytes) {
    bytes.reset();
    std::optional<std::vector<std::string>> outputs;
    Status popped = prefetcher_->Pop(Work(request), pump, outputs);
    if (outputs) bytes = outputs->front();
    return popped;
  }

  // Returns the result of Pop; expects that the wait is not given up.
  std::optional<std::string> PopBytes(const CropRequest& request, const std::function<void()>& pump) {
    std::optional<std::string> bytes;
    const Status popped = Pop(request, pump, bytes);
    EXPECT_TRUE(popped) << popped.Why();
    return bytes;
  }

  // Returns a worker whose result is the name of the source.
  Prefetcher::Worker Naming() {
    return [this](const Prefetcher::Job& job) {
      log_.Add(job.work.Source());
      return job.output().Write(job.work.Source().data(), job.work.Source().size());
    };
  }

  ScratchFolder folder_;
  host::posix::PosixDisk disk_;
  host::Files files_{disk_};
  Log log_;
  Gate gate_;
  std::unique_ptr<Prefetcher> prefetcher_;  // last: its threads use all of the above
};

}  // namespace quillon::imaging::testing
