// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace quillon::job {

class Program;

// The normal cut: takes the rows of the list one by one and turns each into one output file.
class NormalCut {
 public:
  explicit NormalCut(Program& program);
  void Run();

 private:
  Program& program_;
};

}  // namespace quillon::job
