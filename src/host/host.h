// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"
#include "host/boxes.h"
#include "host/files/files.h"

namespace quillon::host {

// Gives the window's message loop a turn; comes back soon.
class Pump {
 public:
  virtual ~Pump() = default;
  virtual void Turn() = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  // Local time of day in seconds, 0 up to 86400; jumps back to 0 at midnight.
  virtual double SecondsOfDay() = 0;
  // Seconds of a clock that never jumps, for measuring.
  virtual double Seconds() = 0;
  virtual void Sleep(double seconds) = 0;
};

// Per-user texts by application, section and key, shared with the helper programs. A missing value is empty. Set tells
// whether the others see the value; one that they do not see is kept for this program alone.
class Settings {
 public:
  virtual ~Settings() = default;
  virtual std::string Get(const std::string& application, const std::string& section, const std::string& key) = 0;
  virtual bool Set(const std::string& application, const std::string& section, const std::string& key,
                   const std::string& value) = 0;
};

struct ProcessFacts {
  int id = 0;
  std::string name;    // file name of the program that was started, without its folder
  std::string folder;  // folder of that program, "" when it cannot be told
  bool own = false;    // runs for this user
};

class Processes {
 public:
  virtual ~Processes() = default;
  virtual std::vector<ProcessFacts> Running() = 0;
  // Ends a process at once; false when it is gone or may not be ended.
  virtual bool End(int id) = 0;
};

// Results of a start, as callers compare them.
inline constexpr int kStarted = 42;
inline constexpr int kStartMissing = 2;
inline constexpr int kStartDenied = 5;

class Shell {
 public:
  virtual ~Shell() = default;
  // Starts a program with arguments, no shell between; kStarted, kStartMissing or kStartDenied.
  virtual int Start(const std::string& program, const std::vector<std::string>& arguments,
                    const std::string& folder) = 0;
  // Opens a folder in the file manager, shows a file in it, opens an address in the browser.
  virtual void OpenFolder(const std::string& folder) = 0;
  virtual void Reveal(const std::string& file) = 0;
  virtual void OpenBrowser(const std::string& address) = 0;
};

class Screen {
 public:
  virtual ~Screen() = default;
  virtual base::Size DesktopSize() = 0;
  virtual int Dpi() = 0;
  // The desktop picture, "" where there is none.
  virtual std::string Wallpaper() = 0;
};

// Whether this is the only running program; the claim ends with the process, however that ends.
class Instance {
 public:
  virtual ~Instance() = default;
  virtual bool Claim() = 0;
};

// The world as the program sees it.
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
