// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon::job {

// Entries of CmbKeepCut that the couplings name. Studio presets are 1 to 5.
inline constexpr int kCustomSize = 0;
inline constexpr int kPresetA = 1;
inline constexpr int kPresetB = 2;
inline constexpr int kPresetC = 3;
inline constexpr int kPresetD = 4;
inline constexpr int kFrameOnlyPreset = 5;

inline constexpr bool IsStudioPreset(int entry) { return entry >= kPresetA && entry <= kFrameOnlyPreset; }

// All entries of CmbKeepCut, "<name> <a>cmx<b>cm"; the first and the sixth have no size.
std::vector<std::string> PresetTexts();

// The two lengths of an entry in centimetres, in the order in which they are written.
struct PresetSize {
  float first = 0;
  float second = 0;
};

// Nothing for a text without a size.
std::optional<PresetSize> ParsePreset(std::string_view text);

}  // namespace quillon::job
