// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <map>
#include <string>

#include "cli/program_fixture.h"

namespace quillon::cli {

class WorkersTest : public ProgramTest {
 protected:
  // Returns the last result of each source; a source whose output was lost is reported twice.
  static std::map<std::string, std::string> Results(const std::string& out) {
    std::map<std::string, std::string> results;
    for (const Json& file : EventsOf(out, "file")) results[file.at("source")] = file.at("result");
    return results;
  }
  static std::size_t CountOf(const std::map<std::string, std::string>& results, const std::string& result) {
    return static_cast<std::size_t>(
        std::count_if(results.begin(), results.end(), [&](const auto& one) { return one.second == result; }));
  }
  // Checks that the sums of the end event are those of the file events.
  static void ExpectSums(const Ran& ran) {
    const auto results = Results(ran.out);
    const Json end = Events(ran.out).back();
    ASSERT_EQ(end.value("event", ""), "end");
    for (const char* result : {"written", "none", "skipped"}) {
      EXPECT_EQ(end.at(result).get<std::size_t>(), CountOf(results, result)) << result;
    }
  }
};

}  // namespace quillon::cli
