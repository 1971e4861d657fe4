// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>

namespace quillon::regions {

// What can be done to a picture before it is decided about.
inline constexpr char kTurnedLeft = 'A';
inline constexpr char kTurnedRight = 'Q';
inline constexpr char kGrown = 'S';

// What can be changed about how frames are cut: ChCutA is off, ChAsFramed is on.
inline constexpr char kByPercent = 'P';
inline constexpr char kAsFramed = 'F';

// What the user decided at one picture of a manual run.
struct Decision {
  std::array<std::string, 4> margins;  // texts of TCutValue
  bool skip = false;                   // SkipCutThisImage
  std::string steps;                   // what was done to the picture, in its order
  // What the user has changed during the run about how frames are cut: kByPercent, kAsFramed.
  std::string changes = {};

  bool operator==(const Decision&) const = default;
};

// As text for the journal of the run. It is never empty, and contains tabs between its parts.
std::string TextOf(const Decision& decision);
// Returns nothing if the text is no decision.
std::optional<Decision> DecisionFrom(const std::string& text);

}  // namespace quillon::regions
