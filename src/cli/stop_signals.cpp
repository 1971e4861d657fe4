// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/stop_signals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace quillon::cli {
namespace {

bool Ignored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

StopSignals::StopSignals(double sameWish, Seconds seconds) : sameWish_(sameWish), seconds_(std::move(seconds)) {
  sigemptyset(&signals_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (signal == SIGHUP && Ignored(signal)) continue;
    sigaddset(&signals_, signal);
    // The kernel discards an ignored signal, even if it is blocked and read from a signalfd.
    std::signal(signal, SIG_DFL);
  }
  pthread_sigmask(SIG_BLOCK, &signals_, &oldMask_);
  signalFd_ = signalfd(-1, &signals_, SFD_CLOEXEC);
  endFd_ = eventfd(0, EFD_CLOEXEC);
  thread_ = std::thread([this] { Listen(); });
}

StopSignals::~StopSignals() {
  eventfd_write(endFd_, 1);
  thread_.join();
  close(signalFd_);
  close(endFd_);
  pthread_sigmask(SIG_SETMASK, &oldMask_, nullptr);
}

void StopSignals::OnSecondSignal(std::function<void()> act) {
  const std::lock_guard lock(mutex_);
  onSecondSignal_ = std::move(act);
}

double StopSignals::SteadySeconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void StopSignals::Handle(bool counts, double now) {
  if (!stopping_) {
    firstAt_ = now;
    stopping_ = true;
  } else if (counts && now - firstAt_ >= sameWish_) {
    const std::lock_guard lock(mutex_);
    if (onSecondSignal_) onSecondSignal_();
  }
}

// All signals that are pending are read at once and have the same time, however late the thread is.
void StopSignals::Listen() {
  for (;;) {
    pollfd waits[] = {{signalFd_, POLLIN, 0}, {endFd_, POLLIN, 0}};
    if (poll(waits, 2, -1) < 0 && errno != EINTR) return;
    if (waits[1].revents) return;
    if (!(waits[0].revents & POLLIN)) continue;
    std::array<signalfd_siginfo, 8> pending{};
    const ssize_t size = read(signalFd_, pending.data(), sizeof pending);
    const double now = seconds_();
    for (std::size_t i = 0; size > 0 && i < static_cast<std::size_t>(size) / sizeof pending[0]; ++i) {
      // A worker gets SIGHUP whenever a thread of its parent ends, so further ones say nothing about the user's wish.
      Handle(pending[i].ssi_signo != SIGHUP, now);
    }
  }
}

}  // namespace quillon::cli
