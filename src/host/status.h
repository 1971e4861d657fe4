// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

namespace quillon::host {

// Kinds of failure that callers distinguish. DiskFull is the only one that the user is asked about.
enum class Problem { None, DiskFull, Denied, Missing, Damaged, TooLarge, Unsupported, Stopped, Other };

// The result of an operation: success, or a kind of problem with one Chinese sentence that explains it to the user.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(Problem problem, std::string why) : problem_(problem), why_(std::move(why)) {}
  static Status Ok() { return {}; }
  // Converts an errno value; 0 is success. ENOSPC, EDQUOT and EFBIG become DiskFull.
  static Status FromErrno(int error);

  // True on success.
  explicit operator bool() const { return problem_ == Problem::None; }
  Problem GetProblem() const { return problem_; }
  bool DiskFull() const { return problem_ == Problem::DiskFull; }
  // The sentence for the user, "" on success.
  const std::string& Why() const { return why_; }

 private:
  Problem problem_ = Problem::None;
  std::string why_;
};

}  // namespace quillon::host
