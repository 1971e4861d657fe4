// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <string_view>

namespace quillon::cli {

// What a caller reads: a file, a pipe or a terminal. Texts are written whole and at once. A write that a signal
// interrupts, or that a full pipe refuses for the moment, is repeated. Any other failure is reported once on err, and
// nothing is written any more.
class OutStream {
 public:
  // Both streams outlive the object. out has no buffer, so that a failure is seen with the text that is lost.
  OutStream(std::FILE* out, std::FILE* err) : out_(out), err_(err) {}

  void Write(std::string_view text);
  // True if a text was lost although somebody may want it: not after the reader has closed its pipe.
  bool Lost() const { return lost_; }

 private:
  void Fail(int error);

  std::FILE* out_;
  std::FILE* err_;
  bool failed_ = false;
  bool lost_ = false;
};

}  // namespace quillon::cli
