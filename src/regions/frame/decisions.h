// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "host/files/file_stamp.h"
#include "host/journal.h"
#include "job/program.h"

namespace quillon::regions {

// What can be done to a picture before it is decided about.
inline constexpr char kTurnedLeft = 'A';
inline constexpr char kTurnedRight = 'Q';
inline constexpr char kGrown = 'S';

// What the user decided at one picture of a manual run.
struct Decision {
  std::array<std::string, 4> margins;  // texts of TCutValue
  bool skip = false;                   // SkipCutThisImage
  std::string steps;                   // what was done to the picture, in its order

  bool operator==(const Decision&) const = default;
};

std::string TextOf(const Decision& decision);
std::optional<Decision> DecisionFrom(const std::string& text);

// The decisions of a manual run, written down one by one, so that a run that was stopped, killed or lost its power can
// be gone on with. A run is the same when its pictures, folders and kind of output are. Without a journal nothing is
// remembered.
class Decisions {
 public:
  explicit Decisions(job::Program& program) : program_(program) {}

  // At the first picture of a run: asks, where decisions were left, whether to go on behind them. False when the user
  // wants no run.
  bool Begin();
  bool Begun() const { return begun_; }

  // What was decided for the source in an earlier part of the run, while it is unchanged.
  std::optional<Decision> Of(const std::string& source) const;
  // True when an earlier part of the run has cut the source in its place: it is not as it was when it was decided
  // about, but as that part left it.
  bool CutInPlace(const std::string& source) const;
  void Decided(const std::string& source, const Decision& decision);
  // Behind the cut of the picture that was decided about last.
  void NoteCut();
  // A run that came to its end is forgotten.
  void End(bool complete);

 private:
  std::string JobText() const;
  // The stamp that was written down under key; nothing if there is none.
  std::optional<host::FileStamp> StampIn(const std::string& source, const char* key) const;
  void WriteStamp(const std::string& source, const char* key);
  // The number of the first listed picture without a decision, 0 where there is none or no list.
  std::size_t FirstOpen() const;

  job::Program& program_;
  std::unique_ptr<host::Journal> journal_;
  bool begun_ = false;
  std::string last_;  // decided about, and not yet noted as cut
};

}  // namespace quillon::regions
