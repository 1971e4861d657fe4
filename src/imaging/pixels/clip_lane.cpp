// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/pixels/clip_lane.h"

#include <limits>
#include <memory>

#include "imaging/io/bytes.h"
#include "imaging/limits.h"
#include "imaging/pixels/draft_target.h"

namespace quillon::imaging {
namespace {

using vips::VImage;

constexpr std::int64_t kMagic = 0x31656E614C6C6975;

// The header as it is stored: ten numbers of 64 bits, so that it has no padding on any compiler.
struct LaneHead {
  std::int64_t magic = kMagic;
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::int64_t bands = 0;
  std::int64_t format = 0;  // VipsBandFormat
  std::int64_t kind = 0;    // VipsInterpretation
  std::int64_t dpi = 0;
  std::int64_t orientation = 1;
  std::int64_t profileSize = 0;
  std::int64_t exifSize = 0;

  std::int64_t PixelBytes() const { return bands * (format == VIPS_FORMAT_USHORT ? 2 : 1); }
};

// Returns true for the sample formats that a Picture may have; see there.
bool KnownKind(const LaneHead& head) {
  const bool deep = head.format == VIPS_FORMAT_USHORT;
  if (!deep && head.format != VIPS_FORMAT_UCHAR) return false;
  switch (head.kind) {
    case VIPS_INTERPRETATION_B_W:
      return !deep && (head.bands == 1 || head.bands == 2);
    case VIPS_INTERPRETATION_GREY16:
      return deep && (head.bands == 1 || head.bands == 2);
    case VIPS_INTERPRETATION_sRGB:
      return !deep && (head.bands == 3 || head.bands == 4);
    case VIPS_INTERPRETATION_RGB16:
      return deep && (head.bands == 3 || head.bands == 4);
    case VIPS_INTERPRETATION_CMYK:
      return head.bands == 4;
    default:
      return false;
  }
}

// Returns true if the sizes in the header add up to the size of the file.
bool Consistent(const LaneHead& head, std::uint64_t fileSize) {
  constexpr std::int64_t kTagsMax = std::int64_t{64} << 20;
  const auto within = [](std::int64_t size) { return size >= 0 && size <= kTagsMax; };
  if (head.magic != kMagic || !KnownKind(head) || !within(head.profileSize) || !within(head.exifSize)) return false;
  if (head.orientation < 1 || head.orientation > 8 || head.dpi < 0 || head.dpi > std::numeric_limits<int>::max()) {
    return false;
  }
  const std::int64_t pixels = head.width * head.height * head.PixelBytes();
  return sizeof(LaneHead) + static_cast<std::uint64_t>(head.profileSize + head.exifSize + pixels) == fileSize;
}

}  // namespace

Status WriteLane(const Picture& picture, host::Draft& draft) {
  const VImage& pixels = picture.pixels;
  const PictureTags& tags = picture.tags;
  LaneHead head;
  head.width = pixels.width();
  head.height = pixels.height();
  head.bands = pixels.bands();
  head.format = pixels.format();
  head.kind = pixels.interpretation();
  head.dpi = tags.dpi;
  head.orientation = tags.orientation;
  head.profileSize = static_cast<std::int64_t>(tags.profile.size());
  head.exifSize = static_cast<std::int64_t>(tags.exif.size());
  if (Status status = draft.Write(&head, sizeof(head)); !status) return status;
  if (Status status = draft.Write(tags.profile.data(), tags.profile.size()); !status) return status;
  if (Status status = draft.Write(tags.exif.data(), tags.exif.size()); !status) return status;
  const std::size_t row = VIPS_IMAGE_SIZEOF_LINE(pixels.get_image());
  return ForEachRows(pixels, [&](const RowBlock& block) {
    for (int y = 0; y < block.count; ++y) {
      Status status = draft.Write(block.first + block.step * static_cast<unsigned>(y), row);
      if (!status) return status;
    }
    return Status::Ok();
  });
}

Status ReadLane(const std::string& path, const Limits& limits, Picture& out) {
  std::shared_ptr<FileBytes> bytes;
  if (Status status = FileBytes::Open(path, bytes); !status) return status;
  LaneHead head;
  if (!bytes->ReadAt(0, &head, sizeof(head))) return fault::DamagedPicture();
  if (!WithinLimits(head.width, head.height, limits)) return fault::SidesTooLarge();
  if (!Consistent(head, bytes->Size())) return fault::DamagedPicture();
  if (!FitsMemory(head.width, head.height, static_cast<int>(head.PixelBytes()), limits)) return fault::OutOfMemory();
  std::uint64_t at = sizeof(head);
  PictureTags tags{std::string(static_cast<std::size_t>(head.profileSize), '\0'),
                   std::string(static_cast<std::size_t>(head.exifSize), '\0'), static_cast<int>(head.orientation),
                   static_cast<int>(head.dpi)};
  for (std::string* part : {&tags.profile, &tags.exif}) {
    if (!bytes->ReadAt(at, part->data(), part->size())) return fault::DamagedPicture();
    at += part->size();
  }
  VImage pixels(vips_image_new_memory());
  vips_image_init_fields(pixels.get_image(), static_cast<int>(head.width), static_cast<int>(head.height),
                         static_cast<int>(head.bands), static_cast<VipsBandFormat>(head.format), VIPS_CODING_NONE,
                         static_cast<VipsInterpretation>(head.kind), 1, 1);
  if (vips_image_write_prepare(pixels.get_image()) != 0) throw vips::VError();
  auto* samples = VIPS_IMAGE_ADDR(pixels.get_image(), 0, 0);
  if (!bytes->ReadAt(at, samples, VIPS_IMAGE_SIZEOF_IMAGE(pixels.get_image()))) return fault::DamagedPicture();
  out = {pixels, std::move(tags)};
  return Status::Ok();
}

}  // namespace quillon::imaging
