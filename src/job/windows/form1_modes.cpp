// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The lists and switches of Form1 that choose what is cut, how, and into what.
#include <algorithm>
#include <utility>

#include "job/program.h"
#include "job/windows/form1.h"
#include "tools/twins.h"

namespace quillon::job {
namespace {

constexpr const char* kScannedPdfsOnly = "本功能只针对扫描型Pdf进行裁剪，不建议处理非扫描型的Pdf。";
constexpr double kLowestQuality = 30;
constexpr double kHighestQuality = 99;

// Returns the output type that a mode requires, nothing if it allows several.
std::optional<OutType> TypeOf(CutMode mode) {
  switch (mode) {
    case CutMode::Gif:
      return OutType::Gif;
    case CutMode::Png:
      return OutType::Png;
    case CutMode::Pdf:
      return OutType::Pdf;
    case CutMode::PenHui:
      return OutType::Jpg;
    default:
      return std::nullopt;
  }
}

struct ModeWindow {
  CutMode mode;
  const char* window;
};

// The windows with the options of one mode.
constexpr ModeWindow kModeWindows[] = {
    {CutMode::Gif, "FGifCut"},     {CutMode::Png, "FPngCut"},   {CutMode::Pdf, "FPdfOps"},
    {CutMode::PenHui, "FCutPenH"}, {CutMode::Tiff, "FTiffOps"},
};

// Returns the file in the program folder that a mode needs, "" for none.
std::string ResourceOf(CutMode mode) {
  if (mode == CutMode::Gif) return "CutMedia.dll";
  if (mode == CutMode::Pdf || mode == CutMode::Tiff) return "Aspose.pdf.dll";
  return {};
}

}  // namespace

void Form1::CmbCutMode_Click() {
  const auto mode = Selected<CutMode>(CmbCutMode);
  if (mode > CutMode::Tiff) {
    program_.host.boxes.Beep();
    Select(CmbCutMode, CutMode::Normal);
    return;
  }
  if (!ModeIsThere(mode)) {
    program_.AskMissingResource();
    Select(CmbCutMode, CutMode::Normal);
    return;
  }
  for (const ModeWindow& other : kModeWindows) {
    if (other.mode != mode) program_.HideWindow(other.window);
  }
  MSF.SetHeaders(ListHeaders(mode));
  ChCutAndArray.Set(false);
  ChCutA.SetEnabled(true);
  if (const auto type = TypeOf(mode)) {
    Select(CmbOutType, *type);
    Select(CmbCutStyle, CutStyle::Rectangle);
  } else if (Selected<OutType>(CmbOutType) == OutType::Pdf && !program_.outputTools) {
    Select(CmbOutType, OutType::Jpg);
  }
  if (mode == CutMode::Gif || mode == CutMode::Png || mode == CutMode::PenHui) ChBig.Set(false);
  if (mode == CutMode::Gif || mode == CutMode::Pdf || mode == CutMode::Tiff) {
    program_.fBaseOpt.ChMulCut.Set(false);
    program_.fBaseOpt.ChSplit.Set(false);
  }
  ShowUnit();
  program_.ShowAvailability();
  program_.ShowAsCut();
  if (mode == CutMode::Pdf && !std::exchange(scannedPdfsNoted_, true)) program_.Ask(kScannedPdfsOnly);
}

controls::Menu* Form1::MenuOfMode() {
  switch (Selected<CutMode>(CmbCutMode)) {
    case CutMode::Normal:
      return &menuNormalCut;
    case CutMode::Gif:
      return &MenuGifCut;
    case CutMode::Png:
      return &MenuPngCut;
    case CutMode::Pdf:
      return &MenuPdfCut;
    case CutMode::PenHui:
      return &MenuPenHuiCut;
    case CutMode::Tiff:
      return &MenuTiffCut;
    default:
      return nullptr;
  }
}

bool Form1::ModeIsThere(CutMode mode) {
  if (!program_.modes.contains(mode)) return false;
  const std::string resource = ResourceOf(mode);
  return resource.empty() || program_.host.files.IsFile(program_.AppPath(resource));
}

void Form1::CmbCutStyle_Click() {
  const auto style = Selected<CutStyle>(CmbCutStyle);
  if (style > CutStyle::Circle) {
    program_.host.boxes.Beep();
    Select(CmbCutStyle, CutStyle::Rectangle);
    return;
  }
  if (style == CutStyle::Ellipse || style == CutStyle::Circle) {
    const bool there = program_.host.files.IsFile(program_.AppPath("PicCirleCut.dll"));
    if (!there || !program_.ShowWindow("FCircleCut")) {
      program_.AskMissingResource();
      Select(CmbCutStyle, CutStyle::Rectangle);
      return;
    }
    // If the twin cannot be copied, the cut reports it.
    static_cast<void>(tools::CopyTwin(program_.host, "PicCirleCut"));
  } else {
    program_.HideWindow("FCircleCut");
  }
  if (program_.fCutPre.Visible()) program_.fCutPre.preview.SetShape(CmbCutStyle.Index());
}

void Form1::CmbOutType_Click() {
  program_.ShowEffects();
  const bool pdf = Selected<OutType>(CmbOutType) == OutType::Pdf;
  if (!pdf || program_.outputTools || Selected<CutMode>(CmbCutMode) == CutMode::Pdf) return;
  Select(CmbOutType, OutType::Jpg);
  program_.AskMissingResource();
}

void Form1::CmbDPI_Click() {
  program_.flags.OutDpi = DpiOf(CmbDPI);
  program_.ShowAsCut();
}

void Form1::TQuality_Change() {
  const double quality = TQuality.Number();
  const double limited = std::clamp(quality, kLowestQuality, kHighestQuality);
  if (quality == limited) return;
  program_.host.boxes.Beep();
  TQuality.SetNumber(limited);
}

void Form1::ChCutAndArray_Click() {
  if (!ChCutAndArray.On()) return;
  if (ChBig.On()) {
    program_.host.boxes.Beep();
    ChCutAndArray.Set(false);
  } else if (!program_.sheets) {
    ChCutAndArray.Set(false);
    program_.AskMissingResource();
  }
}

void Form1::ChBig_Click() {
  if (ChBig.On() && ChCutAndArray.On()) {
    program_.host.boxes.Beep();
    ChBig.Set(false);
    return;
  }
  program_.flags.LargeCapacityMode = ChBig.On();
  program_.fBaseOpt.ChBig.Set(ChBig.On());
  program_.ShowAvailability();
}

void Form1::ChLarge_Click() {
  if (!ChLarge.On() || program_.converter.Present()) return;
  ChLarge.Set(false);
  program_.AskMissingResource();
}

}  // namespace quillon::job
