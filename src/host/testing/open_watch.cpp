// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/open_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace quillon::host::testing {

OpenWatch::OpenWatch(const std::string& path) : queue_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  if (inotify_add_watch(queue_, path.c_str(), IN_OPEN) < 0) throw std::runtime_error("cannot watch " + path);
}

OpenWatch::~OpenWatch() { close(queue_); }

bool OpenWatch::Opened() {
  std::array<char, 4096> events{};
  bool opened = false;
  while (read(queue_, events.data(), events.size()) > 0) opened = true;
  return opened;
}

}  // namespace quillon::host::testing
