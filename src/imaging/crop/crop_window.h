// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

// Building blocks of all crops from file to file.
namespace quillon::imaging {

// Checks a request before anything is read. Returns an error if the rectangle is empty or exceeds the limits, or if the
// source is not a regular file. A missing source passes; opening it reports the error.
Status CheckCrop(const host::Files& files, const CropRequest& request, const Limits& limits);

// Crops or pads the picture to rect on white and writes it with the encoder of the request.
// Samples are reduced to 8 bits. Alpha is blended with white unless the request keeps it.
Status EncodeWindow(Picture picture, base::Rect rect, const CropRequest& request, host::Draft& draft);

// Cuts a JPEG to a JPEG (see CutJpeg) into a draft, and checks what was written.
Status CropJpeg(const CropRequest& request, const Limits& limits, host::Draft& draft,
                const JpegCutControl& control = {});

}  // namespace quillon::imaging
