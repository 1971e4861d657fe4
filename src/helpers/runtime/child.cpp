// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace quillon::helpers {
namespace {

constexpr std::size_t kMaxOutput = 64 * 1024;
constexpr int kNotStarted = 127;

// Runs in the new process up to exec. Only async-signal-safe calls are allowed here.
[[noreturn]] void ExecChild(char* const* words, int output, pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(kNotStarted);
  const int nowhere = open("/dev/null", O_RDONLY);
  dup2(nowhere, 0);
  dup2(output, 1);
  dup2(output, 2);
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
  execvp(words[0], words);
  _exit(kNotStarted);
}

// Reads to the end, so that the writer never blocks on a full pipe, and keeps the beginning.
std::string ReadAll(int handle) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = read(handle, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    if (text.size() < kMaxOutput) text.append(block.data(), static_cast<std::size_t>(count));
  }
}

void WaitForExit(pid_t child, ProgramResult& result) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return;
  }
  result.started = !WIFEXITED(status) || WEXITSTATUS(status) != kNotStarted;
  if (WIFEXITED(status) && result.started) result.exit = WEXITSTATUS(status);
}

}  // namespace

ProgramResult RunProgram(const std::vector<std::string>& words) {
  std::vector<std::string> texts = words;
  std::vector<char*> arguments;
  arguments.reserve(texts.size() + 1);
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  std::array<int, 2> ends{};
  if (words.empty() || pipe2(ends.data(), O_CLOEXEC) < 0) return {};
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child == 0) ExecChild(arguments.data(), ends[1], parent);
  close(ends[1]);
  ProgramResult result;
  if (child > 0) {
    result.output = ReadAll(ends[0]);
    WaitForExit(child, result);
  }
  close(ends[0]);
  return result;
}

}  // namespace quillon::helpers
