// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/sandbox.h"

#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace quillon::helpers {
namespace {

// The sanitizers reserve more address space than any limit allows, and their search for leaks attaches to the process
// by ptrace.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitizer = true;
#else
constexpr bool kSanitizer = false;
#endif

// Lowers a limit; one that is lower already stays.
void Limit(__rlimit_resource what, rlim_t highest) {
  rlimit limit{};
  if (getrlimit(what, &limit) < 0) return;
  limit.rlim_cur = std::min(limit.rlim_cur, highest);
  limit.rlim_max = std::min(limit.rlim_max, highest);
  (void)setrlimit(what, &limit);
}

// Calls that no helper needs: they reach into other processes, or change a file without opening it.
constexpr std::array kForeignCalls = {
    SCMP_SYS(process_vm_readv),
    SCMP_SYS(process_vm_writev),
    SCMP_SYS(pidfd_getfd),
    SCMP_SYS(truncate),
};

// A set of refused calls. A call that cannot be added leaves the set as it is.
class CallFilter {
 public:
  CallFilter() : filter_(seccomp_init(SCMP_ACT_ALLOW)) {}
  ~CallFilter() { seccomp_release(filter_); }
  CallFilter(const CallFilter&) = delete;
  CallFilter& operator=(const CallFilter&) = delete;

  void Refuse(int call, int error = EACCES) const {
    if (filter_) (void)seccomp_rule_add(filter_, SCMP_ACT_ERRNO(static_cast<unsigned>(error)), call, 0);
  }
  // Only sockets inside this machine can be created.
  void RefuseNetwork() const {
    if (!filter_) return;
    (void)seccomp_rule_add(filter_, SCMP_ACT_ERRNO(EACCES), SCMP_SYS(socket), 1, SCMP_A0(SCMP_CMP_NE, AF_UNIX));
    // io_uring can create sockets and open files without the calls that are refused here.
    Refuse(SCMP_SYS(io_uring_setup), ENOSYS);
  }
  void Load() const {
    if (filter_) (void)seccomp_load(filter_);
  }

 private:
  scmp_filter_ctx filter_;
};

void BlockCalls(Starts starts) {
  const CallFilter filter;
  filter.RefuseNetwork();
  for (const int call : kForeignCalls) filter.Refuse(call);
  if (!kSanitizer) filter.Refuse(SCMP_SYS(ptrace));
  // A local server may do for its clients what they may not do themselves: a desktop's bus starts programs. A helper
  // that is started by another one may have a window, which connects to the display.
  if (starts != Starts::Helpers) filter.Refuse(SCMP_SYS(connect));
  if (starts == Starts::Nothing) {
    filter.Refuse(SCMP_SYS(execve));
    filter.Refuse(SCMP_SYS(execveat));
  }
  filter.Load();
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

// The process remains dumpable: otherwise its entry in /proc would belong to root, and the program, which finds and
// ends its helpers there, would no longer recognise it.
void Sandbox(const Permissions& permissions) {
  // One byte rather than zero: this also prevents the start of a program that collects core dumps.
  Limit(RLIMIT_CORE, 1);
  LimitTime(permissions.seconds);
  if (!kSanitizer) Limit(RLIMIT_DATA, permissions.memory);
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  BlockCalls(permissions.starts);
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
