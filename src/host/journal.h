// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

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

// The journals of a user.
class Journals {
 public:
  virtual ~Journals() = default;

  // The journal of the job that the text describes, empty for one that has none yet. nullptr where none can be kept,
  // and while another process works on the same job.
  virtual std::unique_ptr<Journal> Open(const std::string& job) = 0;
};

}  // namespace quillon::host
