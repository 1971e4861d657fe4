// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tools.h"

#include <utility>
#include <vector>

#include "base/path_text.h"
#include "host/disk_full.h"
#include "tools/keys.h"
#include "tools/lasting_wait.h"
#include "tools/processes.h"
#include "tools/twins.h"

namespace quillon::tools {
namespace {

constexpr double kShortestRest = 0.005;
// Looking for processes takes at most a tenth of the time.
constexpr double kRestPerLook = 9;

}  // namespace

Tools::Tools(host::Host& host, ToolsOwner owner) : host_(host), owner_(std::move(owner)) {}

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
  // A program that could not be put there does not start either.
  static_cast<void>(EnsureProgram(host_, name));
  return Start(name, parameters);
}

Waited Tools::Wait(const std::string& program, const Look& look, double limit) {
  LastingWait lasting(*this, program);
  for (;;) {
    host_.pump.Turn();
    if (owner_.stopped()) {
      KillProcessByName(host_, program);
      return Waited::Stopped;
    }
    if (look && look()) return Waited::Done;
    const double before = host_.clock.Seconds();
    if (!ProcessExists(host_, program)) return look && look() ? Waited::Done : Waited::Gone;
    if (limit != kNoLimit && lasting.Seconds() > limit) return Waited::Limit;
    lasting.Update();
    const double took = host_.clock.Seconds() - before;
    Rest(took * kRestPerLook);
  }
}

void Tools::Rest(double seconds) {
  const double end = host_.clock.Seconds() + seconds;
  for (;;) {
    host_.clock.Sleep(kShortestRest);
    if (host_.clock.Seconds() >= end || owner_.stopped()) return;
    host_.pump.Turn();
  }
}

host::Status Tools::CopyAsking(const std::string& from, const std::string& to) {
  return host::SaveAsking(
      host_.boxes, to, host::DiskFullWording::Comma, owner_.stop, [&] { return host_.files.Copy(from, to); }, kTitle);
}

host::Status NotStarted(const std::string& helper) { return {host::Problem::Missing, "无法启动 " + helper}; }

host::Status Interrupted() { return {host::Problem::Stopped, "已停止"}; }

}  // namespace quillon::tools
