// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/rect.h"
#include "job/windows/preview.h"

// What the options will make of a picture, told before the cut: the preview shows it so.
namespace quillon::job {

class Program;

// The size a picture is zoomed to and the angle it is then turned by, degrees counter-clockwise, before it is cut.
struct CutShape {
  base::Size size;
  double angle = 0;
};
CutShape ShapeBeforeCut(const Program& program, base::Size picture);

// The border around the frame of the picture on show, in pixels of that picture; empty where none is added.
PreviewBoard BoardAroundCut(Program& program, const Preview& preview);

}  // namespace quillon::job
