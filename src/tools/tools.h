// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

#include "host/host.h"

namespace quillon::tools {

// Where programs for all users lie.
inline constexpr const char* kSystemFolder = "/usr/lib/quillon";

// What the waits for helpers ask of the one who runs them.
struct ToolsOwner {
  // Whether the user wants everything to end.
  std::function<bool()> stopped = [] { return false; };
  // Gives up for the user: a full disk that is not to be tried again.
  std::function<void()> stop = [] {};
  // Says what is waited for, once a wait lasts; "" when it is over.
  std::function<void(const std::string& program)> waiting = [](const std::string&) {};
};

// How a wait ended.
enum class Waited {
  Gone,     // no process of the name runs
  Done,     // the look between two turns was satisfied
  Limit,    // the time was up; the process may still run
  Stopped,  // the user wants to end: the process was ended
};

// Starts helpers and waits for them. A wait gives the message loop its turns and rests between its looks, so that it
// takes little of the processor; a rest that grows long has turns within it.
class Tools {
 public:
  explicit Tools(host::Host& host, ToolsOwner owner = {});

  host::Host& World() { return host_; }
  const std::string& App() const { return host_.programFolder; }
  std::string AppPath(const std::string& entry) const;
  bool Stopped() const { return owner_.stopped(); }
  void Stop() { owner_.stop(); }
  void ShowWait(const std::string& program) { owner_.waiting(program); }

  // Starts "<name>.exe" hidden in the program folder, with parameters as its only argument (none where they are
  // empty). host::kStarted, and nothing else, means that it runs.
  int Start(const std::string& name, const std::string& parameters);
  // As Start, in another folder, where it is looked for first.
  int StartIn(const std::string& folder, const std::string& name, const std::string& parameters);
  // The copy of the twin is put there where it is missing, then as Start.
  int EnsureAndStart(const std::string& name, const std::string& parameters);

  // Called once each turn; true ends the wait.
  using Look = std::function<bool()>;
  static constexpr double kNoLimit = 0;
  // Turns until no process runs whose name begins with program ("PicHandler.exe"), wherever it comes from, until look
  // is satisfied or limit seconds are over. What a helper did last is still seen by a look after its end. A user who
  // wants to end has the process ended, where it is ours, and is not kept waiting for others of the name.
  Waited Wait(const std::string& program, const Look& look = {}, double limit = kNoLimit);

  // A copy in which a full disk is asked about, under the program's title; a refused retry stops.
  host::Status CopyAsking(const std::string& from, const std::string& to);

 private:
  void Rest(double seconds);

  host::Host& host_;
  ToolsOwner owner_;
};

// What a call fails with whose helper did not start.
host::Status NotStarted(const std::string& helper);
// What a call fails with that the user ended.
host::Status Interrupted();

}  // namespace quillon::tools
