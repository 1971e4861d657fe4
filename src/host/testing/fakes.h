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

// Counts the turns and runs what was laid down for them.
class CountingPump final : public Pump {
 public:
  // Runs act inside the nth turn from now on, counted from 1; acts of one turn run in the order told.
  void OnTurn(int nth, std::function<void()> act) { acts_.emplace(turns_ + nth, std::move(act)); }
  // Runs act inside every turn, before the others.
  void EveryTurn(std::function<void()> act) { every_.push_back(std::move(act)); }
  int Turns() const { return turns_; }

  void Turn() override;

 private:
  int turns_ = 0;
  std::vector<std::function<void()>> every_;
  std::multimap<int, std::function<void()>> acts_;
};

// A clock that only moves when it is told to. Starts at noon.
class FakeClock final : public Clock {
 public:
  void SetSecondsOfDay(double seconds) { day_ = seconds; }
  // Both clocks go on; the time of day passes midnight.
  void Advance(double seconds);
  double Slept() const { return slept_; }

  double SecondsOfDay() override { return day_; }
  double Seconds() override { return steady_; }
  void Sleep(double seconds) override;

 private:
  double day_ = 12 * 3600;
  double steady_ = 0;
  double slept_ = 0;
};

class MemorySettings final : public Settings {
 public:
  // Runs after each Set, as a helper program that watches the store would.
  void OnSet(std::function<void(const std::string& key, const std::string& value)> act) { act_ = std::move(act); }
  // From now on nobody else sees what is set.
  void Refuse() { refuses_ = true; }

  std::string Get(const std::string& application, const std::string& section, const std::string& key) override;
  bool Set(const std::string& application, const std::string& section, const std::string& key,
           const std::string& value) override;

 private:
  std::map<std::tuple<std::string, std::string, std::string>, std::string> values_;
  std::function<void(const std::string&, const std::string&)> act_;
  bool refuses_ = false;
};

// Processes that a test makes up.
class ScriptedProcesses final : public Processes {
 public:
  // A process that is found by the next `scans` looks (0: until it is ended).
  void Add(ProcessFacts facts, int scans = 0) { all_.push_back({std::move(facts), scans == 0 ? -1 : scans}); }
  // Processes that End took away, in order.
  const std::vector<int>& Ended() const { return ended_; }
  int Scans() const { return scans_; }

  std::vector<ProcessFacts> Running() override;
  // Ends those of the user alone.
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

// Starts nothing, remembers everything.
class RecordingShell final : public Shell {
 public:
  struct Started {
    std::string program;
    std::vector<std::string> arguments;
    std::string folder;
    int result;
  };

  // The result of starts whose program holds the text; kStarted where none was told.
  void SetResult(const std::string& programHolds, int result) { results_.emplace_back(programHolds, result); }
  // Runs inside every start that succeeds, in place of the program.
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

// A desktop of 1920 x 1080 at 96 dpi without a picture, unless a test changes it.
class FixedScreen final : public Screen {
 public:
  base::Size size{1920, 1080};
  int dpi = 96;
  std::string wallpaper;

  base::Size DesktopSize() override { return size; }
  int Dpi() override { return dpi; }
  std::string Wallpaper() override { return wallpaper; }
};

// The only running program, unless a test says otherwise.
class FakeInstance final : public Instance {
 public:
  bool only = true;

  bool Claim() override { return only; }
};

}  // namespace quillon::host::testing
