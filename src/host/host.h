// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "host/boxes.h"
#include "host/companion.h"
#include "host/files/files.h"

namespace quillon::host {

// Processes pending events of the windows. Turn() returns after the events that are due; it does not wait for more.
class Pump {
 public:
  virtual ~Pump() = default;
  virtual void Turn() = 0;
};

// The clock. Waits go through it, so that tests need not really wait.
class Clock {
 public:
  virtual ~Clock() = default;
  // The local time of day in seconds, from 0 to below 86400. Restarts at 0 at midnight.
  virtual double SecondsOfDay() = 0;
  // Seconds of a monotonic clock with an arbitrary start, for measuring durations.
  virtual double Seconds() = 0;
  // Returns after at least that many seconds, at once if seconds is 0 or negative.
  virtual void Sleep(double seconds) = 0;
};

// Per-user settings, addressed by application, section and key, and shared with the helper programs. All are texts.
// Get returns "" for a missing value.
// Set returns false if other programs cannot see the value; it is then kept for this process alone.
class Settings {
 public:
  virtual ~Settings() = default;
  virtual std::string Get(const std::string& application, const std::string& section, const std::string& key) = 0;
  virtual bool Set(const std::string& application, const std::string& section, const std::string& key,
                   const std::string& value) = 0;
};

// A running process.
struct ProcessFacts {
  int id = 0;
  std::string name;    // file name of the program that was started, without its folder
  std::string folder;  // folder of that program, "" if unknown
  bool own = false;    // belongs to the current user
};

// The running processes of the system.
class Processes {
 public:
  virtual ~Processes() = default;
  // Returns the processes that run now, in no particular order.
  virtual std::vector<ProcessFacts> Running() = 0;
  // Kills a process. Returns false if it no longer exists or must not be killed.
  virtual bool End(int id) = 0;
};

// Results of Shell::Start, with the numbers that callers compare them with.
inline constexpr int kStarted = 42;
inline constexpr int kStartMissing = 2;
inline constexpr int kStartDenied = 5;

// Starts programs and opens things in the desktop's own programs.
class Shell {
 public:
  virtual ~Shell() = default;
  // Starts a program in folder without waiting for it. Arguments are passed as they are; no shell parses them.
  // Returns kStarted, kStartMissing or kStartDenied.
  virtual int Start(const std::string& program, const std::vector<std::string>& arguments,
                    const std::string& folder) = 0;
  // Starts a program file, given by its path, that answers questions of this process. May be called from any thread.
  // Returns nothing if it cannot be started; a shell without real processes never can.
  virtual std::unique_ptr<Companion> StartCompanion(const std::string& program) {
    static_cast<void>(program);
    return nullptr;
  }
  // Open a folder in the file manager, show a file in it, open an address in the browser. Failures are ignored.
  virtual void OpenFolder(const std::string& folder) = 0;
  virtual void Reveal(const std::string& file) = 0;
  virtual void OpenBrowser(const std::string& address) = 0;
};

// The screen that the program is shown on.
class Screen {
 public:
  virtual ~Screen() = default;
  virtual base::Size DesktopSize() = 0;  // in pixels
  virtual int Dpi() = 0;
  // The path of the desktop picture, "" if there is none.
  virtual std::string Wallpaper() = 0;
};

// Keeps a second instance of the program from starting. Claim() returns true if this process is the only one; the claim
// is released when the process ends, even by a crash.
class Instance {
 public:
  virtual ~Instance() = default;
  virtual bool Claim() = 0;
};

// Everything outside of the program that it may use. Passed by reference; tests replace each part by a double.
struct Host {
  Boxes& boxes;
  Dialogs& dialogs;
  Pump& pump;
  Clock& clock;
  Files& files;
  Settings& settings;
  Processes& processes;
  Shell& shell;
  Screen& screen;
  Instance& instance;
  std::string programFolder;  // writable, without a trailing separator
};

}  // namespace quillon::host
