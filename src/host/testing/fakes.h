// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "host/host.h"

namespace quillon::host::testing {

// Counts the turns and runs what a test scheduled for them.
class CountingPump final : public Pump {
 public:
  // Runs act inside the nth turn from now on, counted from 1. Functions for the same turn run in the order of the
  // calls.
  void OnTurn(int nth, std::function<void()> act) { acts_.emplace(turns_ + nth, std::move(act)); }
  // Runs act inside every turn, before the scheduled functions.
  void EveryTurn(std::function<void()> act) { every_.push_back(std::move(act)); }
  int Turns() const { return turns_; }

  void Turn() override;

 private:
  int turns_ = 0;
  std::vector<std::function<void()>> every_;
  std::multimap<int, std::function<void()>> acts_;
};

// A clock that advances only on request. Starts at noon.
class FakeClock final : public Clock {
 public:
  void SetSecondsOfDay(double seconds) { day_ = seconds; }
  // Advances both clocks by seconds. The time of day wraps at midnight.
  void Advance(double seconds);
  // The total of all Sleep calls, in seconds.
  double Slept() const { return slept_; }

  double SecondsOfDay() override { return day_; }
  double Seconds() override { return steady_; }
  void Sleep(double seconds) override;

 private:
  double day_ = 12 * 3600;
  double steady_ = 0;
  double slept_ = 0;
};

// Settings in memory.
class MemorySettings final : public Settings {
 public:
  // Called after each Set, like a helper program that polls the settings.
  void OnSet(std::function<void(const std::string& key, const std::string& value)> act) { act_ = std::move(act); }
  // From now on Set reports that others cannot see the value.
  void Refuse() { refuses_ = true; }

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;

 private:
  std::map<std::tuple<std::string, std::string, std::string>, std::string> values_;
  std::function<void(const std::string&, const std::string&)> act_;
  bool refuses_ = false;
};

// A list of processes that the test defines.
class ScriptedProcesses final : public Processes {
 public:
  // Adds a process that is found by the next scans calls of Running; 0 means until it is killed.
  void Add(ProcessFacts facts, int scans = 0) { all_.push_back({std::move(facts), scans == 0 ? -1 : scans}); }
  // The processes that End killed, in order.
  const std::vector<int>& Ended() const { return ended_; }
  int Scans() const { return scans_; }

  std::vector<ProcessFacts> Running() override;
  // Kills only processes of the current user.
  bool End(int id) override;

 private:
  struct Entry {
    ProcessFacts facts;
    int left;  // -1: no end
  };

  std::vector<Entry> all_;
  std::vector<int> ended_;
  int scans_ = 0;
};

// Starts nothing and records every call.
class RecordingShell final : public Shell {
 public:
  struct Started {
    std::string program;
    std::vector<std::string> arguments;
    std::string folder;
    int result;
  };

  // Sets the result of starts whose program contains the text. The default is kStarted.
  void SetResult(const std::string& programHolds, int result) { results_.emplace_back(programHolds, result); }
  // Called by every successful start, in place of the program.
  void OnStart(std::function<void(const Started&)> act) { act_ = std::move(act); }

  const std::vector<Started>& Starts() const { return starts_; }
  const std::vector<std::string>& Folders() const { return folders_; }
  const std::vector<std::string>& Revealed() const { return revealed_; }
  const std::vector<std::string>& Addresses() const { return addresses_; }

  int Start(const std::string& program, const std::vector<std::string>& arguments, const std::string& folder) override;
  void OpenFolder(const std::string& folder) override { folders_.push_back(folder); }
  void Reveal(const std::string& file) override { revealed_.push_back(file); }
  void OpenBrowser(const std::string& address) override { addresses_.push_back(address); }

 private:
  std::vector<std::pair<std::string, int>> results_;
  std::function<void(const Started&)> act_;
  std::vector<Started> starts_;
  std::vector<std::string> folders_;
  std::vector<std::string> revealed_;
  std::vector<std::string> addresses_;
};

// A screen of 1920 x 1080 pixels at 96 dpi without a desktop picture, unless a test changes it.
class FixedScreen final : public Screen {
 public:
  base::Size size{1920, 1080};
  int dpi = 96;
  std::string wallpaper;

  base::Size DesktopSize() override { return size; }
  int Dpi() override { return dpi; }
  std::string Wallpaper() override { return wallpaper; }
};

// Reports the only instance, unless a test changes it.
class FakeInstance final : public Instance {
 public:
  bool only = true;

  bool Claim() override { return only; }
};

// Returns true if every other thread of this process is blocked. A test that advances its clock only then gives all
// threads the time they need, however busy the machine is, and none to a thread that hangs.
bool OtherThreadsWait();

}  // namespace quillon::host::testing
