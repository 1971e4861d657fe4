// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/run_window.h"

#include <sstream>

#include "job/program.h"
#include "job/settings/cut_settings.h"
#include "job/windows/file_intake.h"

namespace quillon::job {
namespace {

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
// hand, and the white around a padded picture. No cut reads the choice of the profile, which is only made when its
// window is opened.
bool ChangesNothing(const Program& program, const controls::Control& control) {
  if (&control == &program.fBaseOpt.CmbCMYK) return true;
  if (&control == &program.fBaseOpt.PBoardColor) return program.form1.ChAddToSize.On();
  return program.flags.ManualCutMode && control.FullName().starts_with("Form1.TCutValue");
}

}  // namespace

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

}  // namespace quillon::job
