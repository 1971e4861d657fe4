// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/fbaseopt.h"

#include <algorithm>

#include "base/path_text.h"
#include "job/program.h"
#include "job/settings/geometry.h"

namespace quillon::job {
namespace {

constexpr const char* kFrameOnlyNote = "仅边框模式，表示不做任何裁剪和处理，其他启用的功能自动失效！";
constexpr const char* kNoColorConfigs = "找不到颜色配置文件夹 ColorConfigs，不能转CMYK！";
constexpr const char* kWholeSize = "100%";
constexpr double kLargestThreshold = 1'000'000;
constexpr const char* kThreshold = "100";
constexpr double kMostPieces = 1000;
constexpr const char* kPieces = "2";

}  // namespace

FBaseOpt::FBaseOpt(Program& program) : Window("FBaseOpt", "高级选项"), program_(program) {
  ConnectHandlers();
  ConnectChecks();
}

void FBaseOpt::OnLoad() {
  std::vector<std::string> profiles;
  for (const std::string& name : CmykProfiles()) {
    if (program_.host.files.IsFile(base::JoinPath(program_.AppPath(kColorConfigs), name))) profiles.push_back(name);
  }
  CmbCMYK.SetItems(std::move(profiles));
  program_.flags.AdvancedOptionsLoaded = true;
  ApplyFlags();
  if (CmbDPI.Index() > 0) CmbDPI_Click();
  ChAutoCenter_Click();
  ChBig_Click();
  program_.ShowAsCut();
}

void FBaseOpt::ConnectHandlers() {
  CmbRotate.SetHandler([this] { CmbRotate_Click(); });
  TAngle.SetHandler([this] { TAngle_Change(); });
  CmbZoom.SetHandler([this] { CmbZoom_Change(); });
  CmbDPI.SetHandler([this] { CmbDPI_Click(); });
  for (std::size_t i = 0; i < TSmalS.Size(); ++i) TSmalS[i].SetHandler([this, i] { TSmalS_Change(i); });
  for (std::size_t i = 0; i < TBoard.Size(); ++i) TBoard[i].SetHandler([this, i] { TBoard_Change(i); });
}

void FBaseOpt::ConnectChecks() {
  ChRotateCut.SetHandler([this] { ChRotateCut_Click(); });
  ChZoomAndCut.SetHandler([this] { ChZoomAndCut_Click(); });
  ChCutAndZoom.SetHandler([this] { ChCutAndZoom_Click(); });
  PBoardColor.SetHandler([this] { program_.ShowAsCut(); });
  ChAutoCenter.SetHandler([this] { ChAutoCenter_Click(); });
  ChMulCut.SetHandler([this] { ChMulCut_Click(); });
  ChMamal.SetHandler([this] { ChMamal_Click(); });
  ChRecover.SetHandler([this] { program_.form1.ShowFrame(); });
  ChSplit.SetHandler([this] { ChSplit_Click(); });
  ChAddBoard.SetHandler([this] { ChAddBoard_Click(); });
  ChFrmOnly.SetHandler([this] { ChFrmOnly_Click(); });
  ChToGray.SetHandler([this] { ChToGray_Click(); });
  ChToWB.SetHandler([this] { ChToWB_Click(); });
  ChToCMYK.SetHandler([this] { ChToCMYK_Click(); });
  ChClsWhite.SetHandler([this] { ChClsEdge_Click(ChClsWhite, ChClsBlack); });
  ChClsBlack.SetHandler([this] { ChClsEdge_Click(ChClsBlack, ChClsWhite); });
  ChKeepExif.SetHandler([this] { ChKeepExif_Click(); });
  ChBig.SetHandler([this] { ChBig_Click(); });
}

// Options have no effect until the window is loaded; values that were set before have theirs from then on.
void FBaseOpt::ApplyFlags() {
  if (!Loaded()) return;
  Flags& flags = program_.flags;
  flags.ManualCutMode = ChMamal.On();
  flags.CutThenZoom = ChCutAndZoom.On();
  flags.ToBlackWhite = ChToWB.On();
  flags.ToCmyk = ChToCMYK.On();
  flags.KeepExif = ChKeepExif.On();
}

bool FBaseOpt::Lacks(controls::CheckBox& box, bool available) {
  if (!box.On() || available) return false;
  box.Set(false);
  program_.AskMissingResource();
  return true;
}

bool FBaseOpt::ClearInPagedMode(controls::CheckBox& box) {
  const auto mode = Selected<CutMode>(program_.form1.CmbCutMode);
  const bool paged = mode == CutMode::Gif || mode == CutMode::Pdf || mode == CutMode::Tiff;
  if (!box.On() || !paged) return false;
  box.Set(false);
  return true;
}

void FBaseOpt::CmbRotate_Click() {
  const int rule = CmbRotate.Index();
  if (rule > 0) ChRotateCut.Set(false);
  if (rule == 1 || rule == 3) {
    TAngle.SetNumber(90);
  } else if (rule == 2 || rule == 4) {
    TAngle.SetNumber(-90);
  } else if (rule != kOwnAngle) {
    TAngle.SetNumber(0);
  }
  program_.ShowAvailability();
  program_.ShowAsCut();
}

void FBaseOpt::TAngle_Change() {
  const double angle = TAngle.Number();
  const double limited = std::clamp(angle, *TAngle.GetLimits().min, *TAngle.GetLimits().max);
  if (angle != limited) {
    program_.host.boxes.Beep();
    TAngle.SetNumber(limited);
  } else {
    program_.ShowAsCut();
  }
}

void FBaseOpt::ChRotateCut_Click() {
  if (ChRotateCut.On()) CmbRotate.Select(0);
  program_.ShowAvailability();
  program_.ShowAsCut();
}

void FBaseOpt::CmbZoom_Change() {
  if (!IsZoomText(CmbZoom.Text())) {
    program_.host.boxes.Beep();
    CmbZoom.SetText(kWholeSize);
  } else {
    program_.ShowAsCut();
  }
}

void FBaseOpt::ChZoomAndCut_Click() {
  if (ChZoomAndCut.On()) {
    ChCutAndZoom.Set(false);
  } else {
    CmbZoom.SetText(kWholeSize);
  }
  program_.ShowAsCut();
}

void FBaseOpt::ChCutAndZoom_Click() {
  if (ChCutAndZoom.On()) {
    ChZoomAndCut.Set(false);
  } else {
    CmbZoom.SetText(kWholeSize);
  }
  ApplyFlags();
  program_.ShowAsCut();
}

void FBaseOpt::ChMulCut_Click() {
  ChMulCut.SetTag("");
  if (ClearInPagedMode(ChMulCut)) return;
  if (ChMulCut.On() && Lacks(ChMulCut, program_.ShowWindow("FMultCut"))) return;
  program_.ShowAvailability();
}

void FBaseOpt::ChMamal_Click() {
  if (!Lacks(ChMamal, program_.manualFrame)) ApplyFlags();
}

void FBaseOpt::ChSplit_Click() {
  if (ClearInPagedMode(ChSplit)) return;
  program_.ShowAvailability();
  program_.form1.ShowFrame();
}

void FBaseOpt::AcceptFixedSize(const std::string& width, const std::string& height) {
  if (mirroring_) return;
  mirroring_ = true;
  TSmalS[3].SetText(width);
  TSmalS[2].SetText(height);
  mirroring_ = false;
}

controls::Limits FBaseOpt::LimitsOf(std::size_t sizeBox) {
  if (sizeBox < 2) return {0, kLargestThreshold};
  if (sizeBox > 3) return {1, kMostPieces};
  return kFixedSideLimits;
}

void FBaseOpt::TSmalS_Change(std::size_t index) {
  controls::TextBox& box = TSmalS[index];
  const controls::Limits& limits = box.GetLimits();
  const double value = box.Number();
  const bool beyond = value < *limits.min || value > *limits.max;
  if (beyond && limits.beyond == controls::Beyond::LeftToHandler) {
    program_.host.boxes.Beep();
    box.SetText(index < 2 ? kThreshold : kPieces);
  } else if (index == 2 || index == 3) {
    MirrorFixedSize();
  } else {
    program_.form1.ShowFrame();
  }
}

// The two windows mirror the fixed size crosswise, one text at a time. Only a change that began in this window is
// passed on; otherwise the half that still has the old value would come back.
void FBaseOpt::MirrorFixedSize() {
  if (mirroring_ || !Loaded()) return;
  const std::string width = TSmalS[3].Value();
  const std::string height = TSmalS[2].Value();
  mirroring_ = true;
  program_.form1.TFixWH[0].SetText(width);
  program_.form1.TFixWH[1].SetText(height);
  mirroring_ = false;
}

void FBaseOpt::ChAddBoard_Click() {
  if (ChAddBoard.On()) ChFrmOnly.SetEnabled(true);
  program_.ShowAsCut();
}

// The frame-only preset sets all its options itself.
void FBaseOpt::ChFrmOnly_Click() {
  if (program_.form1.CmbKeepCut.Index() == kFrameOnlyPreset) return;
  if (ChFrmOnly.On()) {
    if (ChFrmOnly.Tag() != "1") {
      ChFrmOnly.SetTag("1");
      program_.Ask(kFrameOnlyNote, host::kInformationIcon);
    }
    ClearProcessing();
  }
  program_.ShowAvailability();
  program_.ShowAsCut();
}

void FBaseOpt::ClearProcessing() {
  program_.form1.ChFixCut.Set(false);
  for (controls::CheckBox* box :
       {&ChKeepExif, &ChMamal, &ChMulCut, &ChKeepCut, &ChSplit, &ChClsBlack, &ChClsWhite, &ChRotateCut, &ChRecover,
        &ChZoomAndCut, &ChCutAndZoom, &ChToGray, &ChToWB, &ChInvert, &ChToCMYK}) {
    box->Set(false);
  }
  CmbRotate.Select(0);
}

void FBaseOpt::TBoard_Change(std::size_t index) {
  if (TBoard[index].Number() < 0) {
    program_.host.boxes.Beep();
    TBoard[index].SetNumber(0);
  } else {
    program_.ShowAsCut();
  }
}

void FBaseOpt::ChToGray_Click() {
  if (ChToGray.On()) ChToWB.Set(false);
}

void FBaseOpt::ChToWB_Click() {
  if (ChToWB.On()) ChToGray.Set(false);
  ApplyFlags();
}

void FBaseOpt::ChToCMYK_Click() {
  if (Lacks(ChToCMYK, program_.outputTools)) return;
  if (ChToCMYK.On() && !program_.host.files.IsFolder(program_.AppPath(kColorConfigs))) {
    ChToCMYK.Set(false);
    program_.Ask(kNoColorConfigs, host::kExclamationIcon);
    return;
  }
  ApplyFlags();
}

void FBaseOpt::ChClsEdge_Click(controls::CheckBox& box, controls::CheckBox& other) {
  if (!Lacks(box, program_.engines.edgeRemoval) && box.On()) other.Set(false);
}

void FBaseOpt::CmbDPI_Click() {
  if (!Loaded()) return;
  program_.flags.OutDpi = DpiOf(CmbDPI);
  program_.ShowAsCut();
}

void FBaseOpt::ChKeepExif_Click() {
  const Form1& form = program_.form1;
  const bool tifOfGif =
      Selected<CutMode>(form.CmbCutMode) == CutMode::Gif && Selected<OutType>(form.CmbOutType) == OutType::Tif;
  if (ChKeepExif.On() && tifOfGif) {
    ChKeepExif.Set(false);
    return;
  }
  ApplyFlags();
}

void FBaseOpt::ChAutoCenter_Click() {
  if (Loaded()) program_.form1.ChAutoCenter.Set(ChAutoCenter.On());
}

// Form1 decides whether it may be on, and clears both boxes if it may not.
void FBaseOpt::ChBig_Click() {
  if (Loaded()) program_.form1.ChBig.Set(ChBig.On());
}

}  // namespace quillon::job
