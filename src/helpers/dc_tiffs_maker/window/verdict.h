// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::helpers {

enum class Ending { Done, Failed, Killed, Stopped, NotStarted };

// How the making of a TIFF came to its end.
struct MakerEnd {
  Ending ending = Ending::NotStarted;
  std::string told;                  // the last word of its progress, or what it failed with
  std::vector<std::string> leftOut;  // a line for each picture that could not be read
};

// "2/9" of a progress text: the second of nine pictures is being worked on.
struct PictureTold {
  int number = 0;
  int count = 0;
};
std::optional<PictureTold> PictureIn(std::string_view told);

enum class Mood { Plain, Good, Bad };

// One sentence for the user, which also says what to do where something is to be done.
struct Verdict {
  Mood mood = Mood::Plain;
  std::string sentence;
};
Verdict VerdictOf(const MakerEnd& end, const std::string& target);

}  // namespace quillon::helpers
