// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "job/cut_fixture.h"
#include "regions/regions.h"

namespace quillon::regions {

// A program with the windows of the regions library.
class RegionsTest : public job::CutTest {
 protected:
  void SetUp() override {
    job::CutTest::SetUp();
    form.ChCutA.Set(true);
    program.fCutPre.preview.ShowPicture("", {400, 300});
    form.ShowMarginLimits();
  }

  // Sets the margins of the main window, given in the order of a row.
  void Fill(const std::string& top, const std::string& left, const std::string& right, const std::string& bottom) {
    form.TCutValue[1].SetText(top);
    form.TCutValue[0].SetText(left);
    form.TCutValue[2].SetText(right);
    form.TCutValue[3].SetText(bottom);
  }
  void AddRegion(int top, int left, int right, int bottom) {
    Fill(std::to_string(top), std::to_string(left), std::to_string(right), std::to_string(bottom));
    Click("FMultCut.CmdAdd");
  }
  std::string Clt(const std::string& name, const std::string& text) { return world.folder.Write(name, text); }
  void Import(const std::string& path) {
    world.dialogs.ChooseFiles({path});
    Click("FMultCut.CmdInput");
  }
  int Boxes(const std::string& text) const { return world.boxes.Count(text); }

  Regions regions{program};
  FMultCut& window = regions.fMultCut;
};

}  // namespace quillon::regions
