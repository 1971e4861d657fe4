// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "job/windows/preview.h"

// Computes how the options will change a picture, so that the preview can show it before the cut.
namespace quillon::job {

class Program;

// How a picture is changed before it is cut.
struct CutShape {
  base::Size size;   // it is zoomed to this size
  double angle = 0;  // and then turned by this angle, in degrees counter-clockwise
};
CutShape ShapeBeforeCut(const Program& program, base::Size picture);

// Returns the border around the frame of the picture on show, in pixels of that picture; empty if none is added.
PreviewBoard BoardAroundCut(Program& program, const Preview& preview);

}  // namespace quillon::job
