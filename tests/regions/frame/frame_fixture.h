// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "regions/regions_fixture.h"

namespace quillon::regions {

inline constexpr const char* kRestTitle = "裁剪框预览(空格键=下一张，Ctrl=本图扩边，Z=本图不裁剪)";

// The frame over a picture of 400 x 300.
class CutFrameTest : public RegionsTest {
 protected:
  std::vector<std::string> Margins() const {
    return {form.TCutValue[0].Value(), form.TCutValue[1].Value(), form.TCutValue[2].Value(), form.TCutValue[3].Value()};
  }
  using Texts = std::vector<std::string>;
  void Drag(Point from, Point to) {
    frame.Pic_MouseDown(from);
    frame.Pic_MouseMove(to);
    frame.Pic_MouseUp();
  }
  void Drag(Point from, Point to, Grip grip) {
    frame.Pic_MouseDown(from, grip);
    frame.Pic_MouseMove(to);
    frame.Pic_MouseUp();
  }
  const job::PreviewFrame& Frame() const { return cutPre.preview.PictureFrame(); }

  CutFrame& frame = regions.cutFrame;
  job::FCutPre& cutPre = program.fCutPre;
};

// A manual run, in percent, without margins.
class ManualStepTest : public CutFrameTest {
 protected:
  void SetUp() override {
    CutFrameTest::SetUp();
    form.ChCutA.Set(false);
    CutTest::Margins(0, 0, 0, 0);
    Option("ChMamal", "1");
    ASSERT_TRUE(flags.ManualCutMode);
  }
  // Sets what the user does at the nth picture. At all others the user goes on.
  void AtPicture(int number, std::function<void()> act) { acts_[number] = std::move(act); }
  void CutWith(const std::vector<std::string>& paths) {
    world.pump.EveryTurn([this] {
      if (!frame.Waiting() || flags.ManualStepDone) return;
      if (++picture_ > 20) flags.StopRequested = true;
      const auto act = acts_.find(picture_);
      if (act != acts_.end()) {
        act->second();
      } else {
        cutPre.CmdNext.UserClick();
      }
    });
    Cut(paths);
  }

  std::map<int, std::function<void()>> acts_;
  int picture_ = 0;
};

}  // namespace quillon::regions
