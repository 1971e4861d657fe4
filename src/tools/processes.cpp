// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/processes.h"

#include <algorithm>

#include "base/path_text.h"

namespace quillon::tools {
namespace {

bool IsNamed(const host::ProcessFacts& process, const std::string& name) {
  return base::ToLowerAscii(process.name) == base::ToLowerAscii(name);
}

bool BeginsWith(const host::ProcessFacts& process, const std::string& name) {
  return base::ToLowerAscii(process.name).starts_with(base::ToLowerAscii(name));
}

bool IsOurs(const host::Host& host, const host::ProcessFacts& process) {
  return process.own && base::TrimTrailingSeparator(process.folder) == host.programFolder;
}

}  // namespace

bool ProcessExists(host::Host& host, const std::string& name, Want want) {
  const auto running = host.processes.Running();
  const auto count =
      std::count_if(running.begin(), running.end(), [&](const auto& process) { return BeginsWith(process, name); });
  return count > (want == Want::Second ? 1 : 0);
}

bool IsProcessRunning(host::Host& host, const std::string& name) {
  const auto running = host.processes.Running();
  return std::any_of(running.begin(), running.end(), [&](const auto& process) { return IsNamed(process, name); });
}

int EndProcess(host::Host& host, const std::string& name) {
  const auto running = host.processes.Running();
  const auto found = std::find_if(running.begin(), running.end(), [&](const auto& process) {
    return BeginsWith(process, name) && IsOurs(host, process);
  });
  return found != running.end() && host.processes.End(found->id) ? 1 : 0;
}

void KillProcessByName(host::Host& host, const std::string& name) {
  for (const host::ProcessFacts& process : host.processes.Running()) {
    if (IsNamed(process, name) && IsOurs(host, process)) host.processes.End(process.id);
  }
}

}  // namespace quillon::tools
