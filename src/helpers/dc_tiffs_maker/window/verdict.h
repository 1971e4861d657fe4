// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::helpers {

enum class Ending { Done, Failed, Killed, Stopped, NotStarted };

// How the process that makes a TIFF ended.
struct MakerEnd {
  Ending ending = Ending::NotStarted;
  std::string report;                // its last progress text, or the text of the failure
  std::vector<std::string> omitted;  // one line for each picture that could not be read
};

// The numbers in a progress text: "2/9" means that the second of nine pictures is in progress. nullopt if there are
// none.
struct PictureProgress {
  int number = 0;
  int count = 0;
};
std::optional<PictureProgress> ParseProgress(std::string_view report);

enum class Mood { Plain, Good, Bad };

// One sentence for the user about how the run ended and, if necessary, what to do next.
struct Verdict {
  Mood mood = Mood::Plain;
  std::string sentence;
};
Verdict VerdictOf(const MakerEnd& end, const std::string& target);

}  // namespace quillon::helpers
