// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What can be used under which parameters, in one place: it follows from their values alone, whatever way led there.
#include "job/program.h"

namespace quillon::job {
namespace {

void ShowModes(Form1& form, const FBaseOpt& options) {
  const auto mode = Selected<CutMode>(form.CmbCutMode);
  const bool normal = mode == CutMode::Normal;
  form.menuNormalCut.SetEnabled(normal && !options.ChMulCut.On());
  form.MenuGifCut.SetEnabled(mode == CutMode::Gif);
  form.MenuGifCutOps.SetEnabled(mode == CutMode::Gif);
  form.MenuPngCut.SetEnabled(mode == CutMode::Png);
  form.MenuPngCutOps.SetEnabled(mode == CutMode::Png);
  form.MenuPdfCut.SetEnabled(mode == CutMode::Pdf);
  form.MenuPdfOps.SetEnabled(mode == CutMode::Pdf);
  form.MenuPenHui.SetEnabled(mode == CutMode::PenHui);
  form.MenuPenHuiCut.SetEnabled(mode == CutMode::PenHui);
  form.MenuTiffCut.SetEnabled(mode == CutMode::Tiff);
  form.MenuTifCutOps.SetEnabled(mode == CutMode::Tiff);
  form.MenuColorCut.SetEnabled(mode == CutMode::Colour);
  form.MenuChSizeFormat.SetEnabled(normal);
  form.MenuExtentAndCut.SetEnabled(normal);
  form.MenuBaseOptions.SetEnabled(normal || mode == CutMode::Pdf || mode == CutMode::Tiff);
  form.CmbOutType.SetEnabled(normal || mode == CutMode::Tiff);
  form.CmbCutStyle.SetEnabled(mode != CutMode::PenHui);
}

}  // namespace

void Program::ShowAvailability() {
  const int preset = form1.CmbKeepCut.Index();
  const bool studio = IsStudioPreset(preset);
  const bool frameOnly = fBaseOpt.ChFrmOnly.On() && preset != kFrameOnlyPreset;
  const bool pixels = form1.ChCutA.On();
  const bool fixed = form1.ChFixCut.On();

  ShowModes(form1, fBaseOpt);
  form1.MenuUnitConvert.SetEnabled(pixels && preset == kCustomSize);
  form1.MenuReadFiles.SetEnabled(!flags.LargeCapacityMode);
  form1.ChFixCut.SetEnabled(pixels && !frameOnly);
  form1.ChCutAndArray.SetEnabled(pixels && fixed);
  for (controls::TextBox& side : form1.TFixWH) {
    side.SetEnabled(fixed && (preset == kCustomSize || form1.ChAddToSize.On()));
  }
  form1.ChAddToSize.SetEnabled(preset == kFrameOnlyPreset);
  form1.ChAutoZoom.SetEnabled(!studio);
  form1.ChAutoCenter.SetEnabled(preset != kFrameOnlyPreset);
  form1.TQuality.SetEnabled(form1.ChJpgComp.On());

  FBaseOpt& options = fBaseOpt;
  options.ChAutoCenter.SetEnabled(preset != kFrameOnlyPreset);
  options.ChAddBoard.SetEnabled(!studio);
  for (controls::CheckBox* box : {&options.ChMamal, &options.ChMulCut, &options.ChCutAndZoom, &options.ChZoomAndCut,
                                  &options.ChSplit, &options.ChToWB, &options.ChKeepExif}) {
    box->SetEnabled(!studio && !frameOnly);
  }
  for (controls::CheckBox* box :
       {&options.ChClsWhite, &options.ChClsBlack, &options.ChToGray, &options.ChInvert, &options.ChRotateCut}) {
    box->SetEnabled(!frameOnly);
  }
  options.ChKeepCut.SetEnabled(!fixed && !frameOnly);
  const int rotation = options.CmbRotate.Index();
  options.CmbRotate.SetEnabled(!frameOnly);
  options.TAngle.SetEnabled(!frameOnly && (rotation == kOwnAngle || options.ChRotateCut.On()));
  options.ChRecover.SetEnabled(!frameOnly && (rotation > 0 || options.ChRotateCut.On()));
  options.TSmalS[4].SetEnabled(options.ChSplit.On());
  options.TSmalS[5].SetEnabled(options.ChSplit.On());
}

}  // namespace quillon::job
