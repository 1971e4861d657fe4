// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "base/path_text.h"

namespace quillon::host::posix {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string HomeFolder() {
  if (const std::string home = Environment("HOME"); !home.empty()) return home;
  passwd account{};
  passwd* found = nullptr;
  char texts[4096];
  if (getpwuid_r(geteuid(), &account, texts, sizeof texts, &found) != 0 || !found || !found->pw_dir) return "";
  return found->pw_dir;
}

std::string BaseFolder(const char* variable, const char* underHome) {
  const std::string configured = Environment(variable);
  if (!configured.empty() && configured.front() == '/') return base::TrimTrailingSeparator(configured);
  const std::string home = HomeFolder();
  return home.empty() ? "" : base::JoinPath(home, underHome);
}

}  // namespace quillon::host::posix
