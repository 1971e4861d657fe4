// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/manual_steps.h"

#include <algorithm>
#include <array>

#include "base/path_text.h"

namespace quillon::cli {
namespace {

constexpr std::array kButtons{"CmdNext", "CmdNotCut", "CmdAddBoard", "CmdRot90", "CmdRot270"};
constexpr const char* kGoOn = "CmdNext";

}  // namespace

ManualSteps::ManualSteps(job::Program& program, const regions::CutFrame& frame, const std::vector<Answer>& answers,
                         Reporter& reporter)
    : program_(program), frame_(frame), answers_(answers), reporter_(reporter) {}

bool ManualSteps::IsButton(const std::string& reply) {
  const std::string wanted = base::ToLowerAscii(reply);
  return std::any_of(kButtons.begin(), kButtons.end(),
                     [&](const char* button) { return base::ToLowerAscii(button) == wanted; });
}

void ManualSteps::Turn() {
  if (pressing_ || !frame_.Waiting() || program_.flags.ManualStepDone) return;
  pressing_ = true;
  const std::string picture = frame_.Asked();
  for (const Answer& answer : answers_) {
    if (program_.flags.ManualStepDone) break;
    if (picture.find(answer.text) != std::string::npos && IsButton(answer.reply)) Press(picture, answer.reply);
  }
  if (!program_.flags.ManualStepDone) Press(picture, kGoOn);
  pressing_ = false;
}

// A disabled button does nothing; the event is reported and the picture goes on all the same. A user would see that a
// turn has failed; here the run passes the picture over, because it has no path any more.
void ManualSteps::Press(const std::string& picture, const std::string& button) {
  reporter_.Report(FrameEvent(picture, button));
  if (controls::Control* control = program_.fCutPre.Find(button)) static_cast<void>(control->UserClick());
  if (frame_.LastTurn()) return;
  program_.flags.CurrentImagePath.clear();
  program_.flags.ManualStepDone = true;
}

}  // namespace quillon::cli
