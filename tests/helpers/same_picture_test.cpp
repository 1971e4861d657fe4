// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/same_picture.h"

#include <gtest/gtest.h>
#include <exiv2/exiv2.hpp>

#include "helpers/pictures.h"
#include "host/testing/temp_folder.h"

namespace quillon::helpers {
namespace {

using testing::Save;
using testing::Waves;

class SamePictureTest : public ::testing::Test {
 protected:
  std::string Picture(const std::string& name) const {
    Save(folder.Path(name), Waves(60, 40), 300);
    return folder.Read(name);
  }
  // The same picture, described.
  std::string Described(const std::string& name) const {
    const auto image = Exiv2::ImageFactory::open(folder.Path(name));
    image->readMetadata();
    image->exifData()["Exif.Image.Make"] = "Camera";
    image->exifData()["Exif.Image.Artist"] = std::string(300, 'x');
    image->writeMetadata();
    return folder.Read(name);
  }
  static std::string Changed(std::string bytes, std::size_t at) {
    bytes[at] = static_cast<char>(bytes[at] ^ 1);
    return bytes;
  }

  host::testing::TempFolder folder;
};

TEST_F(SamePictureTest, LooksPastWhatDescribesIt) {
  for (const char* name : {"a.jpg", "a.png", "a.tif"}) {
    const std::string plain = Picture(name);
    const std::string described = Described(name);
    EXPECT_NE(plain, described) << name;
    EXPECT_TRUE(SamePicture(plain, described)) << name;
  }
}

TEST_F(SamePictureTest, SeesOneChangedBit) {
  const std::string jpeg = Picture("a.jpg");
  for (const char* mark : {"\xFF\xDB", "\xFF\xC4", "\xFF\xC0", "\xFF\xDA"}) {
    ASSERT_NE(jpeg.find(mark), std::string::npos);
    EXPECT_FALSE(SamePicture(jpeg, Changed(jpeg, jpeg.find(mark) + 12)));
  }
  EXPECT_FALSE(SamePicture(jpeg, Changed(jpeg, jpeg.size() - 40)));
  const std::string png = Picture("a.png");
  EXPECT_FALSE(SamePicture(png, Changed(png, png.find("IDAT") + 20)));
  EXPECT_FALSE(SamePicture(png, Changed(png, png.find("IHDR") + 8)));
  // Pixels follow the header, directories are at the end.
  const std::string tiff = Picture("a.tif");
  EXPECT_FALSE(SamePicture(tiff, Changed(tiff, 100)));
}

// A jpeg says in one of its application markers how colours are coded.
TEST_F(SamePictureTest, SeesAnotherCodingOfColours) {
  const std::string jpeg = Picture("a.jpg");
  const std::string adobe(
      "\xFF\xEE\0\x0E"
      "Adobe\0\x64\0\0\0\0\x01",
      16);
  std::string rgb = adobe;
  rgb.back() = 0;
  const auto with = [&](const std::string& marker) { return jpeg.substr(0, 2) + marker + jpeg.substr(2); };
  EXPECT_TRUE(SamePicture(with(adobe), with(adobe)));
  EXPECT_FALSE(SamePicture(with(adobe), with(rgb)));
  EXPECT_FALSE(SamePicture(with(adobe), jpeg));
}

TEST_F(SamePictureTest, KnowsNoOtherKindsAndNoTornOnes) {
  const std::string jpeg = Picture("a.jpg");
  const std::string png = Picture("a.png");
  EXPECT_FALSE(SamePicture(jpeg, png));
  EXPECT_FALSE(SamePicture("", ""));
  EXPECT_FALSE(SamePicture("GIF89a", "GIF89a"));
  EXPECT_FALSE(SamePicture(jpeg, jpeg.substr(0, jpeg.size() / 2)));
  EXPECT_FALSE(SamePicture(png, png.substr(0, png.size() / 2)));
}

}  // namespace
}  // namespace quillon::helpers
