// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/resource_limits.h"

#include <seccomp.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace quillon::helpers {
namespace {

// The sanitizers reserve more address space than any limit allows.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kLimitsMemory = false;
#else
constexpr bool kLimitsMemory = true;
#endif

// Lowers a limit; one that is lower already stays.
void Limit(__rlimit_resource what, rlim_t highest) {
  rlimit limit{};
  if (getrlimit(what, &limit) < 0) return;
  limit.rlim_cur = std::min(limit.rlim_cur, highest);
  limit.rlim_max = std::min(limit.rlim_max, highest);
  (void)setrlimit(what, &limit);
}

// Only sockets inside this machine can be created.
void BlockNetwork() {
  scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ALLOW);
  if (!filter) return;
  const std::uint32_t denied = SCMP_ACT_ERRNO(EACCES);
  int result = seccomp_rule_add(filter, denied, SCMP_SYS(socket), 1, SCMP_A0(SCMP_CMP_NE, AF_UNIX));
  // io_uring can create sockets without the system call that the rule filters.
  if (result == 0) result = seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(io_uring_setup), 0);
  if (result == 0) (void)seccomp_load(filter);
  seccomp_release(filter);
}

}  // namespace

void Sandbox(const ResourceLimits& limits) {
  // One byte rather than zero: this also prevents the start of a program that collects core dumps.
  Limit(RLIMIT_CORE, 1);
  LimitTime(limits.seconds);
  if (kLimitsMemory) Limit(RLIMIT_DATA, limits.memory);
  BlockNetwork();
}

void LimitTime(unsigned seconds) { Limit(RLIMIT_CPU, seconds); }

}  // namespace quillon::helpers
