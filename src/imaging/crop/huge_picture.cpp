// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/crop/huge_picture.h"

#include <memory>

#include "base/path_text.h"
#include "host/files/stale_output.h"
#include "imaging/codecs/encode.h"
#include "imaging/codecs/open_picture.h"
#include "imaging/jpeg/jpeg_cut.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/limits.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/geometry.h"
#include "imaging/pixels/pixel_space.h"
#include "imaging/png/png_writer.h"
#include "imaging/rows/row_steps.h"
#include "imaging/tiff/tiff_part.h"

// An order is carried out in the cheapest of four ways:
//   1. JPEG to JPEG without scaling or rotation: CutJpeg, which works on the stored colours.
//   2. JPEG to a smaller JPEG: decoded at a reduced size, scaled row by row.
//   3. Rows that the target format can store as they are: copied while they are decoded.
//   4. Anything else: a libvips pipeline, which computes strips of the result.
namespace quillon::imaging {
namespace {

using host::Problem;

constexpr int kMostShrink = 8;  // largest reduction that a JPEG can be decoded with

class Maker {
 public:
  Maker(host::Files& files, const HugeOrder& order, const Limits& limits)
      : files_(files), order_(order), limits_(limits), encoder_(EncoderFor(base::SplitPath(order.target).extension)) {}

  // Writes the result to draft. An error of the reader inside a pipeline wins over that of the pipeline.
  Status Fill(host::Draft& draft) {
    Status status = Guarded(fault::DamagedPicture(), [&] { return Make(draft); });
    return status || !opened_.fault || opened_.fault->Get() ? status : opened_.fault->Get();
  }

 private:
  Status Make(host::Draft& draft) {
    if (Status open = OpenPicture(files_, order_.source, limits_, {}, opened_); !open) return open;
    const base::Size whole = opened_.original;
    if (whole.width < order_.minimum.width || whole.height < order_.minimum.height) {
      return {Problem::Unsupported, "图片小于要求的最小尺寸"};
    }
    rect_ = Intersection(order_.cut.value_or(base::Rect{0, 0, whole.width, whole.height}),
                         {0, 0, whole.width, whole.height});
    if (rect_.Empty()) return fault::EmptyRectangle();
    target_ = TargetSize({rect_.width, rect_.height});
    if (!WithinLimits(target_.width, target_.height, limits_)) return fault::SidesTooLarge();
    if (IsPlainJpegCut()) return CutJpegSource(draft);
    if (IsPlainJpegReduction()) return ScaleJpegRows(draft);
    if (Status chosen = OpenTiffPartOnly(); !chosen) return chosen;
    if (CanCopyRows()) return WriteRows(draft);
    Picture picture;
    if (Status read = ReadPixels(picture); !read) return read;
    if (picture.pixels.width() != target_.width || picture.pixels.height() != target_.height) {
      picture.pixels = Scaled(picture.pixels, target_);
    }
    if (Status turned = Turn(picture); !turned) return turned;
    if (order_.grey) picture = GreyPicture(picture);
    return EncodePicture(picture, {.encoder = encoder_, .quality = order_.quality}, Space(), draft);
  }

  // Returns the size after scaling, under the rules of shrink and enlarge.
  base::Size TargetSize(base::Size made) const {
    const base::Size& size = order_.size;
    if (size.Empty()) return made;
    const bool smaller = size.width <= made.width && size.height <= made.height;
    const bool larger = size.width >= made.width && size.height >= made.height;
    const bool wanted = smaller ? order_.shrink : larger ? order_.enlarge : order_.shrink && order_.enlarge;
    return wanted ? size : made;
  }

  // Returns true if the pixels of the part are written unchanged.
  bool KeepsPixels() const {
    return !order_.grey && order_.angle == 0 && target_.width == rect_.width && target_.height == rect_.height;
  }

  // Way 1: a JPEG of which only a part is cut out.
  bool IsPlainJpegCut() const { return opened_.format == Format::Jpeg && encoder_ == Encoder::Jpeg && KeepsPixels(); }

  bool UsesWholePicture() const {
    return rect_.width == opened_.original.width && rect_.height == opened_.original.height;
  }

  // Way 2: a whole JPEG that becomes a smaller one.
  bool IsPlainJpegReduction() const {
    return opened_.format == Format::Jpeg && encoder_ == Encoder::Jpeg && UsesWholePicture() && !order_.grey &&
           order_.angle == 0 && target_.width <= rect_.width && target_.height <= rect_.height;
  }

  // Way 3: the target format can store the rows of the source.
  bool CanCopyRows() const {
    if (!opened_.stream || !KeepsPixels()) return false;
    const RowFacts& facts = opened_.Facts();
    switch (encoder_) {
      case Encoder::Jpeg:
        return facts.bits == 8 && !facts.alpha;
      case Encoder::Png:
        return facts.layout != RowLayout::Cmyk;
      case Encoder::Tiff:
        return true;
      default:
        return false;
    }
  }

  Status WriteRows(host::Draft& draft) {
    std::shared_ptr<RowStream> rows = opened_.stream;
    if (!part_) rows = std::make_shared<PartRows>(std::move(rows), rect_);
    PrefetchedRows ahead(std::move(rows));
    Status status = encoder_ == Encoder::Jpeg  ? WriteJpeg(ahead, opened_.tags, order_.quality, draft)
                    : encoder_ == Encoder::Png ? WritePng(ahead, opened_.tags, draft)
                                               : WriteTiff(ahead, opened_.tags, draft);
    return status ? CheckOutput(encoder_, draft) : status;
  }

  Status CutJpegSource(host::Draft& draft) {
    const auto sink = [&](const void* data, std::size_t size) { return draft.Write(data, size); };
    Status status = CutJpeg(order_.source, rect_, order_.quality, 0, Exif::Drop, limits_, sink);
    return status ? CheckOutput(Encoder::Jpeg, draft) : status;
  }

  // Decodes at the smallest size that still covers the target, in the YCC colours of the file, while the result is
  // written.
  Status ScaleJpegRows(host::Draft& draft) {
    int shrink = kMostShrink;
    while (shrink > 1 && (rect_.width / shrink < target_.width || rect_.height / shrink < target_.height)) shrink /= 2;
    std::shared_ptr<RowStream> rows;
    if (Status open = OpenJpegRows(order_.source, shrink, limits_, rows, JpegColours::YccAsStored); !open) return open;
    const base::Size used{FilledPixels(rect_.width, shrink), FilledPixels(rect_.height, shrink)};
    ScaledRows scaled(std::make_shared<PrefetchedRows>(std::move(rows)), used, target_);
    Status status = WriteJpeg(scaled, opened_.tags, order_.quality, draft);
    return status ? CheckOutput(Encoder::Jpeg, draft) : status;
  }

  // Opens the pixels for way 4.
  Status ReadPixels(Picture& picture) {
    if (UsesWholePicture() && opened_.format == Format::Jpeg) return ReadReducedJpeg(picture);
    if (part_) return ReadWhole(opened_, picture);
    picture.tags = opened_.tags;
    if (Status status = ReadRows(opened_, rect_.top, rect_.height, picture.pixels); !status) return status;
    picture.pixels = CropOrPad(picture.pixels, {rect_.left, 0, rect_.width, rect_.height}, base::kWhite);
    return Status::Ok();
  }

  // Decodes a whole JPEG at a reduced size. OpenPicture keeps twice the size it is given, so half of the target is
  // enough.
  Status ReadReducedJpeg(Picture& picture) {
    const base::Size enough{(target_.width + 1) / 2, (target_.height + 1) / 2};
    if (Status open = OpenPicture(files_, order_.source, limits_, enough, opened_); !open) return open;
    return ReadReduced(opened_, picture);
  }

  // Replaces the stream of a TIFF by one that decodes only the part, if the TIFF is of a kind that supports this.
  Status OpenTiffPartOnly() {
    if (opened_.format != Format::Tiff) return Status::Ok();
    std::shared_ptr<FileBytes> bytes;
    if (Status status = FileBytes::Open(order_.source, bytes); !status) return status;
    std::shared_ptr<RowStream> rows;
    base::Size original;
    Status status = OpenTiffPart(bytes, rect_, limits_, rows, original);
    if (status.GetProblem() == Problem::Unsupported) return Status::Ok();
    part_ = static_cast<bool>(status);
    if (part_) opened_.stream = std::move(rows);
    return status;
  }

  // Rotation reads its source in every order, so the pixels are computed first.
  Status Turn(Picture& picture) {
    if (order_.angle == 0) return Status::Ok();
    const base::Size canvas = TurnedSize(target_, order_.angle);
    if (!WithinLimits(canvas.width, canvas.height, limits_)) return fault::SidesTooLarge();
    if (Status held = MaterializeHuge(picture.pixels, Space()); !held) return held;
    picture.pixels = Turned(picture.pixels, order_.angle, base::kWhite);
    picture.tags.orientation = 1;
    picture.tags.exif = UprightExif(picture.tags.exif);
    return Status::Ok();
  }

  PixelSpace Space() const { return {files_, limits_}; }

  host::Files& files_;
  const HugeOrder& order_;
  const Limits& limits_;
  const Encoder encoder_;
  OpenedPicture opened_;
  base::Rect rect_;
  base::Size target_;
  bool part_ = false;  // stream has only the rows and columns of rect_
};

}  // namespace

// An older target goes to the trash after every failure but one: a target that must not be replaced is refused before
// the work begins, and stays. The caller knows only by the file whether the order was carried out.
Status MakeFromHuge(host::Files& files, const HugeOrder& order, const Limits& limits) {
  Maker maker(files, order, limits);
  bool begun = false;
  Status status = files.Save(order.target, [&](host::Draft& draft) {
    begun = true;
    return maker.Fill(draft);
  });
  if (!status && (begun || host::MayLeaveStaleOutput(status))) {
    host::DiscardStaleOutput(files, order.source, order.target);
  }
  return status;
}

}  // namespace quillon::imaging
