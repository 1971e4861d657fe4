// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "imaging/crop/file_requests.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {

// A picture that is decoded once for several crops into files of one type. A JPEG that is cropped into JPEGs is held in
// its stored colours, everything else as a picture.
struct DecodedSource {
  Encoder encoder = Encoder::Jpeg;
  std::optional<JpegPixels> jpeg;
  Picture picture;
};

// cuts: the crops that will be made, if they are known. Of a large JPEG only what they use is kept.
Status DecodeForCuts(const PictureInput& input, const std::string& path, Encoder encoder, const FileWork& cuts,
                     DecodedSource& out);

// Returns whether CropDecoded can make the crop from a picture that was decoded for this encoder and this crop.
bool FitsDecoded(const CropRequest& request, Encoder encoder);
// Returns whether the pixels of rect were kept.
bool HoldsPixels(const DecodedSource& source, const base::Rect& rect);
// Makes a crop with the same bytes as MakeCrop.
Status CropDecoded(const PictureInput& input, const DecodedSource& source, const CropRequest& request,
                   host::Draft& draft);

}  // namespace quillon::imaging
