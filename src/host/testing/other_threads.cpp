// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/other_threads.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace quillon::host::testing {
namespace {

// The letter behind the name, which is in parentheses; 0 for a thread that has ended meanwhile.
char StateOf(const std::filesystem::path& task) {
  std::ifstream file(task / "stat");
  std::string stat;
  std::getline(file, stat);
  const std::size_t name = stat.rfind(") ");
  return name == std::string::npos ? '\0' : stat[name + 2];
}

}  // namespace

bool OtherThreadsWait() {
  const std::string self = std::to_string(gettid());
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    if (task.path().filename() == self) continue;
    const char state = StateOf(task.path());
    if (state == 'R' || state == 'D') return false;
  }
  return true;
}

}  // namespace quillon::host::testing
