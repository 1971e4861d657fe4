// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/icc_convert.h"
#include "imaging/jpeg/jpeg_head.h"

#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using testing::MakeJpeg;
using testing::Sheet;

TEST(JpegQuality, IsReadFromTheTables) {
  const testing::Pixels picture = testing::TestPicture({16, 16}, testing::Colours::YCbCr);
  for (const int quality : {1, 5, 30, 49, 50, 51, 75, 80, 90, 95, 98, 99, 100}) {
    EXPECT_EQ(JpegQuality(MakeJpeg(picture, {.quality = quality})), quality);
  }
}

TEST(JpegQuality, OfOtherBytesIsNone) {
  EXPECT_EQ(JpegQuality(""), 0);
  EXPECT_EQ(JpegQuality("\xFF\xD8"), 0);
  EXPECT_EQ(JpegQuality("\xFF\xD8\xFF\xDB\x7F\xFF"), 0);
  EXPECT_EQ(JpegQuality(std::string("\xFF\xD8\xFF\xDB\0\x03\0", 7)), 0);
  EXPECT_EQ(JpegQuality(std::string("\xFF\xD8\xFF\xDB\0\0", 6)), 0);
  EXPECT_EQ(JpegQuality("no picture"), 0);
}

class ByProfilesTest : public testing::ServicesTest {
 protected:
  ByProfilesTest() {
    world.folder.Write("screen.icc", testing::ProfileFor("RGB "));
    world.folder.Write("press.icc", testing::ProfileFor("CMYK"));
  }

  Status Convert(const std::string& source, const std::string& destination, int quality = 0, int dpi = 0) {
    return ConvertByProfiles(world.files,
                             {source, Path(destination), Path("screen.icc"), Path("press.icc"), quality, dpi});
  }
  std::string Jpeg(const std::string& name, testing::Colours colours, int quality = 77) {
    return world.folder.Write(
        name, MakeJpeg(testing::TestPicture({40, 30}, colours), {.colours = colours, .quality = quality}));
  }
};

TEST_F(ByProfilesTest, APictureWithoutAProfileCountsAsTheScreens) {
  const std::string source = Jpeg("a.jpg", testing::Colours::YCbCr);
  const Status status = Convert(source, "b.jpg", 0, 254);
  ASSERT_TRUE(status) << status.Why();
  const Sheet made = testing::ReadPlainly(Path("b.jpg"));
  EXPECT_EQ(made.bands, 4);
  EXPECT_EQ(made.width, 40);
  EXPECT_EQ(made.height, 30);
  EXPECT_EQ(JpegQuality(world.folder.Read("b.jpg")), 77) << "the quality of the source";
  ImageFacts facts;
  ASSERT_TRUE(services.ImageInfo(Path("b.jpg"), facts, Want::SizeAndDpi));
  EXPECT_EQ(facts.dpi, 254);
}

// An embedded screen profile gives the same result as no profile, since the screen profile is the default.
TEST_F(ByProfilesTest, APictureGoesThroughItsOwnProfile) {
  const std::string plain = Jpeg("a.jpg", testing::Colours::YCbCr, 98);
  Image image = Load(plain);
  image.Data()->picture.tags.profile = testing::ProfileFor("RGB ");
  ASSERT_TRUE(services.SaveImageToTifFile(image, Path("own.tif"), 2));
  ASSERT_TRUE(Convert(plain, "plain-inks.tif"));
  const Status status = Convert(Path("own.tif"), "own-inks.tif");
  ASSERT_TRUE(status) << status.Why();
  const Sheet made = testing::ReadPlainly(Path("own-inks.tif"));
  EXPECT_EQ(made.bands, 4);
  EXPECT_LE(testing::Difference(made, testing::ReadPlainly(Path("plain-inks.tif"))), 3);
}

TEST_F(ByProfilesTest, InksGoThroughTheirOwnProfileToo) {
  Image ink = Load(Jpeg("ink.jpg", testing::Colours::AdobeCmyk));
  ink.Data()->picture.tags.profile = testing::ProfileFor("CMYK");
  ASSERT_TRUE(services.SaveImageToTifFile(ink, Path("ink.tif"), 2));
  const Status status = Convert(Path("ink.tif"), "out.tif");
  ASSERT_TRUE(status) << status.Why();
  EXPECT_EQ(testing::ReadPlainly(Path("out.tif")).bands, 4);
}

TEST_F(ByProfilesTest, AGivenQualityIsUsed) {
  ASSERT_TRUE(Convert(Jpeg("a.jpg", testing::Colours::YCbCr), "b.jpg", 60));
  EXPECT_EQ(JpegQuality(world.folder.Read("b.jpg")), 60);
}

TEST_F(ByProfilesTest, InksWithoutAProfileStay) {
  const std::string source = Jpeg("a.jpg", testing::Colours::AdobeCmyk, 95);
  const Sheet before = testing::ReadPlainly(source);
  ASSERT_TRUE(Convert(source, "b.tif"));
  EXPECT_EQ(testing::Difference(testing::ReadPlainly(Path("b.tif")), before), 0);
}

TEST_F(ByProfilesTest, GreyBecomesInk) {
  ASSERT_TRUE(Convert(Jpeg("a.jpg", testing::Colours::Grey), "b.tif"));
  EXPECT_EQ(testing::ReadPlainly(Path("b.tif")).bands, 4);
}

TEST_F(ByProfilesTest, WhatCannotHoldInkShowsIt) {
  ASSERT_TRUE(Convert(Jpeg("a.jpg", testing::Colours::YCbCr), "b.png"));
  EXPECT_EQ(testing::ReadPlainly(Path("b.png")).bands, 3);
}

TEST_F(ByProfilesTest, APictureInMemoryBecomesWhatItsFileBecomes) {
  const std::string source = Jpeg("a.jpg", testing::Colours::YCbCr);
  ASSERT_TRUE(Convert(source, "b.tif"));
  Image image = Load(source);
  ASSERT_TRUE(ConvertByProfiles(world.files, image, Path("screen.icc"), Path("press.icc")));
  EXPECT_EQ(testing::Difference(testing::PixelsOf(image), testing::ReadPlainly(Path("b.tif"))), 0);
  EXPECT_EQ(image.Data()->picture.tags.profile, world.folder.Read("press.icc"));
}

TEST_F(ByProfilesTest, APictureInMemoryStaysIfAProfileIsMissing) {
  Image image = Load(Jpeg("a.jpg", testing::Colours::YCbCr));
  const Sheet before = testing::PixelsOf(image);
  const Status status = ConvertByProfiles(world.files, image, Path("screen.icc"), Path("none.icm"));
  EXPECT_EQ(status.GetProblem(), host::Problem::Missing);
  EXPECT_EQ(status.Why(), "配置文件不能使用：none.icm");
  EXPECT_EQ(testing::PixelsOf(image), before);
  Image none;
  EXPECT_FALSE(ConvertByProfiles(world.files, none, Path("screen.icc"), Path("press.icc")));
}

TEST_F(ByProfilesTest, AFailureLeavesTheDestination) {
  const std::string source = Jpeg("a.jpg", testing::Colours::YCbCr);
  const std::string whole = world.folder.Read("a.jpg");
  world.folder.Write("b.jpg", "old");
  world.folder.Write("torn.jpg", whole.substr(0, whole.size() * 2 / 3));
  EXPECT_EQ(Convert(Path("torn.jpg"), "b.jpg").GetProblem(), host::Problem::Damaged);
  EXPECT_EQ(Convert(Path("none.jpg"), "b.jpg").GetProblem(), host::Problem::Missing);
  EXPECT_EQ(Convert(world.folder.Path(), "b.jpg").GetProblem(), host::Problem::Unsupported);
  world.folder.Write("press.icc", "no profile");
  EXPECT_EQ(Convert(source, "b.jpg").GetProblem(), host::Problem::Unsupported);
  world.folder.Write("press.icc", testing::ProfileFor("CMYK"));
  world.folder.Write("screen.icc", testing::ProfileFor("CMYK"));
  EXPECT_EQ(Convert(source, "b.jpg").GetProblem(), host::Problem::Unsupported);
  EXPECT_TRUE(world.files.RemoveOwn(Path("screen.icc")));
  EXPECT_EQ(Convert(source, "b.jpg").GetProblem(), host::Problem::Missing);
  EXPECT_EQ(world.folder.Read("b.jpg"), "old");
}

}  // namespace
}  // namespace quillon::imaging
