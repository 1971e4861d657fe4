// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>

#include "base/colour.h"
#include "base/rect.h"
#include "host/files/files.h"
#include "job/settings/geometry.h"
#include "job/settings/lists.h"

namespace quillon::job {

class Program;

// What the windows and flags say about the cut of one file. Each control is read by one field. A field that comes from
// FBaseOpt is off, 0 or empty until that window was loaded; those of geometry know that themselves.
struct CutSettings {
  // --- Form1.
  CutMode mode = CutMode::Normal;
  CutGeometry geometry;  // the fixed cut, its size and the margins
  std::string outFolder;
  std::string outType;  // the text of CmbOutType
  bool over = false;
  bool keepFolders = false;
  int quality = 80;  // TQuality
  int dpi = 0;       // OutDpi, of CmbDPI in either window; 0 keeps the source's
  int preset = 0;    // CmbKeepCut
  bool padToSize = false;
  bool extendRight = false;

  // --- FGifCut.
  bool logoOnly = false;  // the rectangle is that of a logo, and the size stays

  // --- FBaseOpt.
  bool manual = false;
  bool keepExif = false;
  bool blackWhite = false;  // threshold the pixels, and save a tiff as black and white
  bool toCmyk = false;
  base::Size smallest;  // thresholds of ChFilter in pixels; 0 with the filter off
  bool frameOnly = false;
  bool omitFolders = false;
  ExtensionCase extensionCase = ExtensionCase::Keep;
  bool zoomBefore = false;  // this, zoomAfter, rotateRule and split are off with frameOnly
  bool zoomAfter = false;
  std::string zoom;  // the text of CmbZoom
  int rotateRule = 0;
  double angle = 0;  // TAngle, degrees counter-clockwise
  bool rotateCut = false;
  bool restore = false;  // ChRecover
  bool toGray = false;
  bool invert = false;
  bool ownDpi = false;  // CmbDPI of FBaseOpt is above 0
  bool split = false;   // ChSplit, into more than one piece
  int columns = 1;      // TSmalS(4)
  int rows = 1;         // TSmalS(5)
  bool addBoard = false;
  std::array<double, 4> boardMm{};
  base::Colour boardColour = base::kWhite;
};

// Reads all settings as the windows and flags hold them now. A cut reads them when it begins a file.
CutSettings ReadCutSettings(const Program& program);

// Reads CutSettings::geometry alone. A cut reads it anew when it computes the rectangle: the manual frame writes the
// margins and the skip flag of a picture after its settings were read.
CutGeometry ReadCutGeometry(const Program& program);

// Returns whether a side of picture is below its threshold. A picture without area is not small: it cannot be read.
bool TooSmall(base::Size picture, base::Size thresholds);
// Returns the reason that the row of such a picture shows.
std::string TooSmallText(base::Size thresholds);

// Returns whether the cut is made in memory, with the options that change pixels or resolution.
bool EffectsApply(const CutSettings& settings);

// Returns the angle by which CmbRotate turns a picture of that size, in degrees counter-clockwise; 0 if it does not.
double RuleAngle(const CutSettings& settings, base::Size picture);
// Returns the angle of the first option that turns the picture: CmbRotate, then ChRotateCut by TAngle. 0 if none does.
double TurnAngle(const CutSettings& settings, base::Size picture);

// --- Names and folders of outputs.

// Returns extension in the wanted case; only ASCII letters change.
std::string CasedExtension(const std::string& extension, ExtensionCase wanted);

// Returns the extension of the output of a source with that extension.
std::string OutputExtension(const CutSettings& settings, const std::string& sourceExtension);

// Returns the path of the output of the listed file folder/name; makes no folder. With keepFolders it lies below the
// output folder as the source does below its root or drive; with over it lies beside the source.
std::string OutputPath(const CutSettings& settings, const std::string& folder, const std::string& name,
                       const std::string& outExtension);

enum class KeepFolders { No, Yes };
enum class Overwrite { No, Yes };

// Returns the path under which a rescued output is saved. With overwrite: the source with the extension in the wanted
// case. Without: named after the source's parent folder P, as outFolder/P.type, or outFolder/P/P.type (the folder is
// made) when folders are kept; several sources of one folder have the same name, and that is intended. ".psd" in the
// name becomes ".jpg": see base::WithoutPsd.
std::string MakeOutputName(host::Files& files, const std::string& source, const std::string& outFolder,
                           KeepFolders keepFolders, Overwrite overwrite, const std::string& type,
                           ExtensionCase extensionCase);

// These decide by the letters of the extension, in upper or lower case.
bool IsPsd(const std::string& extension);
bool IsGif(const std::string& extension);
bool IsJpeg(const std::string& extension);

}  // namespace quillon::job
