// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "imaging/crop/file_requests.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// A picture decoded once for several cuts into files of one type. A JPEG for JPEGs is held as it is stored, everything
// else as a picture.
struct DecodedSource {
  Encoder encoder = Encoder::Jpeg;
  std::optional<JpegPixels> jpeg;
  Picture picture;
};

Status DecodeForCuts(const PictureInput& input, const std::string& path, Encoder encoder, DecodedSource& out);

// Whether a cut can be made of a decoded source at all.
bool FitsDecoded(const CropRequest& request, Encoder encoder);
// As MakeCrop: the results are the same, byte for byte.
Status CropDecoded(const PictureInput& input, const DecodedSource& source, const CropRequest& request,
                   host::Draft& draft);

}  // namespace quillon::imaging
