// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What lists, runs and cuts read of the windows and flags. The rooms below include no window: list and run know the
// interface RunWindow, and a cut gets its parameters as CutSettings.
#include "job/windows/run_window.h"

#include <sstream>

#include "base/number_text.h"
#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/settings/mode_rectangle.h"
#include "job/windows/file_intake.h"

namespace quillon::job {
namespace {

constexpr const char* kUpdateFirst = "请先更新再行使用！";

bool IsParameter(const controls::Control& control) {
  switch (control.GetKind()) {
    case controls::Kind::CheckBox:
    case controls::Kind::Option:
    case controls::Kind::TextBox:
    case controls::Kind::ComboBox:
    case controls::Kind::ColourBox:
    case controls::Kind::Slider:
      return true;
    default:
      return false;
  }
}

// Returns true for values that are no parameters of a job. A run itself writes the margins of a frame that is placed by
// hand, how that frame counts, and the white around a padded picture. No cut reads the choice of the profile, which is
// only made when its window is opened.
bool ChangesNothing(const Program& program, const controls::Control& control) {
  if (&control == &program.fBaseOpt.CmbCMYK) return true;
  if (&control == &program.fBaseOpt.PBoardColor) return program.form1.ChAddToSize.On();
  if (!program.flags.ManualCutMode) return false;
  const Form1& form = program.form1;
  if (&control == &form.ChCutA || &control == &form.ChAsFramed || &control == &form.CmbAnchor) return true;
  return control.FullName().starts_with("Form1.TCutValue");
}

void ReadSize(const FBaseOpt& window, CutSettings& settings) {
  if (window.ChFilter.On()) settings.smallest = {window.TSmalS[0].Integer(), window.TSmalS[1].Integer()};
  settings.columns = window.TSmalS[4].Integer();
  settings.rows = window.TSmalS[5].Integer();
  const bool pieces = settings.columns > 1 || settings.rows > 1;
  settings.split = window.ChSplit.On() && !settings.frameOnly && pieces;
}

void ReadChanges(const FBaseOpt& window, const Flags& flags, CutSettings& settings) {
  settings.zoomBefore = window.ChZoomAndCut.On() && !settings.frameOnly;
  settings.zoomAfter = flags.CutThenZoom && !settings.frameOnly;
  settings.zoom = window.CmbZoom.Text();
  settings.rotateRule = settings.frameOnly ? 0 : window.CmbRotate.Index();
  settings.angle = window.TAngle.Number();
  settings.rotateCut = window.ChRotateCut.On();
  settings.restore = window.ChRecover.On();
  settings.toGray = window.ChToGray.On();
  settings.blackWhite = flags.ToBlackWhite;
  settings.invert = window.ChInvert.On();
}

void ReadBorder(const FBaseOpt& window, CutSettings& settings) {
  settings.addBoard = window.ChAddBoard.On();
  for (std::size_t i = 0; i < settings.boardMm.size(); ++i) settings.boardMm[i] = window.TBoard[i].Number();
  settings.boardColour = window.PBoardColor.Colour();
}

void ReadAdvanced(const FBaseOpt& window, const Flags& flags, CutSettings& settings) {
  settings.frameOnly = window.ChFrmOnly.On();
  settings.omitFolders = window.ChOmitFolds.On();
  settings.extensionCase = Selected<ExtensionCase>(window.CmbExtCase);
  settings.ownDpi = base::LeadingNumber(window.CmbDPI.Text()) > 0;
  ReadSize(window, settings);
  ReadChanges(window, flags, settings);
  ReadBorder(window, settings);
}

// A result of an exact size is not turned back or scaled again. It is padded by a border without width.
void ApplyExactSize(CutSettings& settings) {
  if (!settings.geometry.Exact() || settings.frameOnly) return;
  settings.zoomAfter = false;
  settings.restore = false;
  if (!settings.geometry.PadsToExact() || settings.addBoard) return;
  settings.addBoard = true;
  settings.boardMm = {};
}

// Such a mode has no advanced options, so those that were chosen before for another mode must not change the picture.
void ClearChanges(CutSettings& settings) {
  settings.padToSize = settings.frameOnly = settings.addBoard = settings.split = false;
  settings.zoomBefore = settings.zoomAfter = settings.rotateCut = settings.restore = false;
  settings.toGray = settings.blackWhite = settings.invert = settings.toCmyk = settings.ownDpi = false;
  settings.rotateRule = 0;
  settings.extensionCase = ExtensionCase::Keep;
}

}  // namespace

// --- The window, for lists and runs.

std::string ProgramWindow::InputFolder() const { return program_.form1.LInDir.Value(); }

std::string ProgramWindow::OutputFolder() const { return program_.form1.LOutDir.Value(); }

std::string ProgramWindow::OutputType() const { return program_.form1.CmbOutType.Text(); }

Subfolders ProgramWindow::SubfolderChoice() const {
  return program_.form1.ChSubFold.On() ? Subfolders::Yes : Subfolders::No;
}

bool ProgramWindow::Overwrites() const { return program_.form1.ChOver.On(); }

bool ProgramWindow::OmitsFolders() const { return ReadCutSettings(program_).omitFolders; }

std::string ProgramWindow::Filter() const { return program_.Intake().Filter(); }

std::string ProgramWindow::Parameters(const std::vector<std::string>& windows) const {
  const Form1& form = program_.form1;
  std::ostringstream text;
  text << InputFolder() << '\n' << OutputFolder() << '\n' << program_.flags.OutDpi << '\n';
  const bool pixels = form.ChCutA.On() && !form.ChFixCut.On();
  text << (pixels && program_.flags.AdvancedOptionsLoaded) << '\n';  // the margins are then interpreted differently
  for (const std::string& name : windows) {
    const controls::Window* window = program_.windows.FindWindow(name);
    if (!window) continue;
    for (const controls::Control* control : window->Controls()) {
      if (IsParameter(*control) && !ChangesNothing(program_, *control))
        text << control->FullName() << '=' << control->Value() << '\n';
    }
  }
  return text.str();
}

bool ProgramWindow::MayRunBeforeUpdate() {
  if (!program_.flags.UpdatePending) return true;
  program_.Ask(kUpdateFirst, host::kStopIcon);
  if (controls::Menu* menu = program_.form1.MenuOfMode()) menu->SetEnabled(false, kUpdateFirst);
  return false;
}

bool ProgramWindow::HasPart(Need need) const {
  switch (need) {
    case Need::ManualFrame:
      return program_.manualFrame != nullptr;
    case Need::Sheets:
      return program_.sheets != nullptr;
    case Need::OutputTools:
      return program_.outputTools != nullptr;
    default:
      return program_.pageCounter != nullptr;
  }
}

bool ProgramWindow::Ensure(Need need) {
  FileIntake& intake = program_.Intake();
  switch (need) {
    case Need::Files:
      return program_.flags.LargeCapacityMode ? intake.EnsureInputDir() : intake.EnsureListedFiles();
    case Need::OutputFolder:
      return intake.EnsureOutDir();
    case Need::NoPendingUpdate:
      return MayRunBeforeUpdate();
    default:
      if (HasPart(need)) return true;
      program_.AskMissingResource();
      return false;
  }
}

void ProgramWindow::SaveFolders() { program_.SaveFolders(); }

void ProgramWindow::Begin(WindowUse use) {
  if (use == WindowUse::Disabled) {
    program_.form1.BeginRun();
    return;
  }
  program_.flags.StopRequested = false;
  program_.form1.MenuStop.SetEnabled(true);
}

void ProgramWindow::End(WindowUse use) {
  if (use == WindowUse::Disabled) {
    program_.form1.EndRun();
    return;
  }
  program_.form1.MenuStop.SetEnabled(false, kNothingRuns);
  ShowStatus("");
}

void ProgramWindow::ShowStatus(const std::string& text) { program_.form1.ShowStatus(text); }

void ProgramWindow::SelectRow(std::size_t row) { program_.form1.MSF.Select(row); }

void ProgramWindow::ClearList() { program_.Intake().Clear(); }

// --- The parameters of a cut. No other source reads them from the windows.

CutSettings ReadCutSettings(const Program& program) {
  const Form1& form = program.form1;
  const Flags& flags = program.flags;
  CutSettings settings;
  settings.mode = Selected<CutMode>(form.CmbCutMode);
  settings.logoOnly = settings.mode == CutMode::Gif && flags.GifLogoOnly;
  settings.geometry = ReadCutGeometry(program);
  settings.outFolder = form.LOutDir.Value();
  settings.outType = form.CmbOutType.Text();
  settings.over = form.ChOver.On();
  settings.keepFolders = form.ChKeepDir.On();
  settings.quality = form.TQuality.Integer();
  settings.dpi = flags.OutDpi;
  settings.preset = form.CmbKeepCut.Index();
  settings.padToSize = form.ChAddToSize.On();
  settings.extendRight = form.ChMode1.On();
  settings.manual = flags.ManualCutMode;
  settings.keepExif = flags.KeepExif;
  settings.toCmyk = flags.ToCmyk;
  if (flags.AdvancedOptionsLoaded) ReadAdvanced(program.fBaseOpt, flags, settings);
  ApplyExactSize(settings);
  if (CutsOnly(settings.mode)) ClearChanges(settings);
  return settings;
}

CutGeometry ReadCutGeometry(const Program& program) {
  const Form1& form = program.form1;
  const FBaseOpt& options = program.fBaseOpt;
  const Flags& flags = program.flags;
  return {.ML = form.TCutValue[0].Number(),
          .MT = form.TCutValue[1].Number(),
          .MR = form.TCutValue[2].Number(),
          .MB = form.TCutValue[3].Number(),
          .FixW = flags.FixW,
          .FixH = flags.FixH,
          .TSmalS2 = options.TSmalS[2].Number(),
          .TSmalS3 = options.TSmalS[3].Number(),
          .ChCutA = form.MarginsInPixels(),
          .ChFixCut = form.ChFixCut.On() && Selected<CutMode>(form.CmbCutMode) != CutMode::Pdf,
          .ChAutoZoom = form.ChAutoZoom.On(),
          .ChFull = form.ChFull.On(),
          .AdvancedOptionsLoaded = flags.AdvancedOptionsLoaded,
          .SkipCutThisImage = flags.SkipCutThisImage,
          .ChAsFramed = form.ChAsFramed.On(),
          .ChAutoCenter = form.ChAutoCenter.On(),
          .ChExact = form.ChExact.On() && !CutsOnly(Selected<CutMode>(form.CmbCutMode)),
          .ChExactPad = form.ChExactPad.On(),
          .CmbAnchor = form.CmbAnchor.Index()};
}

}  // namespace quillon::job
