// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/resource_limits.h"

#include <seccomp.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
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

// What a process needs that computes with the handles it has.
constexpr std::array kHarmlessCalls = {
    SCMP_SYS(read),         SCMP_SYS(pread64),        SCMP_SYS(lseek),        SCMP_SYS(write),
    SCMP_SYS(close),        SCMP_SYS(recvmsg),        SCMP_SYS(sendto),       SCMP_SYS(brk),
    SCMP_SYS(mmap),         SCMP_SYS(mremap),         SCMP_SYS(munmap),       SCMP_SYS(mprotect),
    SCMP_SYS(madvise),      SCMP_SYS(futex),          SCMP_SYS(sched_yield),  SCMP_SYS(clock_gettime),
    SCMP_SYS(gettimeofday), SCMP_SYS(time),           SCMP_SYS(getrandom),    SCMP_SYS(getrusage),
    SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask), SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack),
    SCMP_SYS(getpid),       SCMP_SYS(gettid),         SCMP_SYS(exit),         SCMP_SYS(exit_group),
};

}  // namespace

void Sandbox(const ResourceLimits& limits) {
  // One byte rather than zero: this also prevents the start of a program that collects core dumps.
  Limit(RLIMIT_CORE, 1);
  LimitTime(limits.seconds);
  if (kLimitsMemory) Limit(RLIMIT_DATA, limits.memory);
  BlockNetwork();
}

void LimitTime(unsigned seconds) { Limit(RLIMIT_CPU, seconds); }

void AllowTime(unsigned seconds) {
  rusage used{};
  rlimit limit{};
  if (getrusage(RUSAGE_SELF, &used) < 0 || getrlimit(RLIMIT_CPU, &limit) < 0) return;
  const auto soFar = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec + 2);
  limit.rlim_cur = std::min(soFar + seconds, limit.rlim_max);
  (void)setrlimit(RLIMIT_CPU, &limit);
}

void BlockEverythingElse() {
  scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EACCES));
  if (!filter) return;
  int result = 0;
  for (const int call : kHarmlessCalls) {
    if (result == 0) result = seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0);
  }
  // The limits of this process, but of no other one.
  if (result == 0) {
    result = seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(prlimit64), 1, SCMP_A0(SCMP_CMP_EQ, 0));
  }
  if (result == 0) (void)seccomp_load(filter);
  seccomp_release(filter);
}

}  // namespace quillon::helpers
