// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/crop/file_requests.h"
#include "imaging/types.h"

// The operations that keep transparency, without the final file: they read an input and write into a draft. They may be
// called from any thread.
namespace quillon::imaging {

// Returns the encoder that the final name of the result selects.
Encoder EncoderOf(const PngCutRequest& request);
Encoder EncoderOf(const PngOverBmpRequest& request);

// A plain cut from PNG to PNG is CutPng; everything else is drawn by libvips.
Status MakePngCut(const PictureInput& input, const PngCutRequest& request, host::Draft& draft);
Status MakePngOverBmp(const PictureInput& input, const PngOverBmpRequest& request, host::Draft& draft);

}  // namespace quillon::imaging
