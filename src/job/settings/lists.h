// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "controls/values.h"

// The fixed entries of the lists in Form1 and FBaseOpt.
namespace quillon::job {

// Entries of CmbCutMode. Those after Tiff cannot be chosen.
enum class CutMode { Normal, Gif, Png, Pdf, PenHui, Tiff, Colour, Video, Audio };
// Entries of CmbCutStyle. The rounded ones cannot be chosen.
enum class CutStyle { Rectangle, Square, Ellipse, Circle, RoundedRectangle, RoundedSquare };
// Entries of CmbOutType.
enum class OutType { Jpg, Png, Gif, Tif, Bmp, Pdf };

// The selected entry of a list as its enum.
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
std::vector<std::string> OutTypes();
// Dots per inch; entry 0 leaves the source's.
std::vector<std::string> DpiEntries();
inline constexpr int kDpi300Entry = 15;
// The selected entry of such a list, 0 where none is.
int DpiOf(const controls::ComboBox& list);
// Entries of CmbRotate; the last turns by TAngle.
std::vector<std::string> RotateRules();
inline constexpr int kOwnAngle = 5;
std::vector<std::string> ZoomEntries();
std::vector<std::string> ExtensionCases();
std::vector<std::string> ListHeaders();
// Names of CMYK profiles that are offered where \ColorConfigs holds them.
std::vector<std::string> CmykProfiles();

}  // namespace quillon::job
