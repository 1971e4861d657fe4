// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/workers/worker.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

namespace quillon::cli {
namespace {

constexpr int kCannotStart = 127;  // exit code, as a shell has it

// The arguments and the environment for execve(). They are built before fork(): in the child of a process with several
// threads only async-signal-safe functions are allowed, and allocating memory is not among them.
struct Call {
  Call(std::string file, const std::vector<std::string>& arguments, const WorkerContext& context)
      : program(std::move(file)),
        own{std::string(kWorkerVariable) + "=" + context.doneList,
            std::string(kAmongVariable) + "=" + std::to_string(context.among)} {
    if (context.recovering == Recovering::Yes) own.push_back(std::string(kRecoveringVariable) + "=1");
    words.push_back(const_cast<char*>("quillon-batch"));
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    for (char** entry = environ; *entry; ++entry) {
      const std::string_view variable = *entry;
      const auto named = [&](const char* name) { return variable.starts_with(name); };
      const bool ours = named(kWorkerVariable) || named(kAmongVariable) || named(kRecoveringVariable);
      if (!ours) variables.push_back(*entry);
    }
    for (std::string& variable : own) variables.push_back(variable.data());
    variables.push_back(nullptr);
  }

  std::string program;
  std::vector<std::string> own;  // variables
  std::vector<char*> words;
  std::vector<char*> variables;
};

// Turns the child of fork() into the worker. Never returns.
[[noreturn]] void ExecWorker(const Call& call, int out, int err, pid_t parent) {
  setpgid(0, 0);
  // The kernel may send the parent-death signal more than once: for each thread of ours that ends while it counts as
  // the parent. So it must be SIGHUP, of which StopSignals ignores a second one. The default action is restored because
  // an ignored SIGHUP would be inherited.
  std::signal(SIGHUP, SIG_DFL);
  prctl(PR_SET_PDEATHSIG, SIGHUP);
  if (getppid() != parent) _exit(kCannotStart);  // the parent died before prctl()
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  execve(call.program.c_str(), call.words.data(), call.variables.data());
  _exit(kCannotStart);
}

}  // namespace

Worker::Worker(const std::string& program, const std::vector<std::string>& arguments, const WorkerContext& context,
               OnLine out, OnLine err) {
  out_.onLine = std::move(out);
  err_.onLine = std::move(err);
  const Call call(program, arguments, context);
  int outEnds[2] = {-1, -1};
  int errEnds[2] = {-1, -1};
  if (pipe2(outEnds, O_CLOEXEC) == 0 && pipe2(errEnds, O_CLOEXEC) == 0) {
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ == 0) ExecWorker(call, outEnds[1], errEnds[1], parent);
  }
  for (const int handle : {outEnds[1], errEnds[1]}) {
    if (handle >= 0) close(handle);
  }
  out_.handle = outEnds[0];
  err_.handle = errEnds[0];
}

Worker::~Worker() {
  for (const End* end : {&out_, &err_}) {
    if (end->handle >= 0) close(end->handle);
  }
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
}

void Worker::Read(int handle) { ReadFrom(handle == out_.handle ? out_ : err_); }

void Worker::ReadFrom(End& end) {
  char block[65536];
  const ssize_t got = read(end.handle, block, sizeof block);
  if (got < 0 && errno == EINTR) return;
  if (got <= 0) {
    close(std::exchange(end.handle, -1));
    if (!end.rest.empty()) end.onLine(std::exchange(end.rest, {}));
    return;
  }
  end.rest.append(block, static_cast<std::size_t>(got));
  std::size_t begin = 0;
  for (std::size_t line; (line = end.rest.find('\n', begin)) != std::string::npos; begin = line + 1) {
    end.onLine(end.rest.substr(begin, line - begin));
  }
  end.rest.erase(0, begin);
}

WorkerEnd Worker::Wait() {
  WorkerEnd end;
  if (process_ <= 0) return end;
  int status = 0;
  while (waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = -1;
  if (WIFEXITED(status)) end.exit = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
  return end;
}

}  // namespace quillon::cli
