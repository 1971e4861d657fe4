// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/fcutpre.h"

namespace quillon::job {

FCutPre::FCutPre() : Window("FCutPre", kPreviewCaption) {
  ChHideShow.SetHandler([this] { ChHideShow_Click(); });
  LockButtons();
}

void FCutPre::Close() {
  if (!CmdNext.OwnEnabled()) Unload();
}

void FCutPre::OnLoad() {
  for (controls::Button* button : {&CmdRot90, &CmdRot270}) button->SetTag("");
}

void FCutPre::LockButtons() {
  for (controls::Button* button : {&CmdNext, &CmdNotCut, &CmdAddBoard, &CmdRot90, &CmdRot270}) {
    button->SetEnabled(false, "手动裁剪停在一张图片上时才能用");
  }
}

void FCutPre::ChHideShow_Click() {
  for (controls::Control* control :
       std::initializer_list<controls::Control*>{&HS, &VS, &CmdNext, &CmdNotCut, &CmdAddBoard, &CmdRot90, &CmdRot270}) {
    control->SetVisible(!ChHideShow.On());
  }
}

}  // namespace quillon::job
