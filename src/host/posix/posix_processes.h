// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"

namespace quillon::host::posix {

// The running processes, read from /proc.
// A process is named after its program file, even if that was deleted meanwhile; a script is named after the script
// file.
// Zombies and kernel threads are omitted.
class PosixProcesses final : public Processes {
 public:
  PosixProcesses() = default;
  // Lists and kills only programs from that folder.
  explicit PosixProcesses(const std::string& onlyFolder);

  std::vector<ProcessFacts> Running() override;
  // Kills only processes of the current user and, if onlyFolder is set, only those from that folder.
  bool End(int id) override;

 private:
  bool Wanted(const ProcessFacts& facts) const;

  std::string onlyFolder_;
};

}  // namespace quillon::host::posix
