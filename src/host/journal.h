// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

namespace quillon::host {

// If records of a journal could not be read, because its file is damaged or emptied, the journal has this key for the
// file "" when it is opened. It stays until it is set to "" or the journal is cleared.
inline constexpr const char* kTornKey = "torn";

// Persistent records about the files of one job, so that an interrupted job can be resumed after a restart. Each record
// is a value for a file and a key; all three are arbitrary bytes.
// Nothing here throws. A record that cannot be stored is lost, and Commit reports it.
class Journal {
 public:
  virtual ~Journal() = default;

  // Returns the value, nullopt if there is none.
  virtual std::optional<std::string> Get(const std::string& file, const std::string& key) = 0;
  // Stores a value. Get returns it immediately; it survives a crash only after the next Commit.
  virtual void Set(const std::string& file, const std::string& key, const std::string& value) = 0;
  // Returns the number of files that have a value under the key.
  virtual std::size_t Count(const std::string& key) = 0;
  // Calls visit for each of those files, in no particular order.
  virtual void Each(const std::string& key, const std::function<void(const std::string& file)>& visit) = 0;
  // Flushes: once it returns true, all values set since the last Commit survive a crash of the program and of the
  // machine. Returns false if one of them could not be stored.
  virtual bool Commit() = 0;
  // Deletes all records.
  virtual void Clear() = 0;
  // Deletes the journal from disk because its job is done. Call at most once; the object must not be used afterwards.
  virtual void Remove() = 0;
};

// One of count parts of a job; index counts from 0. Two jobs are the same if their texts are equal.
struct JobPart {
  std::string job;
  std::uint64_t index = 0;
  std::uint64_t count = 1;

  bool operator==(const JobPart&) const = default;
  bool operator<(const JobPart& other) const {
    return std::tie(job, index, count) < std::tie(other.job, other.index, other.count);
  }
};

// The journals of the current user, one for each part of a job.
class Journals {
 public:
  // Returns true for the parts that a call is about.
  using Wanted = std::function<bool(const JobPart& part)>;

  virtual ~Journals() = default;

  // Opens the journal of that part, or creates an empty one.
  // Returns nullptr if no journal can be kept, or while another process works on the same part.
  virtual std::unique_ptr<Journal> Open(const JobPart& part) = 0;
  // Returns one of the wanted parts of the job whose journal has records or is in use; nullopt if there is none.
  virtual std::optional<JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) = 0;
  // Removes the journals of all wanted parts of the job.
  // Returns false, and removes nothing, if another process works on one of them.
  virtual bool Forget(const std::string& job, const Wanted& wanted) = 0;
};

}  // namespace quillon::host
