// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/tools.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/path_text.h"
#include "formats/tools/keys.h"
#include "formats/tools/processes.h"
#include "formats/tools/twins.h"
#include "host/disk_full.h"

namespace quillon::formats {
namespace {

constexpr double kShortestRest = 0.005;
// Looking for processes takes at most a tenth of the time.
constexpr double kRestPerLook = 9;
// A wait that is longer than this is shown.
constexpr double kLasting = 3;

// Shows a wait that lasts, and takes it back at the end.
class LastingWait {
 public:
  LastingWait(host::Clock& clock, const ToolsOwner& owner) : clock_(clock), owner_(owner), start_(clock.Seconds()) {}
  ~LastingWait() {
    if (shown_) owner_.waiting("");
  }
  LastingWait(const LastingWait&) = delete;
  LastingWait& operator=(const LastingWait&) = delete;

  double Seconds() const { return clock_.Seconds() - start_; }
  void Look(const std::string& program) {
    if (shown_ || Seconds() < kLasting) return;
    shown_ = true;
    owner_.waiting(program);
  }

 private:
  host::Clock& clock_;
  const ToolsOwner& owner_;
  double start_;
  bool shown_ = false;
};

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
  LastingWait lasting(host_.clock, owner_);
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
    lasting.Look(program);
    const double took = host_.clock.Seconds() - before;
    host_.clock.Sleep(std::max(kShortestRest, took * kRestPerLook));
  }
}

host::Status Tools::CopyAsking(const std::string& from, const std::string& to) {
  return host::SaveAsking(
      host_.boxes, to, host::DiskFullWording::Comma, owner_.stop, [&] { return host_.files.Copy(from, to); }, kTitle);
}

}  // namespace quillon::formats
