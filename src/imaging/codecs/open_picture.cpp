// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/open_picture.h"

#include <algorithm>
#include <array>

#include "imaging/codecs/readers.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/io/open_bytes.h"
#include "imaging/jpeg/jpeg_pixels.h"
#include "imaging/limits.h"
#include "imaging/pixels/colours.h"
#include "imaging/pixels/row_image.h"

namespace quillon::imaging {
namespace {

PictureTags TagsOf(const RowFacts& facts) { return {facts.profile, facts.exif, facts.orientation, facts.dpi}; }

// Returns the reduction that OpenPicture describes.
int ShrinkFor(base::Size original, base::Size reduceTo) {
  if (reduceTo.Empty()) return 1;
  int shrink = 8;
  while (shrink > 1 &&
         (original.width / shrink < 2 * reduceTo.width || original.height / shrink < 2 * reduceTo.height)) {
    shrink /= 2;
  }
  return shrink;
}

// Opens the formats that are decoded from top to bottom.
Status OpenStream(const std::string& path, const std::shared_ptr<Bytes>& bytes, const Limits& limits,
                  base::Size reduceTo, const ReadControl& control, OpenedPicture& out) {
  if (out.format != Format::Jpeg) {
    Status status = OpenVipsRows(out.format, bytes, limits, out.stream);
    if (status) out.original = out.stream->Facts().size;
    return status;
  }
  constexpr JpegColours kColours = JpegColours::Displayed;
  if (Status status = OpenJpegRows(path, 1, limits, out.stream, kColours, control); !status) return status;
  out.original = out.stream->Facts().size;
  out.shrink = ShrinkFor(out.original, reduceTo);
  return out.shrink > 1 ? OpenJpegRows(path, out.shrink, limits, out.stream, kColours, control) : Status::Ok();
}

// Opens the formats whose rows can be read in any order.
Status OpenRows(std::shared_ptr<Bytes> bytes, const Limits& limits, OpenedPicture& out) {
  Status status = out.format == Format::Bmp ? OpenBmp(std::move(bytes), limits, out.rows)
                                            : OpenPsd(std::move(bytes), limits, out.rows);
  if (status) out.original = out.rows->Facts().size;
  return status;
}

// Random access needs no skipping.
Status SkipRows(OpenedPicture& opened, int count) {
  if (opened.rows || count == 0) return Status::Ok();
  opened.consumed += count;
  return opened.stream->SkipRows(count);
}

// Opens the file and recognises its format.
Status OpenKnown(const host::Files& files, const std::string& path, const ReadControl& control,
                 std::shared_ptr<Bytes>& bytes, OpenedPicture& out) {
  if (Status status = OpenBytes(files, path, control, bytes); !status) return status;
  out.threads = control.threads;
  if (Status status = RecogniseFormat(*bytes, out.format); !status) return status;
  out.fault = std::make_shared<ReadFault>();
  return Status::Ok();
}

// All that is computed from these pixels is computed by that many threads.
void SetThreads(vips::VImage& pixels, int threads) {
  if (threads > 0) pixels.set(VIPS_META_CONCURRENCY, threads);
}

// Copies the metadata. A profile for other colours than those of the pixels is dropped.
void SetTags(OpenedPicture& out) {
  const RowFacts& facts = out.Facts();
  out.tags = TagsOf(facts);
  if (!ProfileFits(out.tags.profile, facts.layout)) out.tags.profile.clear();
}

}  // namespace

Status RecogniseFormat(Bytes& bytes, Format& format) {
  std::array<char, 16> start{};
  const std::size_t known = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.Size(), start.size()));
  if (!bytes.ReadAt(0, start.data(), known)) return fault::DamagedPicture();
  format = FormatOf({start.data(), known});
  return Status::Ok();
}

Status OpenPicture(const host::Files& files, const std::string& path, const Limits& limits, base::Size reduceTo,
                   OpenedPicture& out, const ReadControl& control) {
  std::shared_ptr<Bytes> bytes;
  if (Status status = OpenKnown(files, path, control, bytes, out); !status) return status;
  Status status;
  switch (out.format) {
    case Format::Unknown:
      return fault::NotAPicture();
    case Format::Bmp:
    case Format::Psd:
      status = OpenRows(std::move(bytes), limits, out);
      break;
    default:
      status = OpenStream(path, bytes, limits, reduceTo, control, out);
      break;
  }
  if (status) SetTags(out);
  return status;
}

Status OpenTiffPage(const host::Files& files, const std::string& path, int page, const Limits& limits,
                    OpenedPicture& out) {
  std::shared_ptr<Bytes> bytes;
  if (Status status = OpenKnown(files, path, {}, bytes, out); !status) return status;
  if (out.format != Format::Tiff) return fault::NotAPicture();
  if (Status status = OpenVipsRows(out.format, bytes, limits, out.stream, page); !status) return status;
  out.original = out.stream->Facts().size;
  SetTags(out);
  return Status::Ok();
}

Status ReadRows(OpenedPicture& opened, int top, int count, vips::VImage& out) {
  if (opened.rows) {
    const vips::VImage whole = ImageOfRows(opened.rows, opened.fault);
    out = whole.extract_area(0, top, whole.width(), count);
    SetThreads(out, opened.threads);
    return Status::Ok();
  }
  Status status = SkipRows(opened, top - opened.consumed);
  if (!status) return status;
  opened.consumed += count;
  out = ImageOfRows(opened.stream, count, opened.fault);
  SetThreads(out, opened.threads);
  return Status::Ok();
}

Status ReadWhole(OpenedPicture& opened, Picture& out) {
  out.tags = opened.tags;
  return ReadRows(opened, 0, opened.Facts().size.height, out.pixels);
}

Status ReadReduced(OpenedPicture& opened, Picture& out) {
  if (Status status = ReadWhole(opened, out); !status) return status;
  if (opened.shrink > 1) {
    out.pixels = out.pixels.extract_area(0, 0, FilledPixels(opened.original.width, opened.shrink),
                                         FilledPixels(opened.original.height, opened.shrink));
  }
  return Status::Ok();
}

int FilledPixels(int pixels, int shrink) { return (pixels + shrink / 2) / shrink; }

Status CheckRemainingRows(OpenedPicture& opened) {
  return SkipRows(opened, opened.Facts().size.height - opened.consumed);
}

Status ReadStatus(const OpenedPicture& opened, const Status& status) {
  if (status || !opened.fault) return status;
  const Status failure = opened.fault->Get();
  return failure ? status : failure;
}

}  // namespace quillon::imaging
