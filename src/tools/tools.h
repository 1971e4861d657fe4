// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/host.h"
#include "host/saver.h"

namespace quillon::tools {

// The folder of programs that are installed for all users.
inline constexpr const char* kSystemFolder = "/usr/lib/quillon";

// Callbacks of the waits for helpers.
struct ToolsOwner {
  // Returns true if the user wants to stop everything.
  std::function<bool()> stopped = [] { return false; };
  // Called to stop everything after the user gave up on a full disk.
  std::function<void()> stop = [] {};
  // Called with the program's name once a wait takes long, and with "" when it ends.
  std::function<void(const std::string& program)> waiting = [](const std::string&) {};
};

// How a wait ended.
enum class WaitResult {
  Exited,    // no process of the name runs
  Done,      // the condition became true
  TimedOut,  // the timeout expired; the process may still run
  Stopped,   // the user stopped the run; the process was killed
};

// Starts helpers and waits for them. While it waits, it processes window events, and sleeps between polls so that it
// uses little of the processor. Events are also processed during long sleeps.
class Tools {
 public:
  explicit Tools(host::Host& host, ToolsOwner owner = {});

  host::Host& World() { return host_; }
  const std::string& App() const { return host_.programFolder; }
  std::string AppPath(const std::string& entry) const;
  bool Stopped() const { return owner_.stopped(); }
  // Copies results, and asks the user if the disk is full; if the user gives up, stop is called.
  const host::Saver& Saver() const { return saver_; }
  void ShowWait(const std::string& program) { owner_.waiting(program); }

  // Starts "<name>.exe" in the program folder without a window. parameters is its only argument; it gets none if
  // parameters is empty. The program runs only if the result is host::kStarted.
  int Start(const std::string& name, const std::string& parameters);
  // Like Start, but looks for the program in folder first and runs it there.
  int StartIn(const std::string& folder, const std::string& name, const std::string& parameters);
  // Like Start, but first copies the twin to the program file if that is missing.
  int EnsureAndStart(const std::string& name, const std::string& parameters);

  // Called once in each round of a wait; returning true ends the wait.
  using Condition = std::function<bool()>;
  static constexpr double kNoTimeout = 0;
  // Waits until no process runs whose name starts with program ("PicHandler.exe"), in any folder, until condition
  // returns true, or until timeout seconds have passed. condition is called once more after the process has exited, so
  // that it sees the last action of the helper.
  // If the user stops the run, the process is killed if it is one of the program folder; other processes of the name
  // are not waited for.
  WaitResult Wait(const std::string& program, const Condition& condition = {}, double timeout = kNoTimeout);

 private:
  void SleepPumping(double seconds);

  host::Host& host_;
  ToolsOwner owner_;
  host::Saver saver_;
};

// The failure of a call whose helper did not start.
host::Status NotStarted(const std::string& helper);
// The failure of a call that the user stopped.
host::Status Interrupted();

// Waits that many seconds of the time of day and processes window events meanwhile.
// The time is computed in single precision. If the clock jumps back, as at midnight, the wait ends at once.
void PauseSeconds(host::Host& host, float seconds);

}  // namespace quillon::tools
