// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "formats/formats.h"
#include "job/cut_fixture.h"

namespace quillon::formats {

// A program in mode 2 that cuts by pixels.
class PngTest : public job::CutTest {
 protected:
  void SetUp() override {
    job::CutTest::SetUp();
    Put("ChCutA", "1");
    Put("CmbCutMode", "2");
    program.fCutPre.preview.ShowPicture("", {1000, 1000});
    flags.PreviewImageWidth = flags.PreviewImageHeight = 1000;
    form.ShowMarginLimits();
    PixelMargins(10, 20, 31, 41);
  }
  void PixelMargins(double left, double top, double right, double bottom) {
    const double values[] = {left, top, right, bottom};
    for (std::size_t i = 0; i < 4; ++i) form.TCutValue[i].SetNumber(values[i]);
  }
  void Run(const std::vector<std::string>& paths) {
    List(paths);
    Click("MenuPngCut");
  }
  // Whether the file is a png of 8 bits with alpha.
  bool IsRgba(const std::string& name) const {
    const std::string bytes = world.folder.Read(name);
    return bytes.size() > 26 && bytes.substr(1, 3) == "PNG" && bytes[24] == 8 && bytes[25] == 6;
  }
  void FixedSize(const std::string& width, const std::string& height) {
    form.TFixWH[0].SetText(width);
    form.TFixWH[1].SetText(height);
  }

  Formats formats{program};
  FPngCut& tool = formats.fPngCut;
};

}  // namespace quillon::formats
