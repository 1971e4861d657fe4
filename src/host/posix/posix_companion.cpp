// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_companion.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>

#include "base/path_text.h"
#include "host/posix/repeat.h"

namespace quillon::host::posix {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPollMilliseconds = 4;
constexpr int kReapTries = 200;
constexpr auto kReapInterval = std::chrono::milliseconds(1);

Status NoAnswer() { return {Problem::Other, "辅助程序没有回答"}; }

// Sends one byte with a handle. Returns false if the process has ended.
bool SendHandle(int socket, int handle) {
  char byte = 0;
  iovec content{&byte, 1};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof handle)> control{};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  cmsghdr* head = CMSG_FIRSTHDR(&message);
  head->cmsg_level = SOL_SOCKET;
  head->cmsg_type = SCM_RIGHTS;
  head->cmsg_len = CMSG_LEN(sizeof handle);
  std::memcpy(CMSG_DATA(head), &handle, sizeof handle);
  return Repeat([&] { return sendmsg(socket, &message, MSG_NOSIGNAL); }) == 1;
}

class PosixCompanion final : public Companion {
 public:
  PosixCompanion(pid_t process, int socket) : process_(process), socket_(socket) {}
  ~PosixCompanion() override { End(); }
  PosixCompanion(const PosixCompanion&) = delete;
  PosixCompanion& operator=(const PosixCompanion&) = delete;

  bool Alive() const override { return process_ > 0; }

  Status Ask(const std::string& path, double seconds, const KeepWaiting& keepWaiting, std::string& answer) override {
    if (!Alive()) return NoAnswer();
    // A pipe under the name would otherwise block until somebody writes to it.
    const int file = Repeat([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); });
    if (file < 0) return Status::FromErrno(-file);
    const bool sent = SendHandle(socket_, file);
    close(file);
    Status status = sent ? Await(Clock::now() + std::chrono::duration<double>(seconds), keepWaiting) : NoAnswer();
    if (status && !Receive(answer)) status = NoAnswer();
    if (!status) End();
    return status;
  }

 private:
  // Returns Ok when there is something to receive, also the end of the process.
  Status Await(std::chrono::time_point<Clock, std::chrono::duration<double>> end,
               const KeepWaiting& keepWaiting) const {
    for (;;) {
      pollfd wait{socket_, POLLIN, 0};
      if (poll(&wait, 1, kPollMilliseconds) > 0) return Status::Ok();
      if (keepWaiting && !keepWaiting()) return {Problem::Stopped, "已停止"};
      if (Clock::now() > end) return NoAnswer();
    }
  }

  bool Receive(std::string& answer) const {
    std::array<char, kAnswerMax> packet{};
    const ssize_t count = Repeat([&] { return recv(socket_, packet.data(), packet.size(), MSG_DONTWAIT); });
    if (count <= 0) return false;
    answer.assign(packet.data(), static_cast<std::size_t>(count));
    return true;
  }

  void End() {
    if (!Alive()) return;
    close(socket_);
    kill(process_, SIGKILL);
    // A process that reads from an unresponsive disk does not even die. It is then left to the end of this process.
    for (int i = 0; i < kReapTries && waitpid(process_, nullptr, WNOHANG) == 0; ++i) {
      std::this_thread::sleep_for(kReapInterval);
    }
    process_ = 0;
  }

  pid_t process_;
  int socket_;
};

// What a new process needs beside its arguments: standard streams, no other handle, and default signals, in a session
// of its own, so that Ctrl+C in a terminal reaches only this process.
class SpawnPlan {
 public:
  SpawnPlan(int input, const std::string& folder) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, input, 0);
    posix_spawn_file_actions_addopen(&actions_, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, 1, 2);
    posix_spawn_file_actions_addclosefrom_np(&actions_, 3);
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
    posix_spawnattr_init(&attributes_);
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);
  }
  ~SpawnPlan() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  // Returns 0, or the error of the start.
  int Start(std::string program, pid_t& process) const {
    const std::array<char*, 2> arguments{program.data(), nullptr};
    return posix_spawn(&process, program.c_str(), &actions_, &attributes_, arguments.data(), environ);
  }

 private:
  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
};

}  // namespace

std::unique_ptr<Companion> StartCompanion(const std::string& program) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) < 0) return nullptr;
  pid_t process = 0;
  const int error = SpawnPlan(ends[1], base::SplitPath(program).folder).Start(program, process);
  close(ends[1]);
  if (error == 0) return std::make_unique<PosixCompanion>(process, ends[0]);
  close(ends[0]);
  return nullptr;
}

}  // namespace quillon::host::posix
