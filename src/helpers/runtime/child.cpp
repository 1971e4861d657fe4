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

constexpr std::size_t kMostOutput = 64 * 1024;
constexpr int kNotStarted = 127;

// In the new process, up to the exec. Only calls that are safe there.
[[noreturn]] void Become(char* const* words, int output, pid_t parent) {
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

// Reads to the end, so that the writer is never held up; keeps the beginning.
std::string ReadAll(int handle) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = read(handle, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    if (text.size() < kMostOutput) text.append(block.data(), static_cast<std::size_t>(count));
  }
}

void Collect(pid_t child, Ended& ended) {
  int told = 0;
  while (waitpid(child, &told, 0) < 0) {
    if (errno != EINTR) return;
  }
  ended.started = !WIFEXITED(told) || WEXITSTATUS(told) != kNotStarted;
  if (WIFEXITED(told) && ended.started) ended.exit = WEXITSTATUS(told);
}

}  // namespace

Ended RunProgram(const std::vector<std::string>& words) {
  std::vector<std::string> texts = words;
  std::vector<char*> arguments;
  arguments.reserve(texts.size() + 1);
  for (std::string& text : texts) arguments.push_back(text.data());
  arguments.push_back(nullptr);
  std::array<int, 2> ends{};
  if (words.empty() || pipe2(ends.data(), O_CLOEXEC) < 0) return {};
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child == 0) Become(arguments.data(), ends[1], parent);
  close(ends[1]);
  Ended ended;
  if (child > 0) {
    ended.output = ReadAll(ends[0]);
    Collect(child, ended);
  }
  close(ends[0]);
  return ended;
}

}  // namespace quillon::helpers
