// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/gif/fgifcut.h"

namespace quillon::formats {

FGifCut::FGifCut(job::Program& program) : Window("FGifCut", "动态Gif裁剪选项"), program_(program) {
  ChHighGifCut.SetHandler([this] { ShowLogoMode(); });
  ChNoCutGif.SetHandler([this] { ChNoCutGif_Click(); });
}

void FGifCut::OnLoad() {
  program_.flags.GifOptionsLoaded = true;
  ShowLogoMode();
}

void FGifCut::ShowLogoMode() {
  program_.flags.GifLogoOnly = RemovesLogo();
  program_.form1.ShowFrame();
}

void FGifCut::ChNoCutGif_Click() {
  const bool on = ChNoCutGif.On();
  const double width = program_.flags.PreviewImageWidth;
  const double height = program_.flags.PreviewImageHeight;
  auto& margins = program_.form1.TCutValue;
  margins[0].SetNumber(1);
  margins[1].SetNumber(1);
  margins[2].SetNumber(on ? width : 0.8 * width);
  margins[3].SetNumber(on ? height : 0.9 * height);
  for (std::size_t i = 0; i < marginsSet_.size(); ++i) marginsSet_[i] = margins[i].Value();
  ShowLogoMode();
}

bool FGifCut::LogoFramed() const {
  const auto& margins = program_.form1.TCutValue;
  for (std::size_t i = 0; i < marginsSet_.size(); ++i) {
    if (margins[i].Value() != marginsSet_[i]) return true;
  }
  return false;
}

}  // namespace quillon::formats
