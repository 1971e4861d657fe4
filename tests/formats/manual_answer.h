// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "job/program.h"

namespace quillon::formats {

// A manual frame whose user decides at once: 40 from the left, or "本图不裁剪".
class ManualAnswer final : public job::ManualFrame {
 public:
  explicit ManualAnswer(job::Program& program) : program_(program) { program.manualFrame = this; }
  ~ManualAnswer() override { program_.manualFrame = nullptr; }
  std::string Ask(const job::ManualPicture& picture, const std::string&) override {
    asked.push_back(picture.listedPath);
    whyNotTurned = picture.whyNotTurned;
    program_.flags.CurrentImagePath = picture.source;
    program_.flags.ManualStepDone = true;
    program_.flags.SkipCutThisImage = skip;
    program_.form1.TCutValue[0].SetNumber(40);
    return "decided";
  }
  void Shown() override {}
  host::Status ClonePicture(imaging::Image&) override { return {}; }
  void Rest() override { ++rests; }

  bool skip = false;
  std::vector<std::string> asked;
  std::string whyNotTurned;
  int rests = 0;

 private:
  job::Program& program_;
};

}  // namespace quillon::formats
