// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/pixels/picture.h"
#include "imaging/pixels/pixel_space.h"
#include "imaging/types.h"

// The operations on images. If one fails, its picture is unchanged. Exceptions of libvips pass through; see Guarded.
// They may be called from any thread.
//
// Memory: the pixels of a picture and of the result of a step are held in memory up to Limits::pixelsInMemory each. A
// large picture is kept in a TileStore, and the result of a step that is large is computed when it is read, tile by
// tile. So a large picture takes some rows of itself and of its results, less than 150 MB at 300 megapixels and any
// angle. If there is no disk for it, it is held in memory as well.
namespace quillon::imaging {

host::Status Rotate(Picture& picture, double angle, base::Colour background, const PixelSpace& space);
host::Status Resample(Picture& picture, base::Size size, const PixelSpace& space);
host::Status MakeGrey(Picture& picture, const PixelSpace& space);
host::Status MakeBlackWhite(Picture& picture, int level, const PixelSpace& space);
host::Status InvertColours(Picture& picture);
host::Status CutOut(Picture& picture, base::Rect rect, const PixelSpace& space);
host::Status Draw(Picture& canvas, const Picture& picture, base::Rect drawn, const PixelSpace& space);
host::Status MakeCanvas(base::Size size, base::Colour colour, const PixelSpace& space, Picture& out);
// Sets the orientation, 1..8, also in the EXIF block.
void SetOrientation(PictureTags& tags, int orientation);
// Copies EXIF, orientation and resolution to a picture that was made of another.
void CopyTags(PictureTags& tags, const PictureTags& from);

host::Status ApplyStep(const PixelStep& step, Picture& picture, const PixelSpace& space);

}  // namespace quillon::imaging
