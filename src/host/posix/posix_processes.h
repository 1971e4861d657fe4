// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

namespace quillon::host::posix {

// The running programs as /proc tells them. A program is named after its file, without the mark of one that was
// deleted while it runs; a script after the script. Processes that have ended but were not yet collected, and threads
// of the kernel, are left out.
class PosixProcesses final : public Processes {
 public:
  PosixProcesses() = default;
  // Sees, and ends, only programs from that folder.
  explicit PosixProcesses(const std::string& onlyFolder);

  std::vector<ProcessFacts> Running() override;
  // Only a process of this user, and with onlyFolder only one from there.
  bool End(int id) override;

 private:
  bool Wanted(const ProcessFacts& facts) const;

  std::string onlyFolder_;
};

}  // namespace quillon::host::posix
