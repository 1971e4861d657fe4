// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "base/rect.h"
#include "imaging/types.h"
#include "job/cut/first_page.h"
#include "job/settings/cut_settings.h"

// Decides what a cut makes of a picture, from the settings and the measured size alone. The steps of cut_steps.h use
// these functions when they cut, and OutcomeOf() puts them together in the order of the steps. So what the windows
// announce and what a run writes cannot differ.
namespace quillon::job {

// What is known of a source before it is cut.
struct SourceFacts {
  base::Size size;    // in pixels, as ImageInfo measures it
  int dpi = 0;        // dots per inch; 0 if the source states none
  int screenDpi = 0;  // of the screen; used for a border if nothing else states a resolution
  PagesOfFile pages;  // matters only if the result replaces the source
};

// What a cut makes of one source.
struct CutOutcome {
  base::Size size;         // of the finished file in pixels, with its border; of the first piece of a split
  int dpi = 0;             // resolution of the settings, else of the source; 0 if neither states one
  std::size_t pieces = 1;  // number of files
  base::Size cutFrom;      // the picture as it is when it is cut, after zoom and turn
  base::Rect cut;          // the rectangle in that picture
  std::string why;         // the reason if there is no file, else ""
  bool operator==(const CutOutcome&) const = default;
};

// A picture that was zoomed and turned for its cut.
struct TurnedPicture {
  base::Size size;          // as it is now
  double angle = 0;         // by which it was turned, in degrees counter-clockwise
  Pass pass = Pass::First;  // by which its rectangle is computed
};

// Whether a cut picture was turned and not turned back.
enum class Turned { No, Yes };

// --- The decisions of the steps.

// Returns the size to which ChZoomAndCut scales a source of that size; nothing if the size does not change.
std::optional<base::Size> SizeBeforeCut(const CutSettings& settings, base::Size picture);
// Returns the angle by which ChRotateCut turns a picture of that size, in degrees counter-clockwise; 0 if it does not,
// or if CmbRotate has turned the picture by a RestoreAngle other than 0 to undo.
double AngleOfCut(const CutSettings& settings, double restoreAngle, base::Size picture);
// Returns the size to which ChExact or ChCutAndZoom scales a cut of that size; nothing if the size does not change.
std::optional<base::Size> SizeAfterCut(const CutSettings& settings, base::Size cut);
// Returns whether the first page alone replaces its source, with all pages of it. The pieces of a split lie beside it,
// and the gif mode cuts every frame.
inline bool ReplacesPages(const CutSettings& settings) {
  return settings.over && !settings.split && settings.mode != CutMode::Gif;
}
// Returns the first pixel of part `index`, of `count` parts along a side; for index = count the end of the side. The
// lengths of the parts differ by at most one pixel.
int PartBegin(int side, int index, int count);
// Returns how millimetres of a border become pixels, for a source of sourceDpi dots per inch (0 if not known).
BoardResolution ResolutionOfBorder(const CutSettings& settings, int sourceDpi, int screenDpi);
// Sets the canvas of a border, and the place of request.image in it. Without a fixed cut the border surrounds the whole
// cut and TFixWH does not matter; a fixed cut is fitted into its size. A turned picture of presets 3 and 4 has its
// sides exchanged, and without ChMode1 its border is turned too.
void PlaceInBorder(const CutSettings& settings, const Board& board, Turned turned, imaging::BorderRequest& request);

// --- Reasons why there is no file.
// Returns "" if the rectangle holds a pixel of the picture: it has an area and is not wholly outside. Nothing is known
// to be outside a picture without area.
std::string NothingToCutText(const base::Rect& cut, base::Size picture);
inline constexpr const char* kFrameTheLogoText = "请在预览中框选要去掉的图标";
// Returns "" if the rectangle lies wholly in the picture. The frames of a gif have no white to fill up with.
std::string OutsideText(const base::Rect& cut, base::Size picture);
// Returns "" if a cut of that size can be split as the settings say.
std::string SplitFailure(const CutSettings& settings, base::Size cut);
inline constexpr const char* kNoBorderText = "仅边框模式没有启用“裁剪后加边框”，没有输出";

// Returns what a cut with these settings makes of a source. In a manual run the present margins count. Does not foresee
// what depends on other files, on the disk or on memory, and not the sheets of an imposition.
CutOutcome OutcomeOf(const CutSettings& settings, const SourceFacts& source);
// The same for a source that was zoomed and turned already. ChFilter is not applied.
CutOutcome OutcomeOfTurned(const CutSettings& settings, const SourceFacts& source, const TurnedPicture& picture);

}  // namespace quillon::job
