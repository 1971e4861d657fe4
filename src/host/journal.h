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

// What is remembered of the files of one job beyond the end of the program, so that the job can be taken up again: a
// value for each file and key, all bytes. Nothing here fails or throws: what cannot be kept is not remembered.
class Journal {
 public:
  virtual ~Journal() = default;

  virtual std::optional<std::string> Get(const std::string& file, const std::string& key) = 0;
  // Seen by Get at once, kept from the next Commit on.
  virtual void Set(const std::string& file, const std::string& key, const std::string& value) = 0;
  // How many files have a value under the key.
  virtual std::size_t Count(const std::string& key) = 0;
  // Hands out those files, in no order that anyone may rely on.
  virtual void Each(const std::string& key, const std::function<void(const std::string& file)>& take) = 0;
  // From here on what was set outlives the program and the machine.
  virtual void Commit() = 0;
  // Forgets everything.
  virtual void Clear() = 0;
  // The job is done: nothing stays on disk. The last call.
  virtual void Remove() = 0;
};

// One of `count` parts of a job, index from 0. Jobs are the same when their texts are.
struct JobPart {
  std::string job;
  std::uint64_t index = 0;
  std::uint64_t count = 1;

  bool operator==(const JobPart&) const = default;
  bool operator<(const JobPart& other) const {
    return std::tie(job, index, count) < std::tie(other.job, other.index, other.count);
  }
};

// The journals of a user, one for each part of a job.
class Journals {
 public:
  using Wanted = std::function<bool(const JobPart& part)>;

  virtual ~Journals() = default;

  // The journal of that part, empty for one that has none yet. nullptr where none can be kept, and while another
  // process works on the same part.
  virtual std::unique_ptr<Journal> Open(const JobPart& part) = 0;
  // One of the wanted parts of the job whose journal holds anything or is in use; nothing where there is none.
  virtual std::optional<JobPart> FindUnfinished(const std::string& job, const Wanted& wanted) = 0;
  // Removes the journals of all wanted parts of the job. False, and nothing is removed, while another process works on
  // one of them.
  virtual bool Forget(const std::string& job, const Wanted& wanted) = 0;
};

}  // namespace quillon::host
