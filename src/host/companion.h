// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/status.h"

namespace quillon::host {

// A helper process that answers questions about files, one after another. Each file is opened here and passed on as a
// handle, so that the process needs no access to files. One thread at a time may use it.
class Companion {
 public:
  // Called every few milliseconds of a wait; false ends the wait.
  using KeepWaiting = std::function<bool()>;

  virtual ~Companion() = default;

  // Passes the file on and stores the answer, at most kAnswerMax bytes. keepWaiting may be empty.
  // Fails as the system does if the file cannot be opened.
  // Stopped: keepWaiting returned false. Other: the process has ended, or has not answered within that many seconds.
  // After these two failures the process is killed and every further call fails with Other.
  virtual Status Ask(const std::string& path, double seconds, const KeepWaiting& keepWaiting, std::string& answer) = 0;
  // Returns whether the process may still answer.
  virtual bool Alive() const = 0;

  static constexpr std::size_t kAnswerMax = 4096;
};

}  // namespace quillon::host
