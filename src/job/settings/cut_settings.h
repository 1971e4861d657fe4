// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "base/colour.h"
#include "base/rect.h"
#include "job/cut/output_name.h"

namespace quillon::job {

class Program;

// What the windows and flags say about the cut of one file, read when the file is begun. What comes from FBaseOpt is
// off, 0 or empty as long as that window was never loaded.
struct CutSettings {
  std::string outFolder;
  std::string outType;  // the text of CmbOutType
  bool over = false;
  bool keepFolders = false;
  int quality = 80;  // TQuality
  int dpi = 0;       // OutDpi; 0 keeps the source's
  int preset = 0;    // CmbKeepCut
  bool fixedSize = false;
  bool padToSize = false;
  bool extendRight = false;
  int FixW = 0;
  int FixH = 0;
  bool manual = false;
  bool keepExif = false;
  bool blackWhite = false;
  bool toCmyk = false;

  bool frameOnly = false;
  bool omitFolders = false;
  base::Size smallest;  // thresholds of ChFilter
  job::ExtensionCase extensionCase = job::ExtensionCase::Keep;
  bool zoomBefore = false;
  bool zoomAfter = false;
  std::string zoom;  // the text of CmbZoom
  int rotateRule = 0;
  double angle = 0;  // TAngle
  bool rotateCut = false;
  bool restore = false;  // ChRecover
  bool toGray = false;
  bool threshold = false;
  bool invert = false;
  bool ownDpi = false;  // CmbDPI of FBaseOpt is above 0
  bool split = false;   // ChSplit, into more than one piece
  int columns = 1;      // TSmalS(4)
  int rows = 1;         // TSmalS(5)
  bool addBoard = false;
  std::array<double, 4> boardMm{};
  base::Colour boardColour = base::kWhite;
};

CutSettings ReadCutSettings(const Program& program);

// The thresholds of ChFilter, TSmalS(0) and (1) in pixels; 0 with the filter off.
base::Size FilterThresholds(const Program& program);
// Whether a side of picture lies below its threshold. A picture without area is no small one: it cannot be read.
bool TooSmall(base::Size picture, base::Size thresholds);
// What the row of such a picture tells.
std::string TooSmallText(base::Size thresholds);

// Whether the cut is made in memory, with the options that change pixels or resolution.
bool EffectsApply(const CutSettings& options);

// The angle by which CmbRotate turns a picture of that size, degrees counter-clockwise; 0 where it does not.
double RuleAngle(const CutSettings& options, base::Size picture);
// The same for both options that turn, of which the first that turns decides: CmbRotate, then ChRotateCut by TAngle.
double TurnAngle(const CutSettings& options, base::Size picture);

// The extension of the output of a source with that extension.
std::string OutputExtension(const CutSettings& options, const std::string& sourceExtension);

// Where the output of the listed file goes; makes no folder.
std::string OutputPath(const CutSettings& options, const std::string& folder, const std::string& name,
                       const std::string& outExtension);

// By the letters of the extension, in upper or lower case.
bool IsPsd(const std::string& extension);
bool IsGif(const std::string& extension);
bool IsJpeg(const std::string& extension);

}  // namespace quillon::job
