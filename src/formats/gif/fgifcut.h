// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "controls/values.h"
#include "controls/window.h"
#include "job/program.h"

namespace quillon::formats {

// The options of cut mode 1. They count once the window has been loaded; hiding it keeps them.
class FGifCut : public controls::Window {
 public:
  explicit FGifCut(job::Program& program);

  controls::CheckBox ChHighGifCut{
      *this, "ChHighGifCut", {.caption = "高清裁剪", .tooltip = "默认裁剪生成的动态Gif跟原来的存在色差"}};
  // Only counts together with ChHighGifCut.
  controls::CheckBox ChNoCutGif{
      *this,
      "ChNoCutGif",
      {.caption = "去Logo不裁剪", .tooltip = "仅以局部模糊的方式去掉Gif上的Logo图标，不进行尺寸画面裁剪"}};

  // Return whether the option is on and counts.
  bool HighQuality() const { return program_.flags.GifOptionsLoaded && ChHighGifCut.On(); }
  bool RemovesLogo() const { return HighQuality() && ChNoCutGif.On(); }
  // Returns whether the margins were changed after ChNoCutGif has set them. Those that it sets may name a region of a
  // picture that is larger than the one in the preview, which nobody wants to lose.
  bool LogoFramed() const;

 protected:
  void OnLoad() override;

 private:
  // Notes in the flags whether a run removes a logo, and shows what it makes of the picture.
  void ShowLogoMode();
  // Puts the margins to 1, 1 and, when it is switched on, to the size of the picture in the preview, of which nothing
  // is left until the user draws a frame; when it is switched off, to 0.8 of the width and 0.9 of the height.
  void ChNoCutGif_Click();

  job::Program& program_;
  std::array<std::string, 4> marginsSet_;  // by ChNoCutGif
};

}  // namespace quillon::formats
