// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/grid.h"
#include "controls/values.h"
#include "controls/window.h"

namespace quillon::job {

class Program;

// The main window: the shared cut parameters, the file list and the menus that start a batch.
class Form1 : public controls::Window {
 public:
  explicit Form1(Program& program);

  // --- Menus, as they stand in the menu bar.
  controls::Menu MenuFiles;
  controls::Menu MenuAddFiles;
  controls::Menu MenuReadFiles;
  controls::Menu MenuInputDir;
  controls::Menu MenuOutDir;
  controls::Menu MenuOpenOutDir;
  controls::Menu MenuExit;
  controls::Menu MenuList;
  controls::Menu MenuDelSelected;
  controls::Menu MenuClearList;
  controls::Menu MenuOtherOptions;
  controls::Menu MenuBaseOptions;
  controls::Menu MenuGifCutOps;
  controls::Menu MenuPngCutOps;
  controls::Menu MenuPdfOps;
  controls::Menu MenuPenHui;
  controls::Menu MenuTifCutOps;
  controls::Menu MenuCut;
  controls::Menu menuNormalCut;
  controls::Menu MenuGifCut;
  controls::Menu MenuPngCut;
  controls::Menu MenuPdfCut;
  controls::Menu MenuPenHuiCut;
  controls::Menu MenuTiffCut;
  controls::Menu MenuColorCut;
  controls::Menu MenuStop;
  controls::Menu MenuOther;
  controls::Menu MenuChSizeFormat;
  controls::Menu MenuExtentAndCut;
  controls::Menu MenuUnitConvert;
  controls::Menu MenuHelp;
  controls::Menu MenuGuide;
  controls::Menu MenuAbout;

  // --- Frame1 holds all parameters; Frame2 the margins, with the unit in its caption.
  controls::Frame Frame1;
  controls::Label LInDir;
  controls::Label LOutDir;
  controls::CheckBox ChSubFold;
  controls::CheckBox ChKeepDir;
  controls::CheckBox ChOver;
  controls::CheckBox ChBig;
  controls::CheckBox ChLarge;
  controls::CheckBox ChBack;
  controls::Frame Frame2;
  controls::ControlArray<controls::TextBox, 4> TCutValue;
  controls::CheckBox ChCutA;
  controls::ComboBox CmbCutMode;
  controls::ComboBox CmbCutStyle;
  controls::CheckBox ChFixCut;
  controls::ComboBox CmbKeepCut;
  controls::ControlArray<controls::TextBox, 2> TFixWH;
  controls::CheckBox ChAutoCenter;
  controls::CheckBox ChFull;
  controls::CheckBox ChAutoZoom;
  controls::CheckBox ChAddToSize;
  controls::CheckBox ChMode1;
  controls::ComboBox CmbOutType;
  controls::ComboBox CmbDPI;
  controls::CheckBox ChJpgComp;
  controls::TextBox TQuality;
  controls::CheckBox ChCutAndArray;

  // --- The list and the status panel beneath it.
  controls::Grid MSF;
  controls::Label LStatus;

  // --- Handlers, by control.
  void TCutValue_Change(std::size_t index);
  void ChCutA_Click();
  void ChFixCut_Click();
  void CmbKeepCut_Click();
  void TFixWH_Change(std::size_t index);
  void CmbCutMode_Click();
  void CmbCutStyle_Click();
  void CmbDPI_Click();
  void CmbOutType_Click();
  void ChAutoCenter_Click();
  void ChAutoZoom_Click();
  void ChAddToSize_Click();
  void ChCutAndArray_Click();
  void ChBig_Click();
  void ChJpgComp_Click();
  void TQuality_Change();
  void LOutDir_Change();
  void MenuStop_Click();
  void MenuUnitConvert_Click();

  // What the user's close button and MenuExit do: ask, clean up, end. See Program::Unload.
  void Close() override;

  // The running text in front of the title, "" for the plain title.
  void ShowStatus(const std::string& statusText);

 private:
  void ConnectHandlers();

  Program& program_;
};

}  // namespace quillon::job
