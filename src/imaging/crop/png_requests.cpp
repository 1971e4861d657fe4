// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/png_requests.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "base/path_text.h"
#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/codecs/quantise.h"
#include "imaging/crop/picture_steps.h"
#include "imaging/io/open_bytes.h"
#include "imaging/measure/frame_count.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/draft_target.h"
#include "imaging/pixels/geometry.h"
#include "imaging/png/png_cut.h"
#include "imaging/png/png_writer.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using vips::VImage;

constexpr int kJpegQuality = 98;
constexpr int kDeepBits = 48;  // from here on samples have 16 bits
constexpr int kAlphaBits = 64;

std::string ExtensionOf(const std::string& path) { return base::ToLowerAscii(base::SplitPath(path).extension); }

Status CheckSize(base::Size size, const Limits& limits) {
  if (size.Empty()) return fault::NoSize();
  return WithinLimits(size.width, size.height, limits) ? Status::Ok() : fault::SidesTooLarge();
}

Status CheckDrawing(const PngDrawing& drawing, const Limits& limits) {
  switch (drawing.mode) {
    case PngMode::Cut:
      if (drawing.rect.Empty()) return fault::EmptyRectangle();
      return CheckSize({drawing.rect.width, drawing.rect.height}, limits);
    case PngMode::Zoom:
    case PngMode::Overlay:
      return CheckSize(drawing.size, limits);
    case PngMode::Rotate:
      break;  // the size is known when the source is
  }
  return Status::Ok();
}

// Converts to RGB with alpha. Colours that a profile for RGB cannot describe become those that the screen shows.
void MakeRgba(Picture& picture, Depth depth) {
  if (IsCmyk(picture.pixels) || IsGrey(picture.pixels)) picture = Displayed(picture);
  VImage pixels = AsRgb(picture.pixels);
  if (depth == Depth::Eight) pixels = EightBit(pixels);
  if (!HasAlpha(pixels)) pixels = pixels.bandjoin_const({pixels.format() == VIPS_FORMAT_USHORT ? 65535.0 : 255.0});
  picture.pixels = pixels;
}

// Returns the rectangle of pixels with alpha, transparent outside of them.
VImage CutOrClear(const VImage& pixels, base::Rect rect) {
  const base::Rect seen = Intersection(rect, {0, 0, pixels.width(), pixels.height()});
  if (seen.Empty()) {
    const VImage dot = pixels.extract_area(0, 0, 1, 1).new_from_image(std::vector<double>(4, 0));
    return dot.embed(0, 0, rect.width, rect.height, VImage::option()->set("extend", VIPS_EXTEND_COPY));
  }
  const VImage part = pixels.extract_area(seen.left, seen.top, seen.width, seen.height);
  if (seen == rect) return part;
  return part.embed(seen.left - rect.left, seen.top - rect.top, rect.width, rect.height,
                    VImage::option()->set("extend", VIPS_EXTEND_BLACK));
}

// Draws a source as a PngDrawing says. The pixels have alpha and are computed while they are encoded.
class Drawer {
 public:
  Drawer(const PictureInput& input, const std::string& source, const PngDrawing& drawing, Depth depth)
      : input_(input), source_(source), drawing_(drawing), depth_(depth) {}

  // Passes the drawn picture to write. Rows of the source that it did not need are checked for damage afterwards.
  template <class Write>
  Status Run(Write write) {
    Status status = Guarded(fault::DamagedPicture(), [&] {
      if (Status open = OpenPicture(input_.files, source_, input_.limits, {}, opened_, input_.control); !open) {
        return open;
      }
      Picture picture;
      if (Status drawn = Draw(picture); !drawn) return drawn;
      picture.tags.exif.clear();
      if (Status written = write(picture); !written) return written;
      return CheckRemainingRows(opened_);
    });
    return ReadStatus(opened_, status);
  }

 private:
  Status Draw(Picture& picture) {
    if (drawing_.mode == PngMode::Cut) return Cut(picture);
    if (Status read = ReadWhole(opened_, picture); !read) return read;
    MakeRgba(picture, depth_);
    if (drawing_.mode == PngMode::Rotate) return Turn(picture);
    picture.pixels = Scaled(picture.pixels, drawing_.size);
    return drawing_.mode == PngMode::Overlay ? DrawOverlays(picture) : Status::Ok();
  }

  // If the rectangle misses the picture, one row is read all the same, because it has the format of the pixels.
  Status Cut(Picture& picture) {
    base::Rect seen = Intersection(drawing_.rect, {0, 0, opened_.original.width, opened_.original.height});
    if (seen.Empty()) seen.height = 1;
    picture.tags = opened_.tags;
    if (Status read = ReadRows(opened_, seen.top, seen.height, picture.pixels); !read) return read;
    MakeRgba(picture, depth_);
    base::Rect rect = drawing_.rect;
    rect.top -= seen.top;
    picture.pixels = CutOrClear(picture.pixels, rect);
    return Status::Ok();
  }

  Status Turn(Picture& picture) {
    const base::Size canvas = base::TurnedSize({picture.pixels.width(), picture.pixels.height()}, drawing_.angle);
    if (!WithinLimits(canvas.width, canvas.height, input_.limits)) return fault::SidesTooLarge();
    if (Status held = Materialize(picture.pixels, input_.Space()); !held) return held;
    picture.pixels = TurnedOnNothing(picture.pixels, drawing_.angle);
    SetOrientation(picture.tags, 1);
    return Status::Ok();
  }

  Status DrawOverlays(Picture& picture) {
    if (Status held = Materialize(picture.pixels, input_.Space()); !held) return held;
    for (const PngOverlay& overlay : drawing_.overlays) {
      if (Status fits = CheckSize(overlay.size, input_.limits); !fits) return fits;
      Picture above;
      PictureInput input = input_;
      input.control.content = nullptr;  // of the source
      if (Status loaded = LoadPicture(input, overlay.picture, above); !loaded) return loaded;
      MakeRgba(above, depth_);
      above.pixels = CutOrClear(above.pixels, {0, 0, overlay.size.width, overlay.size.height});
      const base::Rect place{overlay.left, overlay.top, overlay.size.width, overlay.size.height};
      if (Status drawn = imaging::Draw(picture, above, place, input_.Space()); !drawn) return drawn;
    }
    return Status::Ok();
  }

  const PictureInput& input_;
  const std::string& source_;
  const PngDrawing& drawing_;
  const Depth depth_;
  OpenedPicture opened_;
};

Status WriteRgba(const Picture& picture, host::Draft& draft) {
  RowFacts facts;
  facts.size = {picture.pixels.width(), picture.pixels.height()};
  facts.alpha = true;
  PngWriter writer(draft);
  Status status = writer.Begin(facts, {.profile = picture.tags.profile,
                                       .exif = MinimalExif(picture.tags.orientation, 0),
                                       .density = DensityOfDpi(picture.tags.dpi),
                                       .compression = PngCompression::Photo});
  if (!status) return status;
  status = ForEachRows(picture.pixels, [&](const RowBlock& rows) {
    for (int y = 0; y < rows.count; ++y) {
      Status written = writer.WriteRow(rows.first + rows.step * static_cast<std::size_t>(y));
      if (!written) return written;
    }
    return Status::Ok();
  });
  return status ? writer.Finish() : status;
}

// Returns the table that rounds samples to 5 bits.
VImage FiveBits() {
  std::array<unsigned char, 256> table{};
  for (unsigned i = 0; i < table.size(); ++i) {
    const unsigned five = (i * 31 + 127) / 255;
    table[i] = static_cast<unsigned char>((five * 255 + 15) / 31);
  }
  return VImage::new_from_memory(table.data(), table.size(), 256, 1, 1, VIPS_FORMAT_UCHAR).copy_memory();
}

// Reduces the colours to those of a picture with that many bits a pixel.
Status Reduce(VImage& pixels, int bits, const Limits& limits) {
  if (bits != kAlphaBits) pixels = Flattened(pixels, base::kWhite);
  switch (bits) {
    case 4:
    case 8:
      return Quantise(pixels, bits, limits);
    case 16:
      pixels = pixels.maplut(FiveBits());
      return Status::Ok();
    case 48:
    case 64:
      if (pixels.format() == VIPS_FORMAT_UCHAR) {
        pixels = (pixels * 257)
                     .cast(VIPS_FORMAT_USHORT)
                     .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16));
      }
      return Status::Ok();
    default:
      return Status::Ok();
  }
}

// An animated PNG holds more than its result.
Status CheckFrames(const PictureInput& input, const PngCutRequest& request, Bytes& bytes) {
  const std::string& final = request.finalName.empty() ? request.destination : request.finalName;
  const bool replaces = input.control.Reading([&] { return input.files.SameFile(request.source, final); });
  if (!replaces) return Status::Ok();
  int frames = 0;
  if (!CountFrames(bytes, frames) || frames <= 1) return Status::Ok();  // damage is found by the cut
  return {Problem::Unsupported, "源文件有 " + std::to_string(frames) + " 帧，裁剪只取第一帧，未覆盖"};
}

Status Stopped(const PictureInput& input, const Status& status) {
  return !status && input.control.stop.stop_requested() ? Status(Problem::Stopped, "已停止") : status;
}

}  // namespace

Encoder EncoderOf(const PngCutRequest& request) {
  const std::string& name = request.finalName.empty() ? request.destination : request.finalName;
  return ExtensionOf(name) == "gif" ? Encoder::Gif : Encoder::Png;
}

Encoder EncoderOf(const PngOverBmpRequest& request) {
  const std::string extension = ExtensionOf(request.destination);
  if (extension == "jpg" || extension == "jpeg") return Encoder::Jpeg;
  return extension == "bmp" ? Encoder::Bmp : Encoder::Png;
}

Status MakePngCut(const PictureInput& input, const PngCutRequest& request, host::Draft& draft) {
  if (Status fits = CheckDrawing(request.drawing, input.limits); !fits) return fits;
  const Encoder encoder = EncoderOf(request);
  std::shared_ptr<Bytes> bytes;
  Format format = Format::Unknown;
  if (Status opened = OpenBytes(input.files, request.source, input.control, bytes); !opened) return opened;
  if (Status known = RecogniseFormat(*bytes, format); !known) return Stopped(input, known);
  if (format == Format::Png) {
    if (Status allowed = CheckFrames(input, request, *bytes); !allowed) return allowed;
  }
  Status made;
  if (format == Format::Png && request.drawing.mode == PngMode::Cut && encoder == Encoder::Png) {
    made = CutPng(std::move(bytes), request.drawing.rect, input.limits, draft);
  } else {
    Drawer drawer(input, request.source, request.drawing, Depth::Eight);
    made = drawer.Run([&](const Picture& picture) {
      return encoder == Encoder::Gif ? EncodePicture(picture, {.encoder = encoder}, input.Space(), draft)
                                     : WriteRgba(picture, draft);
    });
  }
  return made ? CheckOutput(encoder, draft) : Stopped(input, made);
}

Status MakePngOverBmp(const PictureInput& input, const PngOverBmpRequest& request, host::Draft& draft) {
  constexpr std::array<int, 7> kDepths = {4, 8, 16, 24, 32, 48, 64};
  if (std::find(kDepths.begin(), kDepths.end(), request.bits) == kDepths.end()) {
    return {Problem::Unsupported, "不支持的颜色位数：" + std::to_string(request.bits)};
  }
  if (Status fits = CheckDrawing(request.drawing, input.limits); !fits) return fits;
  const Depth depth = request.bits >= kDeepBits ? Depth::Kept : Depth::Eight;
  Drawer drawer(input, request.source, request.drawing, depth);
  Status made = drawer.Run([&](Picture& picture) {
    if (Status reduced = Reduce(picture.pixels, request.bits, input.limits); !reduced) return reduced;
    EncodeOptions options{.encoder = EncoderOf(request), .quality = kJpegQuality};
    options.bits = request.bits;
    return EncodePicture(picture, options, input.Space(), draft);
  });
  return Stopped(input, made);
}

}  // namespace quillon::imaging
