// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "cli/batch_process.h"
#include "cli/pictures.h"

namespace quillon::cli {

namespace fs = std::filesystem;
using host::testing::TempFolder;
using testing::HasSubstr;
using Json = nlohmann::json;

// A folder with pictures and a place for outputs.
class ProgramTest : public testing::Test {
 protected:
  TempFolder folder;
  std::string out = folder.Path("out");

  void SetUp() override { fs::create_directories(out); }

  std::string Picture(const std::string& name) const { return folder.Write(name, BmpPicture(40, 30)); }
  // Many names of one picture.
  void Pictures(int count) const {
    const std::string first = Picture("in/p0.bmp");
    for (int i = 1; i < count; ++i) fs::create_hard_link(first, folder.Path("in/p" + std::to_string(i) + ".bmp"));
  }
  // A cut in percent of the given files into out, without opening it.
  std::vector<std::string> Cut(std::vector<std::string> files, std::vector<std::string> more = {}) const {
    std::vector<std::string> all{"--set", "ChCutA=0", "--out", out, "--answer", "打开输出目录=No"};
    all.insert(all.end(), more.begin(), more.end());
    all.insert(all.end(), {"--click", "menuNormalCut", "--"});
    all.insert(all.end(), files.begin(), files.end());
    return all;
  }
  Ran Run(const std::vector<std::string>& arguments) const { return RunProgram(arguments, folder.Path()); }
};

inline std::vector<Json> Events(const std::string& out) {
  std::vector<Json> events;
  std::istringstream lines(out);
  for (std::string line; std::getline(lines, line);) {
    events.push_back(Json::parse(line, nullptr, false));
    EXPECT_FALSE(events.back().is_discarded()) << line;
  }
  return events;
}

inline std::vector<Json> EventsOf(const std::string& out, const std::string& kind) {
  std::vector<Json> found;
  for (const Json& event : Events(out)) {
    if (event.value("event", "") == kind) found.push_back(event);
  }
  return found;
}

}  // namespace quillon::cli
