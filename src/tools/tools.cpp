// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tools.h"

#include <utility>
#include <vector>

#include "base/path_text.h"
#include "tools/keys.h"
#include "tools/lasting_wait.h"
#include "tools/processes.h"
#include "tools/twins.h"

namespace quillon::tools {
namespace {

// Seconds between two turns of the event loop.
constexpr double kTurnInterval = 0.005;
// After a poll that took some time the wait sleeps this many times as long, so that polling for processes uses at most
// a tenth of the time.
constexpr double kSleepPerPoll = 9;

}  // namespace

Tools::Tools(host::Host& host, ToolsOwner owner)
    : host_(host), owner_(std::move(owner)), saver_(host.boxes, host.files, owner_.stop) {}

std::string Tools::AppPath(const std::string& entry) const { return base::JoinPath(host_.programFolder, entry); }

int Tools::Start(const std::string& name, const std::string& parameters) {
  return StartIn(host_.programFolder, name, parameters);
}

int Tools::StartIn(const std::string& folder, const std::string& name, const std::string& parameters) {
  std::vector<std::string> arguments;
  if (!parameters.empty()) arguments.push_back(parameters);
  return host_.shell.Start(name + ".exe", arguments, folder);
}

int Tools::EnsureAndStart(const std::string& name, const std::string& parameters) {
  // If the program could not be copied, it does not start either.
  static_cast<void>(EnsureProgram(host_, name));
  return Start(name, parameters);
}

WaitResult Tools::Wait(const std::string& program, const Condition& condition, double timeout) {
  LastingWait lasting(*this, program);
  for (;;) {
    host_.pump.Turn();
    if (owner_.stopped()) {
      KillProcessByName(host_, program);
      return WaitResult::Stopped;
    }
    if (condition && condition()) return WaitResult::Done;
    const double before = host_.clock.Seconds();
    if (!ProcessExists(host_, program)) return condition && condition() ? WaitResult::Done : WaitResult::Exited;
    if (timeout != kNoTimeout && lasting.Seconds() > timeout) return WaitResult::TimedOut;
    lasting.Update();
    const double elapsed = host_.clock.Seconds() - before;
    SleepPumping(elapsed * kSleepPerPoll);
  }
}

void Tools::SleepPumping(double seconds) {
  const double end = host_.clock.Seconds() + seconds;
  for (;;) {
    host_.clock.Sleep(kTurnInterval);
    if (host_.clock.Seconds() >= end || owner_.stopped()) return;
    host_.pump.Turn();
  }
}

host::Status NotStarted(const std::string& helper) { return {host::Problem::Missing, "无法启动 " + helper}; }

host::Status Interrupted() { return {host::Problem::Stopped, "已停止"}; }

void PauseSeconds(host::Host& host, float seconds) {
  const auto start = static_cast<float>(host.clock.SecondsOfDay());
  for (;;) {
    host.pump.Turn();
    const auto now = static_cast<float>(host.clock.SecondsOfDay());
    if (now < start || now - start >= seconds) return;
    host.clock.Sleep(kTurnInterval);
  }
}

}  // namespace quillon::tools
