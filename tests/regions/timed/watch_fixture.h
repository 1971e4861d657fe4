// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "regions/regions_fixture.h"

namespace quillon::regions {

// A watch over the folder "in", with the margins 10, 20, 30 and 40 (top, left, right, bottom).
class CutTimeTest : public RegionsTest {
 protected:
  void SetUp() override {
    RegionsTest::SetUp();
    ASSERT_TRUE(world.files.MakeFolders(In("")));
    program.ShowWindow("FCutTime");
    Put("FCutTime.LDir", world.folder.Path("in"));
    Put("FCutTime.CmbType", "0");
    AnswerStop();
    Fill("10", "20", "30", "40");
  }
  virtual void AnswerStop() { world.boxes.Answer("终止定时裁剪？", host::Reply::Ok); }
  // Presses the start and, once done() holds, the stop. done is asked at every turn.
  void WatchUntil(const std::function<bool()>& done) {
    constexpr int kMostTurns = 20000;
    int turns = 0;
    bool stopped = false;
    const auto act = std::make_shared<std::function<void()>>([&, this] {
      if (!window.Running() || stopped) return;
      if (!done() && ++turns < kMostTurns) return;
      stopped = true;
      EXPECT_LT(turns, kMostTurns) << "the watch did not come to its end";
      window.CmdStop_Click();
    });
    acts_.push_back(act);
    world.pump.EveryTurn([act] {
      if (*act) (*act)();
    });
    Click("FCutTime.CmdDo");
    *act = nullptr;
  }
  // Until the rounds have gone over the folder that many times.
  void WatchFor(double seconds) {
    const double end = world.clock.Seconds() + seconds;
    WatchUntil([this, end] { return world.clock.Seconds() >= end; });
  }
  std::vector<std::string> InNames() const { return world.folder.Names("in"); }
  void Region(const std::string& top, const std::string& left, const std::string& right, const std::string& bottom) {
    Fill(top, left, right, bottom);
    Click("FCutTime.CmdAdd");
  }

  FCutTime& window = regions.fCutTime;
  std::vector<std::shared_ptr<std::function<void()>>> acts_;
};

}  // namespace quillon::regions
