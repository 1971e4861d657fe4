// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <utility>

namespace quillon::host {

// Kinds of failure that callers tell apart. DiskFull is the one that the user is asked about.
enum class Problem { None, DiskFull, Denied, Missing, Damaged, TooLarge, Unsupported, Stopped, Other };

// How an operation went: fine, or a kind of problem with one clear Chinese sentence for the user.
class [[nodiscard]] Status {
 public:
  Status() = default;
  Status(Problem problem, std::string why) : problem_(problem), why_(std::move(why)) {}
  static Status Ok() { return {}; }
  // From a system error number; ENOSPC, EDQUOT and EFBIG are DiskFull.
  static Status FromErrno(int error);

  explicit operator bool() const { return problem_ == Problem::None; }
  Problem GetProblem() const { return problem_; }
  bool DiskFull() const { return problem_ == Problem::DiskFull; }
  const std::string& Why() const { return why_; }

 private:
  Problem problem_ = Problem::None;
  std::string why_;
};

}  // namespace quillon::host
