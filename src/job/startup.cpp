// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// How the program starts. The order matters: each step relies on the steps before it.
#include "job/program.h"
#include "job/settings/geometry.h"
#include "job/windows/file_intake.h"
#include "tools/processes.h"
#include "tools/twins.h"

namespace quillon::job {
namespace {

constexpr int kDefaultDpi = 300;
constexpr float kSheetWidthCm = 32.0F;
constexpr float kSheetHeightCm = 46.4F;
// The area of FCutPre before it has shown a picture.
constexpr base::Size kPreviewBox{640, 480};

// A missing helper is reported by the option that needs it.
void CopyTwinQuietly(host::Host& host, const char* name) { static_cast<void>(tools::CopyTwin(host, name)); }

}  // namespace

bool Program::Start() {
  if (!host.instance.Claim()) {
    host.boxes.Beep();
    ended_ = true;
    return false;
  }
  ReadScreen();
  CopyTwinQuietly(host, "PicCutConverter");
  EndLeftOverHelpers();
  images.ImageWizardStartUp();
  ShowDesktopPicture();
  for (controls::ComboBox* list :
       {&form1.CmbKeepCut, &form1.CmbOutType, &form1.CmbCutMode, &form1.CmbCutStyle, &form1.CmbDPI}) {
    list->Select(0);
  }
  if (fCutPre.preview.Picture().Empty() && !host.screen.DesktopSize().Empty()) ShowPicture("", kPreviewBox);
  form1.ChCutA.Set(true);
  for (const char* name : {"QxImgTool", "PicHandler", "TessaExifHandler", "SavePicsToTiff"})
    CopyTwinQuietly(host, name);
  ReadFolders();
  fCutPre.Show();
  const int sheetDpi = flags.OutDpi != 0 ? flags.OutDpi : kDefaultDpi;
  flags.SheetWidth = CmToPixels(kSheetWidthCm, sheetDpi);
  flags.SheetHeight = CmToPixels(kSheetHeightCm, sheetDpi);
  if (flags.ArrayLoaded) ShowWindow("FArray");
  WriteCanvas();
  if (flags.OutDpi == 0) flags.OutDpi = kDefaultDpi;
  ShowEffects();
  form1.MenuCut.SetEnabled(true);
  host.files.SweepDrafts(host.programFolder);
  flags.HandlersLive = true;
  form1.Show();
  return true;
}

void Program::ReadScreen() {
  const base::Size desktop = host.screen.DesktopSize();
  if (!desktop.Empty()) flags.ScreenRatio = static_cast<double>(desktop.width) / desktop.height;
  flags.ScreenDpi = host.screen.Dpi();
}

// A helper left by a crashed run could answer for the new one.
void Program::EndLeftOverHelpers() {
  for (const char* name : {"PicCirleCut.exe", "QxImgTool.exe", "DCRebooter.exe"}) {
    tools::KillProcessByName(host, name);
  }
}

void Program::ShowDesktopPicture() {
  flags.CurrentImagePath = host.screen.Wallpaper();
  if (!host.files.IsFile(flags.CurrentImagePath)) return;
  ShowInPreview(flags.CurrentImagePath);
  // If the wallpaper cannot be decoded, the preview is unchanged.
  static_cast<void>(images.LoadImageFromFile(flags.CurrentImagePath, flags.FirstImageHandle));
}

// Without a screen the preview has no area, and the margins have no maximum until a picture is shown.
void Program::ShowNoPicture() {
  flags.CurrentImagePath.clear();
  ShowPicture("", host.screen.DesktopSize().Empty() ? base::Size() : kPreviewBox);
}

void Program::ReadFolders() {
  const std::string input = Setting("LInDir");
  const std::string output = Setting("LOutDir");
  if (!input.empty()) form1.LInDir.SetText(input);
  if (!output.empty()) form1.LOutDir.SetText(output);
}

}  // namespace quillon::job
