// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "imaging/crop/file_requests.h"

// The operations on all frames of a file. They need no picture library, so that a helper that only does this starts
// quickly.
namespace quillon::imaging {

// Cuts every frame of an animated gif by CutGif, and checks what was written. Of the request, source and rect count.
Status CropFrames(const PictureInput& input, const CropRequest& request, host::Draft& draft);

// Paints over rect in every frame of an animated gif by RemoveLogo, and checks what was written. Of the request, source
// and rect count.
Status PaintOverFrames(const PictureInput& input, const CropRequest& request, host::Draft& draft);

}  // namespace quillon::imaging
