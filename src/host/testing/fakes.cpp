// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/fakes.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

namespace quillon::host::testing {
namespace {

// Returns the state letter of a thread, 0 if it has ended meanwhile. In its stat file the letter is after the name,
// which is in parentheses.
char StateOf(const std::filesystem::path& task) {
  std::ifstream file(task / "stat");
  std::string stat;
  std::getline(file, stat);
  const std::size_t name = stat.rfind(") ");
  return name == std::string::npos ? '\0' : stat[name + 2];
}

}  // namespace

void CountingPump::Turn() {
  ++turns_;
  for (const auto& act : every_) act();
  // A function may schedule more, even for the current turn of a nested loop, so each is removed before it runs.
  while (!acts_.empty() && acts_.begin()->first <= turns_) {
    const auto act = std::move(acts_.begin()->second);
    acts_.erase(acts_.begin());
    act();
  }
}

void FakeClock::Advance(double seconds) {
  constexpr double kDay = 86400;
  steady_ += seconds;
  day_ = std::fmod(day_ + seconds, kDay);
}

void FakeClock::Sleep(double seconds) {
  slept_ += seconds;
  Advance(seconds);
}

std::string MemorySettings::Get(const std::string& application, const std::string& section, const std::string& key) {
  const auto found = values_.find({application, section, key});
  return found == values_.end() ? "" : found->second;
}

bool MemorySettings::Set(const std::string& application, const std::string& section, const std::string& key,
                         const std::string& value) {
  values_[{application, section, key}] = value;
  if (act_) act_(key, value);
  return !refuses_;
}

std::vector<ProcessFacts> ScriptedProcesses::Running() {
  ++scans_;
  std::vector<ProcessFacts> running;
  for (Entry& entry : all_) {
    if (entry.left == 0) continue;
    if (entry.left > 0) --entry.left;
    running.push_back(entry.facts);
  }
  return running;
}

bool ScriptedProcesses::End(int id) {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const Entry& entry) { return entry.facts.id == id; });
  if (found == all_.end() || found->left == 0 || !found->facts.own) return false;
  all_.erase(found);
  ended_.push_back(id);
  return true;
}

int RecordingShell::Start(const std::string& program, const std::vector<std::string>& arguments,
                          const std::string& folder) {
  const auto set = std::find_if(results_.begin(), results_.end(),
                                [&](const auto& result) { return program.find(result.first) != std::string::npos; });
  const Started started{program, arguments, folder, set == results_.end() ? kStarted : set->second};
  starts_.push_back(started);
  if (act_ && started.result == kStarted) act_(started);
  return started.result;
}

bool OtherThreadsWait() {
  const std::string self = std::to_string(gettid());
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    if (task.path().filename() == self) continue;
    const char state = StateOf(task.path());
    if (state == 'R' || state == 'D') return false;
  }
  return true;
}

}  // namespace quillon::host::testing
