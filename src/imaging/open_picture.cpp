// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/open_picture.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "imaging/bmp_reader.h"
#include "imaging/bytes.h"
#include "imaging/colours.h"
#include "imaging/decode_jpeg.h"
#include "imaging/jpeg_exif.h"
#include "imaging/limit_checks.h"
#include "imaging/psd_reader.h"
#include "imaging/row_image.h"

namespace quillon::imaging {
namespace {

using namespace std::string_view_literals;
using vips::VImage;

constexpr double kMillimetres = 25.4;
constexpr std::string_view kExifPrefix = "Exif\0\0"sv;

// Feeds a loader from an open file, so that the file's name, whatever is in it, is never looked at again.
struct SourceReader {
  std::shared_ptr<Bytes> bytes;
  std::uint64_t at = 0;
};

gint64 OnRead(VipsSourceCustom*, void* buffer, gint64 size, SourceReader* reader) {
  const std::uint64_t left = reader->bytes->Size() - std::min(reader->at, reader->bytes->Size());
  const std::uint64_t count = std::min<std::uint64_t>(left, static_cast<std::uint64_t>(std::max<gint64>(size, 0)));
  if (count == 0) return 0;
  if (!reader->bytes->ReadAt(reader->at, buffer, count)) return -1;
  reader->at += count;
  return static_cast<gint64>(count);
}

gint64 OnSeek(VipsSourceCustom*, gint64 offset, int whence, SourceReader* reader) {
  const auto base = static_cast<gint64>(whence == SEEK_SET   ? 0
                                        : whence == SEEK_CUR ? reader->at
                                                             : reader->bytes->Size());
  if (offset < -base) return -1;
  reader->at = static_cast<std::uint64_t>(base + offset);
  return base + offset;
}

vips::VSource SourceOf(std::shared_ptr<Bytes> bytes) {
  VipsSourceCustom* custom = vips_source_custom_new();
  auto* reader = new SourceReader{std::move(bytes), 0};
  g_object_set_data_full(G_OBJECT(custom), "quillon-bytes", reader,
                         [](gpointer data) { delete static_cast<SourceReader*>(data); });
  g_signal_connect(custom, "read", G_CALLBACK(OnRead), reader);
  g_signal_connect(custom, "seek", G_CALLBACK(OnSeek), reader);
  return vips::VSource(VIPS_SOURCE(custom));
}

VImage LoadThroughLibrary(Format format, std::shared_ptr<Bytes> bytes) {
  const vips::VSource source = SourceOf(std::move(bytes));
  vips::VOption* options = VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_ERROR);
  switch (format) {
    case Format::Png:
      return VImage::pngload_source(source, options);
    case Format::Gif:
      return VImage::gifload_source(source, options);
    default:
      return VImage::tiffload_source(source, options);
  }
}

// All but the mark of pixels that come in order, which later steps look for.
void RemoveFields(VipsImage* image) {
  char** fields = vips_image_get_fields(image);
  for (char** field = fields; *field; ++field) {
    if (std::string_view(*field) != VIPS_META_SEQUENTIAL) vips_image_remove(image, *field);
  }
  g_strfreev(fields);
}

std::string BlobOf(const VImage& image, const char* field) {
  if (image.get_typeof(field) != VIPS_TYPE_BLOB) return {};
  std::size_t size = 0;
  const void* data = image.get_blob(field, &size);
  return {static_cast<const char*>(data), size};
}

// Moves what the loader put into the header to the tags, and leaves plain pixels.
Picture PictureOf(const VImage& loaded) {
  Picture picture;
  picture.tags.profile = BlobOf(loaded, VIPS_META_ICC_NAME);
  picture.tags.exif = BlobOf(loaded, VIPS_META_EXIF_NAME);
  if (picture.tags.exif.starts_with(kExifPrefix)) picture.tags.exif.erase(0, kExifPrefix.size());
  const int orientation = vips_image_get_orientation(loaded.get_image());
  if (orientation >= 1 && orientation <= 8) picture.tags.orientation = orientation;
  // One pixel a millimetre is what the library says when the file tells nothing.
  if (loaded.xres() != 1.0) picture.tags.dpi = static_cast<int>(std::lround(loaded.xres() * kMillimetres));
  VImage bare = loaded.copy();
  RemoveFields(bare.get_image());
  picture.pixels = StandardPixels(bare);
  return picture;
}

PictureTags TagsOf(const RowFacts& facts) {
  return {facts.profile, facts.exif, ReadExif(facts.exif).orientation, facts.dpi};
}

int ShrinkFor(base::Size original, base::Size reduceTo) {
  if (reduceTo.Empty()) return 1;
  int shrink = 8;
  while (shrink > 1 && (original.width / shrink < reduceTo.width || original.height / shrink < reduceTo.height)) {
    shrink /= 2;
  }
  return shrink;
}

Status OpenJpeg(const std::string& path, const Limits& limits, base::Size reduceTo, OpenedPicture& out) {
  std::shared_ptr<RowStream> rows;
  if (Status status = OpenJpegRows(path, 1, limits, rows); !status) return status;
  out.original = rows->Facts().size;
  const int shrink = ShrinkFor(out.original, reduceTo);
  if (shrink > 1) {
    if (Status status = OpenJpegRows(path, shrink, limits, rows); !status) return status;
  }
  out.picture = {ImageOfRows(rows, out.fault), TagsOf(rows->Facts())};
  out.inOrder = true;
  return Status::Ok();
}

Status OpenRows(Format format, std::shared_ptr<Bytes> bytes, const Limits& limits, OpenedPicture& out) {
  std::shared_ptr<RowSource> rows;
  Status status =
      format == Format::Bmp ? OpenBmp(std::move(bytes), limits, rows) : OpenPsd(std::move(bytes), limits, rows);
  if (!status) return status;
  out.original = rows->Facts().size;
  out.picture = {ImageOfRows(rows, out.fault), TagsOf(rows->Facts())};
  return Status::Ok();
}

Status OpenLibrary(Format format, std::shared_ptr<Bytes> bytes, const Limits& limits, OpenedPicture& out) {
  const VImage loaded = LoadThroughLibrary(format, std::move(bytes));
  if (!WithinLimits(loaded.width(), loaded.height(), limits)) return fault::SidesTooLarge();
  out.original = {loaded.width(), loaded.height()};
  out.picture = PictureOf(loaded);
  out.inOrder = true;
  return Status::Ok();
}

Status OpenBytes(const host::Files& files, const std::string& path, std::shared_ptr<FileBytes>& bytes) {
  const std::optional<host::FileFacts> facts = files.Look(path);
  if (facts && facts->kind != host::FileKind::File) return fault::NotAFile();
  if (Status status = FileBytes::Open(path, bytes); !status) return status;
  return bytes->Size() == 0 ? fault::EmptyFile() : Status::Ok();
}

}  // namespace

Format FormatOf(std::string_view start) {
  if (start.starts_with("\xFF\xD8\xFF"sv)) return Format::Jpeg;
  if (start.starts_with("\x89PNG\r\n\x1A\n"sv)) return Format::Png;
  if (start.starts_with("GIF87a"sv) || start.starts_with("GIF89a"sv)) return Format::Gif;
  for (const std::string_view head : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
    if (start.starts_with(head)) return Format::Tiff;
  }
  if (start.starts_with("BM"sv)) return Format::Bmp;
  if (start.starts_with("8BPS"sv)) return Format::Psd;
  return Format::Unknown;
}

Status OpenPicture(const host::Files& files, const std::string& path, const Limits& limits, base::Size reduceTo,
                   OpenedPicture& out) {
  std::shared_ptr<FileBytes> bytes;
  if (Status status = OpenBytes(files, path, bytes); !status) return status;
  std::array<char, 16> start{};
  const std::size_t known = static_cast<std::size_t>(std::min<std::uint64_t>(bytes->Size(), start.size()));
  if (!bytes->ReadAt(0, start.data(), known)) return fault::DamagedPicture();
  out.format = FormatOf({start.data(), known});
  out.fault = std::make_shared<ReadFault>();
  Status status;
  switch (out.format) {
    case Format::Unknown:
      return fault::NotAPicture();
    case Format::Jpeg:
      status = OpenJpeg(path, limits, reduceTo, out);
      break;
    case Format::Bmp:
    case Format::Psd:
      status = OpenRows(out.format, std::move(bytes), limits, out);
      break;
    default:
      status = OpenLibrary(out.format, std::move(bytes), limits, out);
      break;
  }
  if (!status) return status;
  if (!ProfileFits(out.picture.tags.profile, out.picture.pixels)) out.picture.tags.profile.clear();
  return Status::Ok();
}

void ReadThrough(const VImage& inOrder, int from, int to) {
  constexpr int kStep = 64;
  const vips::VRegion region = inOrder.region();
  for (int y = from; y < to; y += kStep) region.prepare(0, y, inOrder.width(), std::min(kStep, to - y));
}

}  // namespace quillon::imaging
