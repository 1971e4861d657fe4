// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_shell.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <thread>

#include "base/path_text.h"
#include "host/posix/environment.h"
#include "host/posix/posix_companion.h"

namespace quillon::host::posix {
namespace {

// A program cannot run while any process has its file open for writing (ETXTBSY). A process that another thread forks
// inherits such a handle for a moment, so the start is tried again.
constexpr int kBusyRetries = 50;
constexpr auto kBusyDelay = std::chrono::milliseconds(4);

bool Exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

bool MayRun(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
         faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

// Returns the file that a program name stands for, "" if there is none.
std::string FindProgram(const std::string& program, const std::string& folder) {
  if (program.empty()) return "";
  const bool absolute = program.front() == '/';
  const std::string beside = absolute || folder.empty() ? program : base::JoinPath(folder, program);
  if (program.find('/') != std::string::npos) return Exists(beside) ? beside : "";
  if (!folder.empty() && Exists(beside)) return beside;
  std::string found;
  std::string path = Environment("PATH");
  for (std::size_t end; !path.empty(); path.erase(0, end == std::string::npos ? end : end + 1)) {
    end = path.find(':');
    const std::string file = base::JoinPath(path.substr(0, end), program);
    if (file.front() != '/' || !Exists(file)) continue;
    if (MayRun(file)) return file;
    if (found.empty()) found = file;
  }
  return found;
}

// Everything that the new process needs. It is built before the fork, because nothing may be allocated after it.
struct LaunchPlan {
  std::string file;
  std::string folder;
  std::vector<char*> arguments;
};

// Runs in the new process up to exec. Only calls that are async-signal-safe are allowed here.
[[noreturn]] void ExecChild(const LaunchPlan& plan, int report) {
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nowhere = open("/dev/null", O_RDWR);
  for (int stream = 0; stream <= 2; ++stream) dup2(nowhere, stream);
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
  int error = 0;
  if (!plan.folder.empty() && chdir(plan.folder.c_str()) < 0) error = errno;
  if (error == 0) {
    execv(plan.file.c_str(), plan.arguments.data());
    error = errno;
  }
  (void)!write(report, &error, sizeof error);
  _exit(127);
}

// Starts the program and returns 0, or the error that prevented the start. The program is forked by an intermediate
// process that exits immediately, so that the system reaps it and no zombie remains.
int Launch(const LaunchPlan& plan) {
  int report[2];
  if (pipe2(report, O_CLOEXEC) < 0) return errno;
  const pid_t intermediate = fork();
  if (intermediate < 0) {
    const int error = errno;
    close(report[0]);
    close(report[1]);
    return error;
  }
  if (intermediate == 0) {
    setsid();
    const pid_t program = fork();
    if (program == 0) ExecChild(plan, report[1]);
    const int error = errno;
    if (program < 0) (void)!write(report[1], &error, sizeof error);
    _exit(0);
  }
  close(report[1]);
  while (waitpid(intermediate, nullptr, 0) < 0 && errno == EINTR) {
  }
  // A successful exec closes the pipe without a report.
  int error = 0;
  while (read(report[0], &error, sizeof error) < 0 && errno == EINTR) {
  }
  close(report[0]);
  return error;
}

// Returns the path in a form that xdg-open cannot mistake for an option.
std::string Plain(const std::string& path) { return path.starts_with('-') ? "./" + path : path; }

}  // namespace

int PosixShell::Start(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& folder) {
  LaunchPlan plan{FindProgram(program, folder), folder, {}};
  if (plan.file.empty()) return kStartMissing;
  if (!MayRun(plan.file)) return kStartDenied;
  // The new process changes its folder before exec, so the file must not be relative.
  if (plan.file.front() != '/') {
    char here[PATH_MAX];
    if (!getcwd(here, sizeof here)) return kStartMissing;
    plan.file = base::JoinPath(here, plan.file);
  }
  std::vector<std::string> texts{plan.file};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  for (std::string& text : texts) plan.arguments.push_back(text.data());
  plan.arguments.push_back(nullptr);
  int error = Launch(plan);
  for (int i = 0; i < kBusyRetries && error == ETXTBSY; ++i) {
    std::this_thread::sleep_for(kBusyDelay);
    error = Launch(plan);
  }
  if (error == 0) return kStarted;
  return error == ENOENT || error == ENOTDIR ? kStartMissing : kStartDenied;
}

std::unique_ptr<Companion> PosixShell::StartCompanion(const std::string& program) {
  return posix::StartCompanion(program);
}

void PosixShell::OpenFolder(const std::string& folder) { Start("xdg-open", {Plain(folder)}, ""); }

void PosixShell::Reveal(const std::string& file) {
  const std::size_t separator = file.rfind('/');
  OpenFolder(separator == std::string::npos ? "." : file.substr(0, separator + 1));
}

void PosixShell::OpenBrowser(const std::string& address) { Start("xdg-open", {Plain(address)}, ""); }

}  // namespace quillon::host::posix
