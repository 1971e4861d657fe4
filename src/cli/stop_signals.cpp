// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/stop_signals.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>

namespace quillon::cli {
namespace {

bool Ignored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

StopSignals::StopSignals() {
  sigemptyset(&signals_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (signal == SIGHUP && Ignored(signal)) continue;
    sigaddset(&signals_, signal);
    // An ignored signal never arrives, not even where it is waited for.
    std::signal(signal, SIG_DFL);
  }
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
  taken_ = signalfd(-1, &signals_, SFD_CLOEXEC);
  end_ = eventfd(0, EFD_CLOEXEC);
  thread_ = std::thread([this] { Listen(); });
}

StopSignals::~StopSignals() {
  eventfd_write(end_, 1);
  thread_.join();
  close(taken_);
  close(end_);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void StopSignals::OnInsist(std::function<void()> act) {
  const std::lock_guard lock(mutex_);
  insist_ = std::move(act);
}

void StopSignals::Listen() {
  for (;;) {
    pollfd waits[] = {{taken_, POLLIN, 0}, {end_, POLLIN, 0}};
    if (poll(waits, 2, -1) < 0 && errno != EINTR) return;
    if (waits[1].revents) return;
    signalfd_siginfo told{};
    if (!(waits[0].revents & POLLIN) || read(taken_, &told, sizeof told) != sizeof told) continue;
    // A process may be told more than once that the one that started it is gone.
    const bool insists = told.ssi_signo != SIGHUP;
    if (stopping_.exchange(true) && insists) {
      const std::lock_guard lock(mutex_);
      if (insist_) insist_();
    }
  }
}

}  // namespace quillon::cli
