// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/windows/form1.h"

#include <initializer_list>
#include <span>
#include <string>

#include "base/path_text.h"
#include "host/files/paths.h"
#include "job/program.h"
#include "job/windows/file_intake.h"

namespace quillon::job {
namespace {

constexpr const char* kStopQuestion = "终止当前操作？";
constexpr const char* kRunning = "正在处理，请等待处理完毕或先终止";

struct EntryWindow {
  controls::Menu Form1::*menu;
  const char* window;
};

// The window that an entry opens.
constexpr EntryWindow kWindows[] = {
    {&Form1::MenuBaseOptions, "FBaseOpt"},   {&Form1::MenuGifCutOps, "FGifCut"},
    {&Form1::MenuPngCutOps, "FPngCut"},      {&Form1::MenuPdfOps, "FPdfOps"},
    {&Form1::MenuPenHui, "FCutPenH"},        {&Form1::MenuTifCutOps, "FTiffOps"},
    {&Form1::MenuColorCut, "FCutEdges"},     {&Form1::MenuChSizeFormat, "FZoomComp"},
    {&Form1::MenuExtentAndCut, "FAddEdges"}, {&Form1::MenuUnitConvert, "FConverter"},
    {&Form1::MenuMulCut, "FMultCut"},        {&Form1::MenuCutTime, "FCutTime"},
};

// The window with the options of a driver, which comes with it.
constexpr EntryWindow kDrivers[] = {
    {&Form1::MenuGifCut, "FGifCut"},     {&Form1::MenuPngCut, "FPngCut"},   {&Form1::MenuPdfCut, "FPdfOps"},
    {&Form1::MenuPenHuiCut, "FCutPenH"}, {&Form1::MenuTiffCut, "FTiffOps"},
};

}  // namespace

Form1::Form1(Program& program) : Window("Form1", kTitle), program_(program) {
  ConnectParameters();
  ConnectMenus();
  ConnectWindows();
}

void Form1::ConnectParameters() {
  for (std::size_t i = 0; i < TCutValue.Size(); ++i) TCutValue[i].SetHandler([this, i] { TCutValue_Change(i); });
  for (std::size_t i = 0; i < TFixWH.Size(); ++i) TFixWH[i].SetHandler([this, i] { TFixWH_Change(i); });
  LInDir.SetHandler([this] { LInDir_Change(); });
  LOutDir.SetHandler([this] { LOutDir_Change(); });
  ChBig.SetHandler([this] { ChBig_Click(); });
  ChLarge.SetHandler([this] { ChLarge_Click(); });
  ChCutA.SetHandler([this] { ChCutA_Click(); });
  CmbCutMode.SetHandler([this] { CmbCutMode_Click(); });
  CmbCutStyle.SetHandler([this] { CmbCutStyle_Click(); });
  ChFixCut.SetHandler([this] { ChFixCut_Click(); });
  CmbKeepCut.SetHandler([this] { CmbKeepCut_Click(); });
  ChAutoCenter.SetHandler([this] { ChAutoCenter_Click(); });
  ChAddToSize.SetHandler([this] { program_.ShowAvailability(); });
  for (controls::Control* control :
       std::initializer_list<controls::Control*>{&ChAsFramed, &ChExact, &ChExactPad, &CmbAnchor}) {
    control->SetHandler([this] {
      program_.ShowAvailability();
      program_.ShowAsCut();
    });
  }
  for (controls::CheckBox* box : {&ChFull, &ChAutoZoom, &ChMode1}) box->SetHandler([this] { ShowFrame(); });
  CmbOutType.SetHandler([this] { CmbOutType_Click(); });
  CmbDPI.SetHandler([this] { CmbDPI_Click(); });
  ChJpgComp.SetHandler([this] { program_.ShowAvailability(); });
  TQuality.SetHandler([this] { TQuality_Change(); });
  ChCutAndArray.SetHandler([this] { ChCutAndArray_Click(); });
  MSF.SetDoubleClickHandler([this] { program_.Intake().MSF_DblClick(); });
  MSF.SetRightClickHandler([this] { program_.Intake().MenuClearList_Click(); });
}

void Form1::ConnectMenus() {
  MenuAddFiles.SetHandler([this] { program_.Intake().MenuAddFiles_Click(); });
  MenuReadFiles.SetHandler([this] { program_.Intake().MenuReadFiles_Click(); });
  MenuInputDir.SetHandler([this] { program_.Intake().MenuInputDir_Click(); });
  MenuOutDir.SetHandler([this] { program_.Intake().MenuOutDir_Click(); });
  MenuOpenOutDir.SetHandler([this] { MenuOpenOutDir_Click(); });
  MenuExit.SetHandler([this] { Close(); });
  MenuDelSelected.SetHandler([this] { program_.Intake().MenuDelSelected_Click(); });
  MenuClearList.SetHandler([this] { program_.Intake().MenuClearList_Click(); });
  menuNormalCut.SetHandler([this] { program_.RunNormalCut(); });
  MenuStop.SetEnabled(false, kNothingRuns);
  MenuStop.SetHandler([this] { MenuStop_Click(); });
  MenuGuide.SetHandler([this] { MenuGuide_Click(); });
  MenuAbout.SetHandler([this] { MenuAbout_Click(); });
  for (controls::Menu* driver : {&MenuGifCut, &MenuPngCut, &MenuPdfCut, &MenuPenHuiCut, &MenuTiffCut}) {
    driver->SetHandler([this] { program_.AskMissingResource(); });
  }
}

void Form1::ConnectWindows() {
  for (const auto& [menu, window] : kWindows) {
    (this->*menu).SetHandler([this, name = std::string(window)] { OpenWindow(name); });
  }
}

void Form1::HideMissingEntries() {
  for (const std::span<const EntryWindow> table : {std::span<const EntryWindow>(kWindows), {kDrivers}}) {
    for (const auto& [menu, window] : table) {
      if (!program_.windows.FindWindow(window)) (this->*menu).SetVisible(false);
    }
  }
}

void Form1::OpenWindow(const std::string& name) {
  if (!program_.ShowWindow(name)) program_.AskMissingResource();
}

void Form1::LInDir_Change() { LInDir.SetText(host::AbsoluteFolder(program_.host.files, LInDir.Value())); }

void Form1::LOutDir_Change() { LOutDir.SetText(host::AbsoluteFolder(program_.host.files, LOutDir.Value())); }

void Form1::MenuStop_Click() {
  if (program_.Ask(kStopQuestion, host::kOkCancelDefaultCancel) != host::Reply::Ok) return;
  MenuStop.SetEnabled(false, kNothingRuns);
  program_.flags.StopRequested = true;
}

void Form1::MenuOpenOutDir_Click() {
  if (program_.Intake().OutDirExists()) {
    program_.host.shell.OpenFolder(LOutDir.Value());
  } else {
    program_.Intake().WarnOutDir();
  }
}

void Form1::MenuGuide_Click() {
  for (const std::string& guide : {program_.AppPath(kGuide), base::JoinPath(program_.documents, kGuide)}) {
    if (!program_.host.files.IsFile(guide)) continue;
    program_.host.shell.OpenBrowser(guide);
    return;
  }
  program_.AskMissingResource();
}

void Form1::MenuAbout_Click() {
  program_.Ask(std::string(kTitle) + " " + QUILLON_VERSION + "\r\n批量图片裁剪软件\r\n许可证：GPL-3.0-or-later",
               host::kInformationIcon);
}

// A run uses the windows and the image library, so it must end before the program does.
void Form1::Close() {
  if (!program_.flags.Busy) {
    if (program_.Unload()) Hide();
  } else if (MenuStop.Enabled()) {
    MenuStop_Click();
    program_.flags.CloseRequested = program_.flags.StopRequested;
  } else if (program_.flags.StopRequested && !program_.flags.CloseRequested) {
    program_.flags.CloseRequested = true;
  } else {
    program_.host.boxes.Beep();
  }
}

void Form1::BeginRun() {
  program_.flags.StopRequested = false;
  Frame1.SetEnabled(false, kRunning);
  for (controls::Menu* menu : {&MenuFiles, &MenuList, &MenuOtherOptions, &MenuCut, &MenuOther, &MenuHelp}) {
    menu->SetEnabled(false, kRunning);
  }
  MenuStop.SetEnabled(true);
}

void Form1::EndRun() {
  MenuStop.SetEnabled(false, kNothingRuns);
  for (controls::Menu* menu : {&MenuFiles, &MenuList, &MenuOtherOptions, &MenuCut, &MenuOther, &MenuHelp}) {
    menu->SetEnabled(true);
  }
  Frame1.SetEnabled(true);
  ShowStatus("");
}

}  // namespace quillon::job
