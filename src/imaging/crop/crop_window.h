// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "host/files/files.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/limits.h"
#include "imaging/pixels/picture.h"
#include "imaging/types.h"

// The parts that all cuts of files are made of.
namespace quillon::imaging {

// Whether a cut can be begun at all.
Status CheckCrop(const host::Files& files, const CropRequest& request, const Limits& limits);

// Encodes the part of a picture that lies in rect, on a canvas of 8 bits a sample.
Status EncodeWindow(Picture picture, base::Rect rect, const CropRequest& request, host::Draft& draft);

// As CutJpeg, into a draft that is checked. decoded: see JpegCutControl.
Status CropJpeg(const CropRequest& request, const Limits& limits, host::Draft& draft,
                const JpegPixels* decoded = nullptr);

}  // namespace quillon::imaging
