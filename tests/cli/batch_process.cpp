// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/batch_process.h"

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "build_paths.h"

namespace quillon::cli {
namespace {

constexpr const char* kProgram = QUILLON_BINARY_DIR "/bin/quillon-batch";

void Nap() {
  const timespec moment{0, 5'000'000};
  nanosleep(&moment, nullptr);
}

}  // namespace

BatchProcess::BatchProcess(const std::vector<std::string>& arguments, const std::string& folder, ErrorsTo errors,
                           OutTo out)
    : temporary_(own_.Path("tmp")) {
  Start(arguments, folder, errors, out);
}

BatchProcess::BatchProcess(const std::vector<std::string>& arguments, const std::string& folder,
                           const std::string& temporary)
    : temporary_(temporary) {
  Start(arguments, folder, ErrorsTo::File, OutTo::Pipe);
}

BatchProcess::~BatchProcess() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  if (out_ >= 0) close(out_);
  if (terminal_ >= 0) close(terminal_);
}

void BatchProcess::Start(const std::vector<std::string>& arguments, const std::string& folder, ErrorsTo errors,
                         OutTo out) {
  std::error_code ignored;
  std::filesystem::create_directories(temporary_, ignored);
  const std::string errorFile = own_.Path("err");
  const std::string temporary = "TMPDIR=" + temporary_;
  const std::string settings = "XDG_CONFIG_HOME=" + temporary_ + ".config";
  std::vector<char*> words{const_cast<char*>(kProgram)};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) < 0) throw std::runtime_error("pipe");
  if (out == OutTo::SmallPipe && fcntl(ends[1], F_SETPIPE_SZ, 4096) < 0) throw std::runtime_error("F_SETPIPE_SZ");
  int slave = -1;
  if (errors == ErrorsTo::Terminal && openpty(&terminal_, &slave, nullptr, nullptr, nullptr) < 0) {
    throw std::runtime_error("openpty");
  }
  process_ = fork();
  if (process_ == 0) {
    const int err = slave >= 0 ? slave : open(errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(out == OutTo::FullDevice ? open("/dev/full", O_WRONLY) : ends[1], STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    putenv(const_cast<char*>(temporary.c_str()));
    putenv(const_cast<char*>(settings.c_str()));
    if (chdir(folder.c_str()) == 0) execv(kProgram, words.data());
    _exit(127);
  }
  close(ends[1]);
  if (slave >= 0) close(slave);
  out_ = ends[0];
}

bool BatchProcess::ReadMore() {
  char block[4096];
  const ssize_t got = read(out_, block, sizeof block);
  if (got > 0) ran_.out.append(block, static_cast<std::size_t>(got));
  return got > 0;
}

bool BatchProcess::ReadTo(const std::string& text) {
  while (ran_.out.find(text) == std::string::npos) {
    if (!ReadMore()) return false;
  }
  return true;
}

void BatchProcess::Signal(int signal) const { kill(process_, signal); }

void BatchProcess::SignalTogether(const std::vector<int>& signals) const {
  siginfo_t stopped{};
  Signal(SIGSTOP);
  waitid(P_PID, static_cast<id_t>(process_), &stopped, WSTOPPED);
  for (const int signal : signals) Signal(signal);
  Signal(SIGCONT);
  const std::string none = "ShdPnd:\t0000000000000000";
  for (std::string status; status.find(none) == std::string::npos; Nap()) {
    std::ifstream file("/proc/" + std::to_string(process_) + "/status");
    status.assign(std::istreambuf_iterator<char>(file), {});
  }
}

std::vector<pid_t> BatchProcess::Children() const {
  std::vector<pid_t> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string name = entry.path().filename();
    if (name.find_first_not_of("0123456789") != std::string::npos) continue;
    std::ifstream status(entry.path() / "stat");
    std::string text;
    std::getline(status, text);
    // The state and the parent follow the name in brackets, which may itself contain brackets.
    std::istringstream rest(text.substr(std::min(text.size(), text.rfind(')') + 1)));
    char state = 0;
    pid_t parent = 0;
    if (rest >> state >> parent && parent == process_ && state != 'Z') found.push_back(std::stoi(name));
  }
  return found;
}

int BatchProcess::PeakMemory() const {
  constexpr int kKilobytes = 1024;
  const std::string peak = "VmHWM:";
  std::ifstream status("/proc/" + std::to_string(process_) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(peak)) return std::stoi(line.substr(peak.size())) / kKilobytes;
  }
  return 0;
}

void BatchProcess::SetEnd(int status) {
  process_ = -1;
  if (WIFEXITED(status)) ran_.exit = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) ran_.signal = WTERMSIG(status);
  if (terminal_ < 0) ran_.err = own_.Read("err");
}

Ran BatchProcess::Insist(int signal) {
  int status = 0;
  while (waitpid(process_, &status, WNOHANG) == 0) {
    kill(process_, signal);
    Nap();
  }
  SetEnd(status);
  return ran_;
}

Ran BatchProcess::Wait() {
  while (ReadMore()) {
  }
  int status = 0;
  waitpid(process_, &status, 0);
  if (terminal_ >= 0) {
    char block[4096];
    fcntl(terminal_, F_SETFL, O_NONBLOCK);
    for (ssize_t got; (got = read(terminal_, block, sizeof block)) > 0;) {
      ran_.err.append(block, static_cast<std::size_t>(got));
    }
  }
  SetEnd(status);
  return ran_;
}

Ran BatchProcess::WaitUnheard() {
  close(out_);
  out_ = -1;
  return Wait();
}

std::vector<std::string> BatchProcess::Temporaries() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(temporary_)) names.push_back(entry.path().filename());
  return names;
}

Ran RunProgram(const std::vector<std::string>& arguments, const std::string& folder) {
  return BatchProcess(arguments, folder).Wait();
}

}  // namespace quillon::cli
