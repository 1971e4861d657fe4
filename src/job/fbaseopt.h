// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/values.h"
#include "controls/window.h"

namespace quillon::job {

class Program;

// The advanced options. Nothing here counts before the window was loaded once (Flags::AdvancedOptionsLoaded).
class FBaseOpt : public controls::Window {
 public:
  explicit FBaseOpt(Program& program);

  controls::Frame FrameRotate;
  controls::ComboBox CmbRotate;
  controls::TextBox TAngle;
  controls::CheckBox ChRotateCut;
  controls::CheckBox ChRecover;
  controls::Frame FrameZoom;
  controls::ComboBox CmbZoom;
  controls::CheckBox ChZoomAndCut;
  controls::CheckBox ChCutAndZoom;
  controls::Frame FrameSize;
  controls::CheckBox ChKeepCut;
  controls::CheckBox ChAutoCenter;
  controls::CheckBox ChMulCut;
  controls::CheckBox ChMamal;
  controls::CheckBox ChSplit;
  controls::CheckBox ChFilter;
  // (0), (1) thresholds of ChFilter; (2), (3) the fixed size, height and width; (4), (5) counts of ChSplit.
  controls::ControlArray<controls::TextBox, 6> TSmalS;
  controls::Frame FrameBoard;
  controls::CheckBox ChAddBoard;
  controls::CheckBox ChFrmOnly;
  controls::ControlArray<controls::TextBox, 4> TBoard;  // mm: left, top, right, bottom
  controls::ColourBox PBoardColor;
  controls::Frame FrameColour;
  controls::CheckBox ChToGray;
  controls::CheckBox ChToWB;
  controls::CheckBox ChInvert;
  controls::CheckBox ChToCMYK;
  controls::ComboBox CmbCMYK;
  controls::CheckBox ChClsWhite;
  controls::CheckBox ChClsBlack;
  controls::Frame FrameOutput;
  controls::ComboBox CmbExtCase;
  controls::ComboBox CmbDPI;
  controls::CheckBox ChKeepExif;
  controls::CheckBox ChBig;
  controls::CheckBox ChOmitFolds;

 protected:
  void OnLoad() override;

 private:
  void ConnectHandlers();
  void ChFrmOnly_Click();
  void CmbRotate_Click();
  void TSmalS_Change(std::size_t index);
  void CmbDPI_Click();
  void ChMamal_Click();
  void ChMulCut_Click();
  void ChSplit_Click();
  void ChToCMYK_Click();
  void ChAddBoard_Click();

  Program& program_;
};

}  // namespace quillon::job
