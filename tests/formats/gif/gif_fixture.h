// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <regex>
#include <string>
#include <vector>

#include "formats/formats.h"
#include "formats/gif/gif_math.h"
#include "job/cut_fixture.h"
#include "job/several_pages.h"
#include "tools/keys.h"

namespace quillon::formats {

// A program in mode 1 that cuts by pixels, with a helper CutMedia that obeys at once.
class GifTest : public job::CutTest {
 protected:
  void SetUp() override {
    WriteApp("CutMedia.dll");
    job::CutTest::SetUp();
    Put("ChCutA", "1");
    Put("CmbCutMode", "1");
    world.shell.OnStart([this](const auto& start) {
      if (start.program != "CutMedia.exe") return;
      calls.push_back(start.arguments.at(0));
      Obey(calls.back());
    });
  }

  // A gif of that many equal frames.
  std::string Film(const std::string& name, int width = 100, int height = 80, int frames = 3) {
    Make(name, width, height);
    return world.folder.Write("in/" + name, job::RepeatedFrame(world.folder.Read("in/" + name), frames));
  }
  void PixelMargins(double left, double top, double right, double bottom) {
    program.fCutPre.preview.ShowPicture("", {1000, 1000});
    flags.PreviewImageWidth = flags.PreviewImageHeight = 1000;
    form.ShowMarginLimits();
    const double values[] = {left, top, right, bottom};
    for (std::size_t i = 0; i < 4; ++i) form.TCutValue[i].SetNumber(values[i]);
  }
  int FramesOf(const std::string& path) {
    int frames = 0;
    const host::Status counted = program.images.FramesIn(path, frames);
    EXPECT_TRUE(counted) << counted.Why();
    return frames;
  }
  void Run(const std::vector<std::string>& paths) {
    List(paths);
    Click("MenuGifCut");
  }
  // Does what a call of the helper asks for, except for the first pass of the high quality.
  void Obey(const std::string& text) {
    static const std::regex kCall(R"re(-i "([^"]*)".*(crop|delogo)=x=(\d+):y=(\d+):w=(\d+):h=(\d+).* "([^"]*)")re");
    std::smatch part;
    if (!std::regex_match(text, part, kCall) || part[1] == fails) return;
    imaging::CropRequest request;
    request.source = part[1];
    request.destination = part[7];
    request.rect = {std::stoi(part[3]), std::stoi(part[4]), std::stoi(part[5]), std::stoi(part[6])};
    const host::Status done =
        part[2] == "crop" ? program.images.CropFrames(request) : program.images.PaintOverFrames(request);
    if (!done) Answer(done.DiskFull() ? tools::kFullDisk : done.Why());
  }
  // What the helper leaves in the settings when it fails.
  void Answer(const std::string& why) { tools::WriteKey(world.host, tools::key::kCutMedia, why); }
  std::string Tmp() const { return program.AppPath("Tmp.gif"); }
  std::string Palette() const { return program.AppPath("paletten.png"); }

  // The name of a file that CutMedia fails on.
  std::string fails;
  std::vector<std::string> calls;
  Formats formats{program};
};

}  // namespace quillon::formats
