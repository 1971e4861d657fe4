// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/tiff_exif.h"

#include <gtest/gtest.h>

#include <exiv2/exiv2.hpp>

#include "imaging/byte_text.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using vips::VImage;

// A block like that of a camera, written and read by another library.
std::string CameraBlock(Exiv2::ByteOrder order) {
  Exiv2::ExifData data;
  data["Exif.Image.Make"] = "Camera";
  data["Exif.Image.Model"] = "Model 1";
  data["Exif.Image.Orientation"] = std::uint16_t{6};
  data["Exif.Image.XResolution"] = Exiv2::Rational(72, 1);
  data["Exif.Image.Copyright"] = "Somebody";
  data["Exif.Photo.ExposureTime"] = Exiv2::Rational(1, 250);
  data["Exif.Photo.ISOSpeedRatings"] = std::uint16_t{400};
  data["Exif.Photo.LensModel"] = "A rather long name of a lens";
  data["Exif.Photo.UserComment"] = "charset=Ascii a comment";
  data["Exif.Photo.PixelXDimension"] = std::uint32_t{4000};
  data["Exif.Iop.InteroperabilityIndex"] = "R98";
  data["Exif.GPSInfo.GPSLatitudeRef"] = "N";
  data["Exif.GPSInfo.GPSLatitude"] = "31/1 14/1 2500/100";
  Exiv2::Blob blob;
  Exiv2::ExifParser::encode(blob, order, data);
  return {reinterpret_cast<const char*>(blob.data()), blob.size()};
}

Exiv2::ExifData Decoded(const std::string& block) {
  Exiv2::ExifData data;
  Exiv2::ExifParser::decode(data, reinterpret_cast<const Exiv2::byte*>(block.data()),
                            static_cast<std::uint32_t>(block.size()));
  return data;
}

Exiv2::ExifData ReadByOthers(const std::string& path) {
  const auto file = Exiv2::ImageFactory::open(path);
  file->readMetadata();
  return file->exifData();
}

void ExpectCamera(Exiv2::ExifData& data) {
  EXPECT_EQ(data["Exif.Image.Make"].toString(), "Camera");
  EXPECT_EQ(data["Exif.Image.Model"].toString(), "Model 1");
  EXPECT_EQ(data["Exif.Image.Copyright"].toString(), "Somebody");
  EXPECT_EQ(data["Exif.Photo.ExposureTime"].toString(), "1/250");
  EXPECT_EQ(data["Exif.Photo.ISOSpeedRatings"].toString(), "400");
  EXPECT_EQ(data["Exif.Photo.LensModel"].toString(), "A rather long name of a lens");
  EXPECT_EQ(data["Exif.Iop.InteroperabilityIndex"].toString(), "R98");
  EXPECT_EQ(data["Exif.GPSInfo.GPSLatitude"].toString(), "31/1 14/1 2500/100");
}

class TiffExif : public ServicesTest {
 protected:
  static Image Make(const VImage& pixels, const PictureTags& tags) {
    auto data = std::make_unique<ImageData>();
    data->picture = {pixels, tags};
    return Image(std::move(data));
  }
  // A TIFF with the EXIF of the block.
  void Write(const std::string& name, const std::string& block, SaveOptions options = {.exif = Exif::Keep}) {
    Image image = Make(ToVips(photo), {.exif = block, .orientation = 6, .dpi = 300});
    ASSERT_TRUE(services.SaveByType(image, Path(name), "tif", options));
  }

  const Sheet photo = PhotoLike(40, 30, 3);
};

TEST_F(TiffExif, GoesIntoTheFile) {
  for (const Exiv2::ByteOrder order : {Exiv2::littleEndian, Exiv2::bigEndian}) {
    Write("a.tif", CameraBlock(order));
    Exiv2::ExifData data = ReadByOthers(Path("a.tif"));
    ExpectCamera(data);
    // Sizes, resolution and orientation are those of the file.
    EXPECT_EQ(data["Exif.Photo.PixelXDimension"].toString(), "40");
    EXPECT_EQ(data["Exif.Image.XResolution"].toFloat(), 300);
    EXPECT_EQ(data["Exif.Image.Orientation"].toString(), "6");
    EXPECT_EQ(data["Exif.Image.ImageWidth"].toString(), "40");
    EXPECT_EQ(ReadPlainly(Path("a.tif")), photo);
    EXPECT_EQ(Load(Path("a.tif")).Data()->picture.tags.dpi, 300);
  }
}

TEST_F(TiffExif, OnlyWhenAskedAndWithoutThumbnail) {
  Write("a.tif", ExifWithThumbnail(6));
  EXPECT_NE(world.folder.Read("a.tif").find("Camera"), std::string::npos);
  EXPECT_EQ(world.folder.Read("a.tif").find("THUMB"), std::string::npos);
  Write("a.tif", ExifWithThumbnail(6), {.exif = Exif::Drop});
  EXPECT_EQ(world.folder.Read("a.tif").find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("a.tif")).Data()->picture.tags.orientation, 6);
}

TEST_F(TiffExif, BlackAndWhiteKeepsItToo) {
  Write("a.tif", CameraBlock(Exiv2::littleEndian), {.blackWhite = true, .exif = Exif::Keep});
  Exiv2::ExifData data = ReadByOthers(Path("a.tif"));
  ExpectCamera(data);
  EXPECT_EQ(data["Exif.Image.Compression"].toString(), "4");
}

// EXIF survives the way from a TIFF to every format that can store it, and back.
TEST_F(TiffExif, ComesOutOfTheFile) {
  Write("a.tif", CameraBlock(Exiv2::bigEndian));
  for (const char* type : {"jpg", "png", "tif"}) {
    SCOPED_TRACE(type);
    Image image = Load(Path("a.tif"));
    EXPECT_EQ(image.Data()->picture.tags.orientation, 6);
    ASSERT_TRUE(services.SaveByType(image, Path("out"), type, {.exif = Exif::Keep}));
    Exiv2::ExifData data = ReadByOthers(Path("out"));
    ExpectCamera(data);
    EXPECT_EQ(data["Exif.Image.Orientation"].toString(), "6");
    CropRequest request{.source = Path("a.tif"), .destination = Path("cut"), .rect = {3, 4, 20, 10}};
    request.encoder = EncoderFor(type);
    request.exif = Exif::Keep;
    ASSERT_TRUE(services.CropToFile(request));
    data = ReadByOthers(Path("cut"));
    ExpectCamera(data);
    EXPECT_EQ(data["Exif.Photo.PixelXDimension"].toString(), "20");
  }
}

TEST_F(TiffExif, BigFilesHoldItToo) {
  ToVips(photo).tiffsave(Path("big.tif").c_str(), VImage::option()->set("bigtiff", true));
  const std::string plain = world.folder.Read("big.tif");
  MemoryBytes before(plain);
  EXPECT_EQ(ExifOfTiff(before), "");
  ASSERT_TRUE(world.host.files.Save(Path("big.tif"), [&](host::Draft& draft) {
    Status status = draft.Write(plain.data(), plain.size());
    return status ? AddExifToTiff(CameraBlock(Exiv2::bigEndian), draft) : status;
  }));
  EXPECT_EQ(ReadPlainly(Path("big.tif")), photo);
  MemoryBytes after(world.folder.Read("big.tif"));
  Exiv2::ExifData data = Decoded(ExifOfTiff(after));
  ExpectCamera(data);
}

TEST_F(TiffExif, WithoutTagsTheFileStaysAsItIs) {
  const std::string nothing = MinimalExif(6, 300);
  const std::string blocks[] = {"", "no block", nothing};
  for (const std::string& block : blocks) {
    Write("a.tif", block);
    Write("b.tif", "", {.exif = Exif::Drop});
    EXPECT_TRUE(world.folder.Read("a.tif") == world.folder.Read("b.tif"));
  }
}

TEST_F(TiffExif, EveryTruncationAndEveryByteIsSurvived) {
  Write("a.tif", CameraBlock(Exiv2::littleEndian));
  const std::string file = world.folder.Read("a.tif");
  const std::string tail = file.substr(file.size() - 900);
  for (std::size_t lost = 0; lost < 900; ++lost) {
    MemoryBytes cut(file.substr(0, file.size() - lost));
    static_cast<void>(ExifOfTiff(cut));
    std::string odd = file;
    odd[file.size() - 900 + lost] = static_cast<char>(odd[file.size() - 900 + lost] ^ 0xFF);
    MemoryBytes flipped(odd);
    const std::string block = ExifOfTiff(flipped);
    EXPECT_LT(block.size(), file.size() * 4);
  }
}

// If the block is too large for a JPEG, the picture is written without it.
TEST_F(TiffExif, TooMuchForAJpegIsLeftOut) {
  ByteText block;
  block.U8({'I', 'I', 42, 0}).Little32(8).Little16(2);
  block.Little16(0x010E).Little16(2).Little32(70000).Little32(46);  // ImageDescription
  block.Little16(0x010F).Little16(2).Little32(7).Little32(38);      // maker's name
  block.Little32(0).Text("Camera").Zeros(2).Text(std::string(70000, 'x'));
  const Image image = Make(ToVips(photo), {.exif = block.Bytes(), .orientation = 6});
  ASSERT_TRUE(services.SaveImageToJpgFile(image, Path("a.jpg"), 80, Exif::Keep));
  EXPECT_EQ(world.folder.Read("a.jpg").find("Camera"), std::string::npos);
  EXPECT_EQ(Load(Path("a.jpg")).Data()->picture.tags.orientation, 6);
}

}  // namespace
}  // namespace quillon::imaging
