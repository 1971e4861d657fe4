// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/colour.h"
#include "base/path_text.h"
#include "base/rect.h"
#include "host/status.h"

namespace quillon::imaging {

using host::Status;

// The file formats that can be read.
enum class Format { Unknown, Jpeg, Png, Gif, Tiff, Bmp, Psd };

// Size and resolution of a picture as its file records them, without decoding it.
struct ImageFacts {
  int width = 0;   // pixels, before the EXIF orientation is applied
  int height = 0;  // pixels
  int dpi = 0;     // horizontal resolution in dots per inch; 0 if it was not asked for or the file states none
  Format format = Format::Unknown;  // by the first bytes of the file, whatever its name
};

// What to find out about a picture.
enum class Want { Size, SizeAndDpi };

// Output formats of CropToFile and SaveByEncoder. The numbers are part of the call and never change.
enum class Encoder { Bmp = 1, Jpeg = 2, Png = 3, Gif = 4, Tiff = 5 };

// Returns the encoder for a file extension without its dot; case does not matter.
// png, gif, tif, tiff, bmp and dib name their format; every other extension gives Jpeg.
inline Encoder EncoderFor(const std::string& extension) {
  const std::string lower = base::ToLowerAscii(extension);
  if (lower == "png") return Encoder::Png;
  if (lower == "gif") return Encoder::Gif;
  if (lower == "tif" || lower == "tiff") return Encoder::Tiff;
  if (lower == "bmp" || lower == "dib") return Encoder::Bmp;
  return Encoder::Jpeg;
}

// Returns whether files of this format have a tag for the orientation of the picture.
inline bool StoresOrientation(Encoder encoder) { return encoder != Encoder::Gif && encoder != Encoder::Bmp; }

// Returns the encoder that a type text names by a part of it, tested in the order "jp", "png", "gif", "tif", "bmp".
// Returns nothing for any other text. Case does not matter.
inline std::optional<Encoder> EncoderOfType(const std::string& type) {
  struct Known {
    const char* part;
    Encoder encoder;
  };
  constexpr Known kKnown[] = {{"jp", Encoder::Jpeg},
                              {"png", Encoder::Png},
                              {"gif", Encoder::Gif},
                              {"tif", Encoder::Tiff},
                              {"bmp", Encoder::Bmp}};
  const std::string lower = base::ToLowerAscii(type);
  for (const Known& known : kKnown) {
    if (lower.find(known.part) != std::string::npos) return known.encoder;
  }
  return std::nullopt;
}

// Whether the EXIF block of the source is copied to the result. Orientation and resolution do not depend on it.
enum class Exif { Drop, Keep };

// What happens to transparent pixels: blended with white, or kept if the encoder can store alpha.
enum class Alpha { OnWhite, Kept };

// What happens to samples of 16 bits: reduced to 8, or kept if the encoder can store them.
enum class Depth { Eight, Kept };

// What a format without an orientation tag (gif, bmp) stores of a picture that has an orientation.
//   Apply: the pixels are turned as the orientation says, so that every program shows the picture upright.
//   Defer: the pixels stay as they are. For a work file: whoever reads it gets the orientation from a tagSource.
enum class Orient { Apply, Defer };

// One crop from file to file, as CropToFile performs it.
struct CropRequest {
  std::string source;
  std::string destination;
  base::Rect rect;  // in pixels of the source; the area outside the source is padded with white
  Encoder encoder = Encoder::Jpeg;
  int quality = 80;  // jpeg only, 0..100
  int dpi = 0;       // written to the result; 0 keeps the resolution of the source
  Exif exif = Exif::Drop;
  Alpha alpha = Alpha::OnWhite;
  Depth depth = Depth::Eight;
  // The file that EXIF and orientation are copied from, for a source that could not store them. Empty: source itself.
  std::string tagSource = {};
  bool upright = false;  // the source was rotated after tagSource was written: orientation becomes 1
  Orient orient = Orient::Apply;

  bool operator==(const CropRequest&) const = default;
};

// A picture drawn over a crop; its transparent pixels leave the crop visible.
// left and top are the position of its top left corner in the result, in pixels.
struct Overlay {
  std::string picture;
  int left = 0;
  int top = 0;
};

// Draws source on a canvas of total pixels filled with colour, in this order: crop or pad to image, rotate, scale to
// drawn x scale, place at the offset.
struct BorderRequest {
  std::string source;
  std::string destination;
  int offsetX = 0;                     // left edge of the drawn picture on the canvas; may lie outside it
  int offsetY = 0;                     // top edge
  base::Size total;                    // size of the canvas
  base::Size image;                    // crops or pads the source from its top left corner; empty uses it as it is
  base::Size drawn;                    // size on the canvas before scale is applied
  int quality = 98;                    // jpeg only, 0..100
  int dpi = 0;                         // 0 keeps the resolution of the source
  double scale = 1.0;                  // multiplies drawn; the product is rounded to whole pixels
  base::Colour colour = base::kWhite;  // of the border and of the corners that a rotation uncovers
  double rotation = 0;                 // degrees, positive counter-clockwise
  Exif exif = Exif::Drop;
  // The file that the orientation is copied from, for a source that could not store it. Empty: source itself.
  std::string tagSource = {};

  bool operator==(const BorderRequest&) const = default;
};

// Scales source to size. The type is the destination's extension, a jpeg has quality 98.
struct ZoomRequest {
  std::string source;
  std::string destination;
  base::Size size;
  Exif exif = Exif::Drop;

  bool operator==(const ZoomRequest&) const = default;
};

// Options of SaveByType, which saves a picture under a type given as text.
struct SaveOptions {
  int quality = 80;         // jpeg only, 0..100
  bool blackWhite = false;  // tiff only: one bit a pixel with CCITT group 4 instead of LZW
  Exif exif = Exif::Drop;
  Orient orient = Orient::Apply;

  bool operator==(const SaveOptions&) const = default;
};

// Back: undoes an earlier rotation, so that the picture gets the orientation of its source again.
enum class Turn { There, Back };

// What is done to a picture in memory; each is the operation of Services of that name.
struct RotateStep {
  double angle = 0;
  base::Colour background = base::kWhite;
  Turn turn = Turn::There;
  bool operator==(const RotateStep&) const = default;
};
struct ResampleStep {
  base::Size size;
  bool operator==(const ResampleStep&) const = default;
};
struct GreyStep {
  bool operator==(const GreyStep&) const = default;
};
struct ThresholdStep {
  int level = 0;
  bool operator==(const ThresholdStep&) const = default;
};
struct InvertStep {
  bool operator==(const InvertStep&) const = default;
};
struct CutStep {
  base::Rect rect;
  bool operator==(const CutStep&) const = default;
};
// The picture, scaled to the size of drawn, on a new white canvas that gets its EXIF and resolution.
struct PlaceStep {
  base::Size canvas;
  base::Rect drawn;
  bool operator==(const PlaceStep&) const = default;
};
using PixelStep = std::variant<RotateStep, ResampleStep, GreyStep, ThresholdStep, InvertStep, CutStep, PlaceStep>;

// Loads source, performs the steps in order and saves the picture as SaveByType does.
struct EffectsRequest {
  std::string source;
  std::string destination;
  base::Size size;  // of the source as the caller knows it; a picture of another size is a failure
  std::vector<PixelStep> steps;
  int dpi = 0;  // 0 keeps the source's
  Encoder encoder = Encoder::Jpeg;
  SaveOptions save = {};

  bool operator==(const EffectsRequest&) const = default;
};

// How PngCut and PngOverBmp draw their source on a transparent canvas. The numbers are part of the call and never
// change.
//   Cut: the pixels of rect, which may lie outside the source.
//   Zoom: the whole source, scaled to size.
//   Overlay: as Zoom, with other pictures drawn over it.
//   Rotate: the whole source, rotated about its centre by angle; the canvas grows to hold it, and size is not used.
enum class PngMode { Cut = 0, Zoom = 1, Overlay = 2, Rotate = 3 };

// A picture of which the top left part of that size is drawn unscaled, left and top pixels from the corner.
struct PngOverlay {
  std::string picture;
  int left = 0;
  int top = 0;
  base::Size size;

  bool operator==(const PngOverlay&) const = default;
};

struct PngDrawing {
  PngMode mode = PngMode::Cut;
  base::Rect rect = {};                   // Cut: in pixels of the source
  base::Size size = {};                   // Zoom and Overlay: of the result
  double angle = 0;                       // Rotate: degrees, positive counter-clockwise
  std::vector<PngOverlay> overlays = {};  // Overlay: from the lowest to the highest

  bool operator==(const PngDrawing&) const = default;
};

// Draws source and writes it with 8-bit RGBA, whatever the source has; see PngDrawing. A result whose final name ends
// in ".gif" is a GIF, any other a PNG.
struct PngCutRequest {
  std::string source;
  std::string destination;
  PngDrawing drawing = {};
  // The name that the result gets in the end, if destination is a work file. Empty: destination.
  std::string finalName = {};

  bool operator==(const PngCutRequest&) const = default;
};

// Draws source and writes it with that many bits a pixel. The ending of the destination decides: ".jpg" gives a jpeg of
// quality 98, ".bmp" a bmp, anything else a png.
//   4, 8: a palette of at most 16 or 256 colours, chosen for the picture.
//   16: 5 bits a colour. 24, 32: 8 bits a colour. 48: 16 bits a colour. 64: 16 bits a colour and alpha.
// All but 64 are blended with white.
struct PngOverBmpRequest {
  std::string source;
  std::string destination;
  PngDrawing drawing = {};
  int bits = 24;

  bool operator==(const PngOverBmpRequest&) const = default;
};

// One operation from file to file.
using FileRequest =
    std::variant<CropRequest, BorderRequest, ZoomRequest, EffectsRequest, PngCutRequest, PngOverBmpRequest>;

inline const std::string& SourceOf(const FileRequest& request) {
  return std::visit([](const auto& each) -> const std::string& { return each.source; }, request);
}
inline const std::string& DestinationOf(const FileRequest& request) {
  return std::visit([](const auto& each) -> const std::string& { return each.destination; }, request);
}

// Operations that are done together, all on one source. Each reads that source or what the one before it wrote. What
// the next one reads is passed on in memory; the destinations of all others are the outputs.
struct FileWork {
  std::vector<FileRequest> steps;

  bool Empty() const { return steps.empty(); }
  const std::string& Source() const { return SourceOf(steps.front()); }
  // Whether what that step writes is only read by the next one.
  bool PassedOn(std::size_t step) const {
    return step + 1 < steps.size() && SourceOf(steps[step + 1]) == DestinationOf(steps[step]);
  }
  bool operator==(const FileWork&) const = default;
};

}  // namespace quillon::imaging
