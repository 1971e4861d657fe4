// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cut_settings.h"

#include <gtest/gtest.h>

namespace quillon::job {
namespace {

TEST(TurnAngle, IsThatOfTheFirstOptionThatTurns) {
  struct Row {
    int rule;
    bool rotateCut;
    double own;
    base::Size size;
    double byRule;
    double byBoth;
  };
  constexpr Row kRows[] = {
      {0, false, 30, {40, 20}, 0, 0},     {1, false, 30, {40, 20}, 90, 90}, {1, false, 30, {20, 40}, 0, 0},
      {4, false, 30, {20, 40}, -90, -90}, {5, false, 30, {40, 20}, 30, 30}, {5, false, 0, {40, 20}, 0, 0},
      {0, true, 30, {20, 20}, 0, 30},     {0, true, 0, {20, 20}, 0, 0},     {1, true, 30, {40, 20}, 90, 90},
      {1, true, 30, {20, 40}, 0, 30},
  };
  for (const Row& row : kRows) {
    CutSettings options;
    options.rotateRule = row.rule;
    options.rotateCut = row.rotateCut;
    options.angle = row.own;
    EXPECT_EQ(RuleAngle(options, row.size), row.byRule) << row.rule << row.rotateCut;
    EXPECT_EQ(TurnAngle(options, row.size), row.byBoth) << row.rule << row.rotateCut;
  }
}

}  // namespace
}  // namespace quillon::job
