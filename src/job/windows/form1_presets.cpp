// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed cut of Form1 and the presets of its size.
#include <utility>

#include "job/program.h"
#include "job/settings/geometry.h"
#include "job/windows/form1.h"

namespace quillon::job {
namespace {

constexpr const char* kStudioQuality = "98";
constexpr const char* kBoard = "5";
constexpr const char* kWideBoard = "43";
constexpr int kFixedBorderStyle = 15;
constexpr const char* kStudioSets = "所选的固定尺寸已指定本项";
constexpr const char* kNeedsBoard = "请先启用“裁剪后加边框”";

void SetBoard(FBaseOpt& options, const char* millimetres) {
  for (controls::TextBox& side : options.TBoard) side.SetText(millimetres);
}

}  // namespace

void Form1::CmbKeepCut_Click() {
  const int entry = CmbKeepCut.Index();
  const bool studio = IsStudioPreset(entry);
  // The window is loaded before the size is set, since only a loaded one mirrors the size.
  if (studio) program_.fBaseOpt.Show();
  if (const auto size = ParsePreset(CmbKeepCut.Text())) {
    const int dpi = program_.flags.OutDpi != 0 ? program_.flags.OutDpi : program_.flags.ScreenDpi;
    TFixWH[0].SetNumber(CmToPixels(size->first, dpi));
    TFixWH[1].SetNumber(CmToPixels(size->second, dpi));
  }
  ChAddToSize.Set(entry == kFrameOnlyPreset);
  const int before = std::exchange(lastPreset_, entry);
  if (before == kFrameOnlyPreset) program_.fBaseOpt.ChFrmOnly.Set(false);
  bool complete = true;
  if (studio) {
    complete = ApplyStudioPreset();
    ApplyBorderPreset(entry);
  } else {
    ChOver.Set(false);
    ChCutAndArray.Set(false);
    if (IsStudioPreset(before)) FreeFrameOnly();
  }
  if (entry == kFrameOnlyPreset) {
    complete = program_.ShowWindow("FConverter") && complete;
  } else if (entry != kCustomSize) {
    program_.HideWindow("FConverter");
  }
  program_.ShowAvailability();
  program_.ShowAsCut();
  if (!complete) program_.AskMissingResource();
}

bool Form1::ApplyStudioPreset() {
  FBaseOpt& options = program_.fBaseOpt;
  ChAutoZoom.Set(true);
  ChOver.Set(true);
  if (program_.manualFrame) options.ChMamal.Set(true);
  TQuality.SetText(kStudioQuality);
  for (controls::CheckBox* box : {&options.ChMulCut, &options.ChCutAndZoom, &options.ChZoomAndCut, &options.ChSplit,
                                  &options.ChToWB, &options.ChKeepExif}) {
    box->Set(false);
  }
  ChFull.Set(true);
  if (program_.sheets) ChCutAndArray.Set(true);
  return program_.manualFrame && program_.sheets;
}

void Form1::ApplyBorderPreset(int entry) {
  FBaseOpt& options = program_.fBaseOpt;
  if (entry == kFrameOnlyPreset) {
    ChAutoCenter.Set(false);
    options.ChFrmOnly.SetTag("1");
    options.ChFrmOnly.Set(true);
  } else {
    options.ChFrmOnly.Set(false);
  }
  options.ChAddBoard.Set(entry != kPresetB);
  options.ChFrmOnly.SetEnabled(false, kStudioSets);
  if (entry == kPresetB) {
    SetBoard(options, "0");
  } else if (entry != kPresetA || !firstPresetSeen_) {
    SetBoard(options, kBoard);
  }
  if (entry == kPresetA) firstPresetSeen_ = true;
  if (entry == kPresetC) options.TBoard[3].SetText(kWideBoard);
  if (entry == kPresetD) options.TBoard[2].SetText(kWideBoard);
}

void Form1::FreeFrameOnly() {
  FBaseOpt& options = program_.fBaseOpt;
  options.ChFrmOnly.SetEnabled(options.ChAddBoard.On() || options.ChFrmOnly.On(), kNeedsBoard);
}

void Form1::ChFixCut_Click() {
  const bool on = ChFixCut.On();
  FBaseOpt& options = program_.fBaseOpt;
  ChAutoZoom.Set(false);
  if (!on) {
    ChAutoCenter.Set(false);
    ChCutAndArray.Set(false);
  }
  CmbKeepCut.Select(kCustomSize);
  CmbDPI.Select(on ? kDpi300Entry : 0);
  program_.fCutPre.preview.SetBorderStyle(on ? kFixedBorderStyle : 0);
  options.ChKeepCut.Set(on);
  if (!on) FreeFrameOnly();
  options.ChRecover.Set(on && options.ChRotateCut.On() && Selected<CutMode>(CmbCutMode) == CutMode::Normal);
  program_.ShowAvailability();
  program_.ShowAsCut();
}

}  // namespace quillon::job
