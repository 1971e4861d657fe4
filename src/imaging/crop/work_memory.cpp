// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/work_memory.h"

#include <algorithm>

#include "base/rect.h"
#include "imaging/crop/file_requests.h"

namespace quillon::imaging {
namespace {

constexpr int kRgb = 3;
constexpr int kRgba = 4;
constexpr int kIndexedBits = 8;
constexpr int kQuantised = 8;     // bytes a pixel takes while colours are chosen
constexpr int kGifPixel = 4;      // of a picture that is held whole to choose its colours
constexpr int kRowsPassing = 64;  // held by all steps of a pipeline and the encoder
constexpr int kFloat = 4;

// More pixels than any memory holds, and few enough that products and sums of a work's bytes stay within 64 bits.
constexpr std::int64_t kTooManyPixels = std::int64_t{1} << 48;

std::int64_t Area(base::Size size) { return std::min(std::int64_t{size.width} * size.height, kTooManyPixels); }
base::Size SizeOf(const base::Rect& rect) { return {rect.width, rect.height}; }

// What one request holds, and the size of the picture that it writes.
struct Request {
  std::int64_t peak = 0;
  base::Size made;
  int pixelBytes = kRgb;  // of the picture that it writes, at least
};

// Follows a picture in memory through its steps. A step holds what it reads and what it makes.
class Held {
 public:
  Held(base::Size size, int pixelBytes) : size_(size), pixelBytes_(pixelBytes), held_(Area(size) * pixelBytes) {
    peak_ = held_;
  }

  void operator()(const RotateStep& step) {
    pixelBytes_ = std::max(pixelBytes_, kRgb);
    Make(base::TurnedSize(size_, step.angle));
  }
  void operator()(const ResampleStep& step) { Make(step.size); }
  void operator()(const GreyStep&) { MakeGrey(); }
  void operator()(const ThresholdStep&) { MakeGrey(); }
  void operator()(const InvertStep&) {}
  void operator()(const CutStep& step) { size_ = SizeOf(step.rect); }
  void operator()(const PlaceStep& step) {
    pixelBytes_ = std::max(pixelBytes_, kRgb);
    peak_ = std::max(peak_, held_ + Area(SizeOf(step.drawn)) * pixelBytes_ + 2 * Area(step.canvas) * pixelBytes_);
    Make(step.canvas);
  }

  std::int64_t Peak() const { return peak_; }
  base::Size Size() const { return size_; }

 private:
  void MakeGrey() {
    pixelBytes_ = std::max(1, pixelBytes_ / kRgb);
    Make(size_);
  }
  void Make(base::Size size) {
    size_ = size;
    const std::int64_t made = Area(size) * pixelBytes_;
    peak_ = std::max(peak_, held_ + made);
    held_ = made;
  }

  base::Size size_;
  int pixelBytes_;
  std::int64_t held_;
  std::int64_t peak_ = 0;
};

struct Peak {
  base::Size source;
  int pixelBytes;

  Request operator()(const CropRequest& request) const { return {0, SizeOf(request.rect)}; }
  // The picture and the part of it that is drawn, before it is scaled.
  Request operator()(const BorderRequest& request) const {
    const base::Size drawn = request.rotation == 0 ? request.image : base::TurnedSize(request.image, request.rotation);
    return {(std::max(Area(source), Area(request.image)) + Area(drawn)) * pixelBytes, request.total};
  }
  Request operator()(const ZoomRequest& request) const { return {0, request.size}; }
  Request operator()(const EffectsRequest& request) const {
    Held held(request.size, pixelBytes);
    for (const PixelStep& step : request.steps) std::visit(held, step);
    return {held.Peak(), held.Size()};
  }
  Request operator()(const PngCutRequest& request) const { return Drawn(request.drawing, kRgba); }
  Request operator()(const PngOverBmpRequest& request) const {
    Request drawn = Drawn(request.drawing, std::max(kRgba, request.bits / 8));
    // Colours are chosen from the whole picture.
    if (request.bits <= kIndexedBits) drawn.peak += Area(drawn.made) * kQuantised;
    return drawn;
  }

  Request Drawn(const PngDrawing& drawing, int drawnBytes) const {
    switch (drawing.mode) {
      case PngMode::Zoom:
        return {0, drawing.size, drawnBytes};
      case PngMode::Overlay:
        return {2 * Area(drawing.size) * drawnBytes, drawing.size, drawnBytes};
      case PngMode::Rotate:
        return {Area(source) * drawnBytes, base::TurnedSize(source, drawing.angle), drawnBytes};
      case PngMode::Cut:
        break;
    }
    return {0, SizeOf(drawing.rect), drawnBytes};
  }
};

}  // namespace

WorkMemory MemoryFor(const FileWork& work, const OpenedPicture& source) {
  const RowFacts& facts = source.Facts();
  const int pixelBytes = facts.PixelBytes();
  WorkMemory memory;
  base::Size read = source.original;
  std::int64_t handed = 0;  // what the step before has passed on
  for (std::size_t i = 0; i < work.steps.size(); ++i) {
    const FileRequest& request = work.steps[i];
    const Request held = std::visit(Peak{read, pixelBytes}, request);
    const std::int64_t rows = std::int64_t{std::max(read.width, held.made.width)} * pixelBytes * kRowsPassing * kFloat;
    const std::int64_t written = Area(held.made) * std::max(pixelBytes, held.pixelBytes);
    const bool passedOn = work.PassedOn(i);
    std::int64_t peak = held.peak + rows + handed + (handed > 0 ? 0 : facts.held);
    if (EncoderOf(request) == Encoder::Gif) peak += Area(held.made) * kGifPixel;
    // What cannot store its orientation is held whole when it is turned upright.
    if (source.tags.orientation != 1 && !StoresOrientation(EncoderOf(request))) peak += written;
    if (passedOn) peak += written;
    memory.working = std::max(memory.working, peak);
    if (!passedOn && EncoderOf(request) != Encoder::Jpeg) memory.results += written;
    handed = passedOn ? written : 0;
    if (passedOn) read = held.made;
  }
  return memory;
}

}  // namespace quillon::imaging
