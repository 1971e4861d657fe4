// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <optional>
#include <stop_token>

namespace quillon::host {

// Counts the disk calls of one piece of work, so that the thread that waits for the work can see that a call hangs.
// The work may make calls on several threads at once. SilentFor and Reset are called by the waiting thread alone.
class DiskCalls {
 public:
  // A sync writes everything that the system still holds in memory, which lasts long on a slow disk.
  enum class Kind { Call, Sync };

  // Counts one call from its construction to its destruction; does nothing for nullptr.
  class Scope {
   public:
    explicit Scope(DiskCalls* calls, Kind kind = Kind::Call) : calls_(calls), kind_(kind) {
      if (calls_) calls_->Begin(kind_);
    }
    ~Scope() {
      if (calls_) calls_->End(kind_);
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    DiskCalls* calls_;
    Kind kind_;
  };

  void Begin(Kind kind = Kind::Call) {
    if (kind == Kind::Sync) ++syncs_;
    ++begun_;
  }
  void End(Kind kind = Kind::Call) {
    ++ended_;
    if (kind == Kind::Sync) --syncs_;
  }

  // Returns the seconds since this was first asked while nothing but the present calls was in flight. Returns nothing
  // if no call is in flight, or if a call has begun or ended since it was last asked.
  std::optional<double> SilentFor(double now) {
    const unsigned ended = ended_;
    const unsigned begun = begun_;
    if (watched_ && begun != ended && begun == seenBegun_ && ended == seenEnded_) return now - since_;
    watched_ = true;
    seenBegun_ = begun;
    seenEnded_ = ended;
    since_ = now;
    return std::nullopt;
  }
  // Makes the next SilentFor begin anew, for example with another clock.
  void Reset() { watched_ = false; }
  // Returns the number of calls that have ended.
  unsigned Ended() const { return ended_; }
  // Returns true if a call is in flight.
  bool InFlight() const { return begun_ != ended_; }
  // Returns true if a sync is in flight.
  bool Syncing() const { return syncs_ > 0; }

 private:
  std::atomic<unsigned> begun_ = 0;
  std::atomic<unsigned> ended_ = 0;
  std::atomic<int> syncs_ = 0;  // in flight
  bool watched_ = false;
  unsigned seenBegun_ = 0;
  unsigned seenEnded_ = 0;
  double since_ = 0;
};

// How work saves a file if it runs on a thread that may be abandoned. The defaults are right for a plain call.
struct SaveControl {
  // Once a stop is requested, a file that has not got its name yet does not get it any more.
  std::stop_token stop = {};
  DiskCalls* calls = nullptr;  // counts the calls of the save, if set
};

}  // namespace quillon::host
