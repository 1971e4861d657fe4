// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "base/colour.h"
#include "base/rect.h"
#include "host/status.h"

namespace quillon::imaging {

using host::Status;

// Size in pixels and resolution in dots per inch (0: the file tells none).
struct ImageFacts {
  int width = 0;
  int height = 0;
  int dpi = 0;
};

// Encoders of CropToFile and SaveByEncoder, by number.
enum class Encoder { Bmp = 1, Jpeg = 2, Png = 3, Gif = 4, Tiff = 5 };

// By extension, upper or lower case ("jpg", "jpeg", "jpe", "jfif", "png", "gif", "tif", "tiff", "bmp", "dib");
// Jpeg for any other.
Encoder EncoderFor(const std::string& extension);

enum class Exif { Drop, Keep };

// Whether transparent pixels are laid on white or stay what they are where the encoder can hold them.
enum class Alpha { OnWhite, Kept };

// Cuts rect out of source. What lies outside the source is white. Quality 0..100 is for jpeg. dpi 0 keeps the source's.
struct CropRequest {
  std::string source;
  std::string destination;
  base::Rect rect;
  Encoder encoder = Encoder::Jpeg;
  int quality = 80;
  int dpi = 0;
  Exif exif = Exif::Drop;
  Alpha alpha = Alpha::OnWhite;
  // The file that EXIF and orientation are taken from, for a source that could not hold them; "": source itself.
  std::string tagSource = {};
  bool upright = false;  // the source was turned since: that orientation no longer holds

  bool operator==(const CropRequest&) const = default;
};

// A picture laid over a cut, transparent where it is, with its top left corner at a place of the result.
struct Overlay {
  std::string picture;
  int left = 0;
  int top = 0;
};

// Draws source, scaled to drawn, at offset on a canvas of total pixels filled with colour.
struct BorderRequest {
  std::string source;
  std::string destination;
  int offsetX = 0;
  int offsetY = 0;
  base::Size total;
  base::Size image;  // size of the source as the caller knows it; the source rectangle drawn
  base::Size drawn;
  int quality = 98;
  int dpi = 0;
  double scale = 1.0;  // multiplies drawn
  base::Colour colour = base::kWhite;
  double rotation = 0;  // degrees, counter-clockwise
  Exif exif = Exif::Drop;
};

// How a picture is saved by type text.
struct SaveOptions {
  int quality = 80;
  bool blackWhite = false;  // tiff: CCITT group 4 instead of LZW
  Exif exif = Exif::Drop;
};

}  // namespace quillon::imaging
