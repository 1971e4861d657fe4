// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "controls/values.h"

// The fixed entries of the lists in Form1 and FBaseOpt, and their meanings.
namespace quillon::job {

// Entries of CmbCutMode. A user cannot choose those after Tiff.
enum class CutMode { Normal, Gif, Png, Pdf, PenHui, Tiff, Colour, Video, Audio };
// Entries of CmbCutStyle. A user cannot choose the rounded ones.
enum class CutStyle { Rectangle, Square, Ellipse, Circle, RoundedRectangle, RoundedSquare };
// Entries of CmbOutType.
enum class OutType { Jpg, Png, Gif, Tif, Bmp, Pdf };
// Entries of CmbExtCase: the case of an output's extension.
enum class ExtensionCase { Keep, Upper, Lower };

// Returns the selected entry of a list as its enum.
template <typename Entry>
Entry Selected(const controls::ComboBox& list) {
  return static_cast<Entry>(list.Index());
}

template <typename Entry>
void Select(controls::ComboBox& list, Entry entry) {
  list.Select(static_cast<int>(entry));
}

std::vector<std::string> CutModes();
std::vector<std::string> CutStyles();
// Entries of CmbAnchor; see kAnchorCentre.
std::vector<std::string> Anchors();
std::vector<std::string> OutTypes();
// Resolutions in dots per inch. The first, 0, keeps the one of the source.
std::vector<std::string> DpiEntries();
inline constexpr int kDpi300Entry = 15;
// Returns the selected resolution, 0 if none is selected.
int DpiOf(const controls::ComboBox& list);
// Entries of CmbRotate.
std::vector<std::string> RotateRules();
// The one that turns every picture by TAngle.
inline constexpr int kOwnAngle = 5;
std::vector<std::string> ZoomEntries();
std::vector<std::string> ExtensionCases();
// The headings of the file list. Modes for files with pages or frames show their number in column 6.
std::vector<std::string> ListHeaders(CutMode mode = CutMode::Normal);

// The folder of colour profiles in the program folder.
inline constexpr const char* kColorConfigs = "ColorConfigs";
// Names of the CMYK profiles that are offered if they lie in that folder.
std::vector<std::string> CmykProfiles();

// --- CmbKeepCut, the presets of the fixed size.
// Entries that other controls depend on. Those from kPresetA to kFrameOnlyPreset are the studio presets.
inline constexpr int kCustomSize = 0;
inline constexpr int kPresetA = 1;
inline constexpr int kPresetB = 2;
inline constexpr int kPresetC = 3;
inline constexpr int kPresetD = 4;
inline constexpr int kFrameOnlyPreset = 5;

inline constexpr bool IsStudioPreset(int entry) { return entry >= kPresetA && entry <= kFrameOnlyPreset; }

// All entries, "<name> <a>cmx<b>cm". The first and the sixth have no size.
std::vector<std::string> PresetTexts();

// The two lengths of an entry in centimetres, in the order in which they are written.
struct PresetSize {
  float first = 0;
  float second = 0;
};

// Returns nothing for a text without a size.
std::optional<PresetSize> ParsePreset(std::string_view text);

}  // namespace quillon::job
