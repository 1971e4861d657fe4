// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/describe.h"

#include <exiv2/exiv2.hpp>

#include <array>
#include <optional>
#include <set>
#include <string_view>

#include "base/rect.h"
#include "helpers/exif/same_picture.h"
#include "host/files/file_stamp.h"
#include "imaging/jpeg/jpeg_head.h"
#include "imaging/metadata/exif_block.h"

namespace quillon::helpers {
namespace {

using host::Problem;
using host::Status;

constexpr std::uint64_t kLargestFile = std::uint64_t{1} << 30;
constexpr const char* kOrientation = "Exif.Image.Orientation";

// Tags of the first directory that describe how the pixels of that very file are stored.
const std::set<std::uint16_t>& StructuralTags() {
  static const std::set<std::uint16_t> kTags = {
      0x00FE, 0x00FF, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x0107, 0x0108, 0x0109, 0x010A, 0x0111, 0x0112, 0x0115,
      0x0116, 0x0117, 0x0118, 0x0119, 0x011A, 0x011B, 0x011C, 0x0120, 0x0121, 0x0122, 0x0123, 0x0124, 0x0125, 0x0128,
      0x012D, 0x013D, 0x013E, 0x013F, 0x0140, 0x0141, 0x0142, 0x0143, 0x0144, 0x0145, 0x014A, 0x014C, 0x014D, 0x014E,
      0x0150, 0x0151, 0x0152, 0x0153, 0x0154, 0x0155, 0x0156, 0x015B, 0x0200, 0x0201, 0x0202, 0x0203, 0x0205, 0x0206,
      0x0207, 0x0208, 0x0209, 0x0211, 0x0212, 0x0213, 0x0214, 0x02BC, 0x83BB, 0x8649, 0x8773, 0x935C};
  return kTags;
}

bool IsStructural(const Exiv2::Exifdatum& datum) {
  return datum.groupName() == "Image" && StructuralTags().contains(datum.tag());
}

// Directories of other pictures in the file, such as reduced versions.
bool IsOtherPicture(const Exiv2::Exifdatum& datum) {
  const std::string group = datum.groupName();
  return group.starts_with("Image") ? group != "Image"
                                    : group.starts_with("SubImage") || group.starts_with("SubThumb") ||
                                          group == "Thumbnail" || group.find("Preview") != std::string::npos;
}

bool HoldsJpeg(const Exiv2::Exifdatum& datum) {
  constexpr long kSmallest = 128;
  const Exiv2::TypeId type = datum.typeId();
  if (datum.size() < kSmallest || (type != Exiv2::undefined && type != Exiv2::unsignedByte)) return false;
  std::string bytes(static_cast<std::size_t>(datum.size()), '\0');
  datum.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
  return bytes.find("\xFF\xD8\xFF") != std::string::npos;
}

template <class Data, class Unwanted>
void EraseIf(Data& data, Unwanted unwanted) {
  for (auto datum = data.begin(); datum != data.end();) {
    datum = unwanted(*datum) ? data.erase(datum) : std::next(datum);
  }
}

struct Target {
  bool jpeg = false;
  base::Size size;
  int dpi = 0;  // from the header of a JPEG
};

// Returns the metadata of source, with the values about pixels taken from target.
Exiv2::ExifData ExifFor(const Exiv2::ExifData& source, const Exiv2::ExifData& own, const Target& target) {
  Exiv2::ExifData exif = source;
  EraseIf(exif, [](const auto& datum) { return IsStructural(datum) || IsOtherPicture(datum) || HoldsJpeg(datum); });
  for (const auto& datum : own) {
    const bool pixels = IsStructural(datum) && (!target.jpeg || datum.key() == kOrientation);
    if (pixels) exif.add(datum);
  }
  if (exif.empty()) return exif;
  for (const char* key : {"Exif.Photo.PixelXDimension", "Exif.Photo.PixelYDimension"}) {
    const auto found = exif.findKey(Exiv2::ExifKey(key));
    const bool across = std::string_view(key).find("XDim") != std::string_view::npos;
    if (found != exif.end()) *found = static_cast<std::uint32_t>(across ? target.size.width : target.size.height);
  }
  if (target.jpeg && target.dpi > 0) {
    exif["Exif.Image.XResolution"] = Exiv2::URational(static_cast<std::uint32_t>(target.dpi), 1);
    exif["Exif.Image.YResolution"] = Exiv2::URational(static_cast<std::uint32_t>(target.dpi), 1);
    exif["Exif.Image.ResolutionUnit"] = std::uint16_t{2};
  }
  return exif;
}

// Also erases embedded pictures that exiv2 does not recognise, such as previews in maker notes.
Exiv2::ExifData WithoutPictures(const Exiv2::ExifData& exif, const Target& target) {
  if (exif.empty()) return exif;
  Exiv2::Blob blob;
  Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, exif);
  const std::string clean = imaging::CutExif(std::string_view(reinterpret_cast<const char*>(blob.data()), blob.size()),
                                             target.size, target.dpi);
  Exiv2::ExifData result;
  Exiv2::ExifParser::decode(result, reinterpret_cast<const Exiv2::byte*>(clean.data()), clean.size());
  return result;
}

Exiv2::XmpData XmpFor(const Exiv2::XmpData& source, const Target& target) {
  static constexpr std::array kOfPixels = {"Xmp.tiff.Orientation",     "Xmp.tiff.ImageWidth",
                                           "Xmp.tiff.ImageLength",     "Xmp.tiff.XResolution",
                                           "Xmp.tiff.YResolution",     "Xmp.tiff.ResolutionUnit",
                                           "Xmp.tiff.Compression",     "Xmp.tiff.BitsPerSample",
                                           "Xmp.tiff.SamplesPerPixel", "Xmp.tiff.PhotometricInterpretation",
                                           "Xmp.photoshop.ICCProfile", "Xmp.photoshop.ColorMode",
                                           "Xmp.exif.ColorSpace"};
  Exiv2::XmpData xmp = source;
  EraseIf(xmp, [](const auto& datum) {
    const std::string key = datum.key();
    if (key.starts_with("Xmp.xmp.Thumbnails") || key.starts_with("Xmp.xmpGImg")) return true;
    return std::any_of(kOfPixels.begin(), kOfPixels.end(), [&](const char* name) { return key == name; });
  });
  const auto put = [&](const char* key, int value) {
    const auto found = xmp.findKey(Exiv2::XmpKey(key));
    if (found != xmp.end()) *found = std::to_string(value);
  };
  put("Xmp.exif.PixelXDimension", target.size.width);
  put("Xmp.exif.PixelYDimension", target.size.height);
  return xmp;
}

// Returns true if the colour space in the header of the profile fits the number of components.
bool ProfileMatches(const Exiv2::DataBuf& profile, int components) {
  constexpr long kKindAt = 16;
  if (profile.size_ < kKindAt + 4) return false;
  const std::string_view kind(reinterpret_cast<const char*>(profile.pData_ + kKindAt), 4);
  return (components == 1 && kind == "GRAY") || (components == 3 && kind == "RGB ") ||
         (components == 4 && kind == "CMYK");
}

// Returns the number of components in the frame header of a JPEG, 0 if it has none.
int JpegComponents(std::string_view bytes) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  for (std::size_t at = 2; at + 10 <= bytes.size() && byte(at) == 0xFF;) {
    const unsigned marker = byte(at + 1);
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (frame) return byte(at + 9);
    at += 2 + (static_cast<std::size_t>(byte(at + 2)) << 8 | byte(at + 3));
  }
  return 0;
}

// The colours of a palette have three components.
int PngComponents(std::string_view bytes) {
  constexpr std::size_t kColourTypeAt = 25;
  if (bytes.size() <= kColourTypeAt) return 0;
  const bool colour = (bytes[kColourTypeAt] & 2) != 0;
  return colour ? 3 : 1;
}

int TiffComponents(const Exiv2::ExifData& exif) {
  const auto kind = exif.findKey(Exiv2::ExifKey("Exif.Image.PhotometricInterpretation"));
  if (kind == exif.end() || kind->count() == 0) return 0;
  static constexpr std::array kComponents = {1, 1, 3, 3, 0, 4, 3};
  const long number = kind->toLong();
  return number >= 0 && number < static_cast<long>(kComponents.size()) ? kComponents[static_cast<std::size_t>(number)]
                                                                       : 0;
}

// Returns 0 if the format is none of the three.
int ComponentsOf(std::string_view bytes, const Exiv2::Image& image) {
  if (bytes.starts_with("\xFF\xD8")) return JpegComponents(bytes);
  if (bytes.starts_with("\x89PNG")) return PngComponents(bytes);
  return TiffComponents(image.exifData());
}

Exiv2::Image::AutoPtr Open(const std::string& bytes) {
  Exiv2::Image::AutoPtr image =
      Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()));
  image->readMetadata();
  return image;
}

Target FactsOf(const std::string& bytes, const Exiv2::Image& image) {
  Target target{bytes.starts_with("\xFF\xD8"), {image.pixelWidth(), image.pixelHeight()}, 0};
  imaging::JpegHead head;
  if (target.jpeg && imaging::ParseJpegHead(bytes, head) == imaging::HeadState::Complete) target.dpi = head.Dpi();
  return target;
}

// Returns the bytes of target with the metadata of source.
std::string Described(const std::string& source, const std::string& target) {
  const auto from = Open(source);
  const auto to = Open(target);
  const Target facts = FactsOf(target, *to);
  const Exiv2::ExifData exif = ExifFor(from->exifData(), to->exifData(), facts);
  to->setExifData(facts.jpeg ? WithoutPictures(exif, facts) : exif);
  to->setXmpData(XmpFor(from->xmpData(), facts));
  Exiv2::IptcData iptc = from->iptcData();
  EraseIf(iptc, [](const auto& datum) { return datum.key().find("Preview") != std::string::npos; });
  to->setIptcData(iptc);
  if (!to->iccProfileDefined() && from->iccProfileDefined() &&
      ProfileMatches(*from->iccProfile(), ComponentsOf(target, *to))) {
    Exiv2::DataBuf profile(*from->iccProfile());
    to->setIccProfile(profile, false);
  }
  to->writeMetadata();
  Exiv2::BasicIo& io = to->io();
  io.open();
  std::string bytes(io.size(), '\0');
  const long got = io.read(reinterpret_cast<Exiv2::byte*>(bytes.data()), static_cast<long>(bytes.size()));
  bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  return bytes;
}

Status FromLibrary(const Exiv2::Error& error) {
  switch (error.code()) {
    case Exiv2::kerFileContainsUnknownImageType:
    case Exiv2::kerMemoryContainsUnknownImageType:
    case Exiv2::kerUnsupportedImageType:
    case Exiv2::kerWritingImageFormatUnsupported:
    case Exiv2::kerInvalidSettingForImage:
      return {Problem::Unsupported, "这种格式不能保存Exif"};
    default:
      return {Problem::Damaged, "Exif无法读取或写入"};
  }
}

bool IsUnchanged(const host::Files& files, const std::string& path, const std::optional<host::FileFacts>& before) {
  const auto now = files.Stat(path);
  return now && before && Unchanged(*before, *now);
}

}  // namespace

Status CopyDescription(host::Files& files, const std::string& source, const std::string& target) {
  const auto before = files.Stat(target);
  std::string from;
  std::string to;
  if (Status read = files.ReadFile(source, from, kLargestFile); !read) return read;
  if (Status read = files.ReadFile(target, to, kLargestFile); !read) return read;
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  std::string described;
  try {
    described = Described(from, to);
  } catch (const Exiv2::Error& error) {
    return FromLibrary(error);
  }
  if (!SamePicture(to, described)) return {Problem::Damaged, "写入Exif后的图片与原图不符，没有保存"};
  return files.Save(target, [&](host::Draft& draft) {
    Status written = draft.Write(described.data(), described.size());
    // Checked as late as possible: if this helper was slow, the program may have replaced the target meanwhile.
    if (written && !IsUnchanged(files, target, before)) written = {Problem::Other, "目标文件已有变化，没有写入Exif"};
    return written;
  });
}

}  // namespace quillon::helpers
