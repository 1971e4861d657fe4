// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "job/settings/geometry.h"
#include "job/settings/lists.h"

namespace quillon::job {

// Returns the rectangle that a cut mode cuts out of a picture, a frame or a page of that size. All drivers, the manual
// frame and the preview call it. Lengths are pixels, R rounds to whole pixels with ties to even, each value on its own.
// In every mode SkipCutThisImage gives the whole picture. In modes 1, 2 and 5 ChAsFramed gives the frame of the
// preview, and ChExact does not count, because nothing is scaled.
//
// - Modes 1 and 2 (gif, png): left and top are ML and MT. From the width go left and a right remainder: FixW with
//   ChFixCut, else MR; from the height top and FixH or MB. With ChCutA all of them are pixels, without it per cent.
//   In mode 1 odd sides are raised by one, each on its own, unless they would then pass the edge of the picture.
// - Mode 3 (pdf): left, top and both remainders MR and MB are always per cent, even with ChCutA and ChFixCut.
// - Mode 5 (tiff): with ChFixCut, ML and MT are per cent and the size is FixW x FixH. Else with ChCutA, ML and MT are
//   pixels, and the number that is spelt by the texts of ML and MR together (10 and 20 give 1020) goes from the width,
//   that of MT and MB from the height. Else all four margins are per cent.
// - All other modes: PlacedRectangle.
//
// As there, nothing is clamped: sides of 0 or less are a result, and the driver fails the file.
base::Rect RectangleOfMode(CutMode mode, const CutGeometry& geometry, base::Size picture, Pass pass = Pass::First);

// Returns true for the modes that cut every frame or keep transparency, and change nothing else.
inline bool CutsOnly(CutMode mode) { return mode == CutMode::Gif || mode == CutMode::Png; }

// Returns which values decide RectangleOfMode.
CountingValues ValuesOfMode(CutMode mode, const CutGeometry& geometry);

}  // namespace quillon::job
