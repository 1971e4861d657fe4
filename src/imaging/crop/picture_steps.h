// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

// The operations on images in memory. If one fails, its picture is unchanged. Exceptions of libvips pass through; see
// Guarded. They may be called from any thread.
namespace quillon::imaging {

// Computes the pixels into memory, so that later steps read them in any order and do not compute them again.
// TooLarge: the pixels exceed the limits, which is checked before anything is allocated.
host::Status Materialize(vips::VImage& pixels, const Limits& limits);

host::Status Rotate(Picture& picture, double angle, base::Colour background, const Limits& limits);
host::Status Resample(Picture& picture, base::Size size, const Limits& limits);
host::Status MakeGrey(Picture& picture, const Limits& limits);
host::Status MakeBlackWhite(Picture& picture, int level, const Limits& limits);
host::Status InvertColours(Picture& picture);
host::Status CutOut(Picture& picture, base::Rect rect, const Limits& limits);
host::Status Draw(Picture& canvas, const Picture& picture, base::Rect drawn, const Limits& limits);
host::Status MakeCanvas(base::Size size, base::Colour colour, const Limits& limits, Picture& out);
// Sets the orientation, 1..8, also in the EXIF block.
void SetOrientation(PictureTags& tags, int orientation);
// Copies EXIF, orientation and resolution to a picture that was made of another.
void CopyTags(PictureTags& tags, const PictureTags& from);

host::Status ApplyStep(const PixelStep& step, Picture& picture, const Limits& limits);

}  // namespace quillon::imaging
