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

namespace quillon::host::posix {
namespace {

// A fresh program cannot run while any process still holds it open for writing, as one does for a moment that was
// forked off by another thread.
constexpr int kBusyTries = 50;
constexpr auto kBusyRest = std::chrono::milliseconds(4);

bool Exists(const std::string& path) {
  struct stat told {};
  return stat(path.c_str(), &told) == 0;
}

bool MayRun(const std::string& path) {
  struct stat told {};
  return stat(path.c_str(), &told) == 0 && S_ISREG(told.st_mode) &&
         faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
}

// The file that a program's name stands for, "" where there is none.
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

// What the new process is made of; built before the fork, since nothing may be allocated after it.
struct Order {
  std::string file;
  std::string folder;
  std::vector<char*> arguments;
};

// In the new process, up to the exec. Only calls that are safe there.
[[noreturn]] void Become(const Order& order, int report) {
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const int nowhere = open("/dev/null", O_RDWR);
  for (int stream = 0; stream <= 2; ++stream) dup2(nowhere, stream);
  close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
  int error = 0;
  if (!order.folder.empty() && chdir(order.folder.c_str()) < 0) error = errno;
  if (error == 0) {
    execv(order.file.c_str(), order.arguments.data());
    error = errno;
  }
  (void)!write(report, &error, sizeof error);
  _exit(127);
}

// The error that kept the program from starting, 0 where it runs. A process between, which ends at once, leaves the
// program to the system to be collected.
int Launch(const Order& order) {
  int report[2];
  if (pipe2(report, O_CLOEXEC) < 0) return errno;
  const pid_t between = fork();
  if (between < 0) {
    const int error = errno;
    close(report[0]);
    close(report[1]);
    return error;
  }
  if (between == 0) {
    setsid();
    const pid_t program = fork();
    if (program == 0) Become(order, report[1]);
    const int error = errno;
    if (program < 0) (void)!write(report[1], &error, sizeof error);
    _exit(0);
  }
  close(report[1]);
  while (waitpid(between, nullptr, 0) < 0 && errno == EINTR) {
  }
  // The report closes unwritten at the moment the program takes over.
  int error = 0;
  while (read(report[0], &error, sizeof error) < 0 && errno == EINTR) {
  }
  close(report[0]);
  return error;
}

// A path that cannot be taken for an option.
std::string Plain(const std::string& path) { return path.starts_with('-') ? "./" + path : path; }

}  // namespace

int PosixShell::Start(const std::string& program, const std::vector<std::string>& arguments,
                      const std::string& folder) {
  Order order{FindProgram(program, folder), folder, {}};
  if (order.file.empty()) return kStartMissing;
  if (!MayRun(order.file)) return kStartDenied;
  // The new process changes its folder before it looks for the file.
  if (order.file.front() != '/') {
    char here[PATH_MAX];
    if (!getcwd(here, sizeof here)) return kStartMissing;
    order.file = base::JoinPath(here, order.file);
  }
  std::vector<std::string> texts{order.file};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  for (std::string& text : texts) order.arguments.push_back(text.data());
  order.arguments.push_back(nullptr);
  int error = Launch(order);
  for (int i = 0; i < kBusyTries && error == ETXTBSY; ++i) {
    std::this_thread::sleep_for(kBusyRest);
    error = Launch(order);
  }
  if (error == 0) return kStarted;
  return error == ENOENT || error == ENOTDIR ? kStartMissing : kStartDenied;
}

void PosixShell::OpenFolder(const std::string& folder) { Start("xdg-open", {Plain(folder)}, ""); }

void PosixShell::Reveal(const std::string& file) {
  const std::size_t separator = file.rfind('/');
  OpenFolder(separator == std::string::npos ? "." : file.substr(0, separator + 1));
}

void PosixShell::OpenBrowser(const std::string& address) { Start("xdg-open", {Plain(address)}, ""); }

}  // namespace quillon::host::posix
