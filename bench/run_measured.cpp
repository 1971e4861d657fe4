// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Runs a command and appends one line to a file: wall seconds, CPU seconds (user and system, of it and of the processes
// it waited for), peak memory in KB, exit code.
//
// usage: run_measured RESULTFILE COMMAND [ARGUMENT...]
#include <chrono>
#include <cstdio>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: run_measured RESULTFILE COMMAND [ARGUMENT...]\n");
    return 2;
  }
  const auto begin = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    execvp(argv[2], argv + 2);
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 2;
  const double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  std::FILE* out = std::fopen(argv[1], "a");
  if (!out) return 2;
  std::fprintf(out, "%.4f %.4f %ld %d\n", wall, Seconds(usage.ru_utime) + Seconds(usage.ru_stime), usage.ru_maxrss,
               code);
  std::fclose(out);
  return code;
}
