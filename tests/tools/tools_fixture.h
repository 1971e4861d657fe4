// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host/testing/test_host.h"
#include "tools/keys.h"
#include "tools/tools.h"

namespace quillon::tools {

// A picture of one pixel.
inline std::string TinyPicture() {
  constexpr char kGif[] = "GIF89a\1\0\1\0\x80\0\0\0\0\0\xFF\xFF\xFF,\0\0\0\0\1\0\1\0\0\2\2D\1\0;";
  return {kGif, sizeof kGif - 1};
}

// A program folder with the twins of all helpers, and helpers that a test defines: their effect happens at their start,
// and they are found by a given number of process scans.
class ToolsFixture : public ::testing::Test {
 protected:
  using Act = std::function<void(const std::string& parameters)>;

  ToolsFixture() {
    world.shell.OnStart([this](const auto& start) { OnStart(start.program, Joined(start.arguments)); });
  }

  // The next starts of that program call act and run for so many process scans; 0: until the program is ended.
  void Helper(const std::string& program, int scans, Act act = {}) {
    program_ = program;
    scans_ = scans;
    act_ = std::move(act);
  }

  std::string App(const std::string& name) const { return world.host.programFolder + "/" + name; }
  void WriteApp(const std::string& name, const std::string& content) { world.folder.Write("app/" + name, content); }
  bool AppHas(const std::string& name) const { return world.folder.Exists("app/" + name); }
  std::string Key(const std::string& key) { return ReadKey(world.host, key); }
  // Program and parameters of the nth start.
  std::string Started(std::size_t nth) const {
    if (nth >= world.shell.Starts().size()) return "none";
    const auto& start = world.shell.Starts()[nth];
    return start.program + ": " + Joined(start.arguments);
  }
  static std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "" : "<>") + text;
    return all;
  }

  host::testing::TestHost world;
  bool stop = false;
  std::vector<std::string> waiting;
  Tools tools{
      world.host,
      {[this] { return stop; }, [this] { stop = true; }, [this](const std::string& name) { waiting.push_back(name); }}};

 private:
  void OnStart(const std::string& program, const std::string& parameters) {
    if (program != program_) return;
    if (scans_ >= 0) world.processes.Add({++id_, program, world.host.programFolder, true}, scans_);
    if (act_) act_(parameters);
  }

  std::string program_;
  int scans_ = 0;
  Act act_;
  int id_ = 100;
};

}  // namespace quillon::tools
