// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/io/bytes.h"
#include "imaging/types.h"

namespace quillon::imaging {

// Counts the pictures of a file by its structure alone; the first bytes decide which kind of file it is.
//   gif: image descriptors.
//   tiff, BigTIFF: directories of the main chain; a chain that returns to an earlier directory ends there.
//   png: the frames that the chunk acTL states, or 1 without it.
//   any other picture: 1.
// If the structure breaks off, the pictures before the break count. No pixel is decoded, and no byte of the file is
// followed twice.
// Damaged: no picture can be found. Unsupported: this is no picture that is read here.
Status CountFrames(Bytes& bytes, int& frames);

// Returns whether the head of a png says that pixels can be transparent: by a sample of each pixel, by its palette or
// by one transparent colour. False for any other file. No pixel is decoded, so that all of them may be opaque.
bool PngHasAlpha(Bytes& bytes);

}  // namespace quillon::imaging
