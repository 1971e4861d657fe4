// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <exiv2/exiv2.hpp>

#include <csignal>
#include <ctime>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"

namespace quillon::helpers {
namespace {

using testing::Load;
using testing::Save;
using testing::Waves;

class ExifTest : public ::testing::Test {
 protected:
  // A picture with everything that a camera says.
  std::string Source(const std::string& name, int width = 60, int height = 40) {
    const std::string path = folder.Path(name);
    Save(path, Waves(width, height), 72);
    const auto image = Exiv2::ImageFactory::open(path);
    image->readMetadata();
    Exiv2::ExifData exif;
    exif["Exif.Image.Make"] = "Camera";
    exif["Exif.Image.Orientation"] = std::uint16_t{6};
    exif["Exif.Photo.DateTimeOriginal"] = "2024:05:06 07:08:09";
    exif["Exif.Photo.PixelXDimension"] = static_cast<std::uint32_t>(width);
    exif["Exif.Photo.PixelYDimension"] = static_cast<std::uint32_t>(height);
    exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
    if (name.ends_with(".jpg")) {
      const std::string thumbnail = "\xFF\xD8\xFF\xDB" + std::string(200, 'T') + "\xFF\xD9";
      Exiv2::ExifThumb(exif).setJpegThumbnail(reinterpret_cast<const Exiv2::byte*>(thumbnail.data()),
                                              static_cast<long>(thumbnail.size()));
    }
    Exiv2::XmpData xmp;
    xmp["Xmp.dc.title"] = "标题";
    xmp["Xmp.tiff.Orientation"] = "6";
    Exiv2::IptcData iptc;
    iptc["Iptc.Application2.Headline"] = "Headline";
    image->setExifData(exif);
    image->setXmpData(xmp);
    image->setIptcData(iptc);
    image->writeMetadata();
    return path;
  }

  Ran Copy(const std::string& source, const std::string& target) {
    folder.Set("Exif", source + "|" + target + "|Tessa批量处理系列软件");
    return folder.Run("TessaExifHandler", {});
  }

  static std::string Tag(const std::string& path, const std::string& key) {
    const auto image = Exiv2::ImageFactory::open(path);
    image->readMetadata();
    if (key.starts_with("Exif.")) {
      const auto found = image->exifData().findKey(Exiv2::ExifKey(key));
      return found == image->exifData().end() ? "none" : found->toString();
    }
    if (key.starts_with("Xmp.")) {
      const auto found = image->xmpData().findKey(Exiv2::XmpKey(key));
      return found == image->xmpData().end() ? "none" : found->toString();
    }
    const auto found = image->iptcData().findKey(Exiv2::IptcKey(key));
    return found == image->iptcData().end() ? "none" : found->toString();
  }

  HelperFolder folder;
};

TEST_F(ExifTest, CopiesWhatDescribesAPictureAndKeepsWhatIsTrueOfTheOther) {
  const std::string source = Source("a.jpg");
  const std::string target = folder.Path("out b.jpg");
  Save(target, Waves(30, 20), 300);
  const testing::Pixels before = Load(target);
  const Ran ran = Copy(source, target);
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Load(target), before);
  EXPECT_EQ(testing::DpiOf(target), 300);
  EXPECT_EQ(Tag(target, "Exif.Image.Make"), "Camera");
  EXPECT_EQ(Tag(target, "Exif.Photo.DateTimeOriginal"), "2024:05:06 07:08:09");
  EXPECT_EQ(Tag(target, "Exif.GPSInfo.GPSLatitudeRef"), "N");
  EXPECT_EQ(Tag(target, "Exif.Photo.PixelXDimension"), "30");
  EXPECT_EQ(Tag(target, "Exif.Photo.PixelYDimension"), "20");
  EXPECT_EQ(Tag(target, "Exif.Image.XResolution"), "300/1");
  EXPECT_NE(Tag(target, "Exif.Image.Orientation"), "6") << "the target's pixels stand upright";
  EXPECT_EQ(Tag(target, "Xmp.tiff.Orientation"), "none");
  EXPECT_EQ(Tag(target, "Xmp.dc.title"), "lang=\"x-default\" 标题");
  EXPECT_EQ(Tag(target, "Iptc.Application2.Headline"), "Headline");
  EXPECT_EQ(folder.Read("out b.jpg").find("TTTTTTTT"), std::string::npos) << "the thumbnail shows what was cut away";
}

TEST_F(ExifTest, KeepsTheTargetsOrientation) {
  const std::string source = Source("a.jpg");
  const std::string target = Source("b.jpg", 30, 20);
  const auto image = Exiv2::ImageFactory::open(target);
  image->readMetadata();
  image->exifData()["Exif.Image.Orientation"] = std::uint16_t{3};
  image->writeMetadata();
  ASSERT_EQ(Copy(source, target).exit, 0);
  EXPECT_EQ(Tag(target, "Exif.Image.Orientation"), "3");
}

TEST_F(ExifTest, KnowsPngAndTiffToo) {
  const std::string source = Source("a.jpg");
  for (const char* name : {"b.png", "b.tif"}) {
    const std::string target = folder.Path(name);
    Save(target, Waves(30, 20), 300);
    const testing::Pixels before = Load(target);
    const Ran ran = Copy(source, target);
    ASSERT_EQ(ran.exit, 0) << name << ran.err;
    EXPECT_EQ(Load(target), before) << name;
    EXPECT_EQ(testing::DpiOf(target), 300) << name;
    EXPECT_EQ(Tag(target, "Exif.Image.Make"), "Camera") << name;
  }
}

TEST_F(ExifTest, AcceptsATiffAsASource) {
  const std::string source = Source("a.tif");
  const std::string target = folder.Path("b.jpg");
  Save(target, Waves(30, 20), 300);
  const Ran ran = Copy(source, target);
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Tag(target, "Exif.Image.Make"), "Camera");
  EXPECT_EQ(Tag(target, "Exif.Image.ImageWidth"), "none");
  EXPECT_EQ(Tag(target, "Exif.Image.StripOffsets"), "none");
  EXPECT_EQ(Load(target).width, 30);
}

TEST_F(ExifTest, APictureOfInksGetsNoProfileOfScreens) {
  const std::string source = Source("a.jpg");
  {
    const auto image = Exiv2::ImageFactory::open(source);
    image->readMetadata();
    std::string profile(200, '\0');
    profile.replace(16, 4, "RGB ");
    profile.replace(0, 4, std::string("\0\0\0\xC8", 4));
    Exiv2::DataBuf bytes(reinterpret_cast<const Exiv2::byte*>(profile.data()), static_cast<long>(profile.size()));
    image->setIccProfile(bytes, false);
    image->writeMetadata();
  }
  const std::pair<const char*, int> kTargets[] = {{"b.jpg", 3}, {"b.jpg", 4}, {"b.png", 3}, {"b.png", 4},
                                                  {"b.png", 1}, {"b.tif", 3}, {"b.tif", 1}};
  for (const auto& [name, bands] : kTargets) {
    const std::string target = folder.Path(name);
    Save(target, Waves(30, 20, bands), 300);
    const testing::Pixels before = Load(target);
    ASSERT_EQ(Copy(source, target).exit, 0) << name;
    const auto image = Exiv2::ImageFactory::open(target);
    image->readMetadata();
    // Four bands of a png are three colours and their cover.
    const bool screen = bands == 3 || (bands == 4 && target.ends_with(".png"));
    EXPECT_EQ(image->iccProfileDefined(), screen) << name << bands;
    EXPECT_EQ(Load(target).bands, before.bands);
  }
}

TEST_F(ExifTest, LeavesAloneWhatItCannotWrite) {
  const std::string source = Source("a.jpg");
  folder.Write("b.txt", "no picture");
  Save(folder.Path("b.gif"), Waves(30, 20));
  folder.Write("cut.jpg", folder.Read("a.jpg").substr(0, 300));
  for (const char* name : {"b.txt", "b.gif", "cut.jpg"}) {
    const std::string before = folder.Read(name);
    EXPECT_EQ(Copy(source, folder.Path(name)).exit, 1) << name;
    EXPECT_EQ(folder.Read(name), before) << name;
  }
  Save(folder.Path("good.jpg"), Waves(30, 20), 300);
  const std::string before = folder.Read("good.jpg");
  EXPECT_EQ(Copy(folder.Path("b.txt"), folder.Path("good.jpg")).exit, 1);
  EXPECT_EQ(Copy(folder.Path("none.jpg"), folder.Path("good.jpg")).exit, 1);
  EXPECT_EQ(folder.Read("good.jpg"), before);
  EXPECT_EQ(Copy(source, folder.Path("none.jpg")).exit, 1);
  EXPECT_FALSE(folder.Exists("none.jpg"));
}

TEST_F(ExifTest, DoesNothingWithoutAnOrder) {
  const std::string target = Source("a.jpg");
  const std::string before = folder.Read("a.jpg");
  for (const std::string& order : {std::string(), std::string("nonsense"), target + "|" + target,
                                   target + "|" + target + "|other words", "|" + target + "|Tessa批量处理系列软件",
                                   target + "|" + target + "|x|Tessa批量处理系列软件", std::string(10 << 20, '|')}) {
    folder.Set("Exif", order);
    EXPECT_EQ(folder.Run("TessaExifHandler", {}).exit, 1) << order.substr(0, 60);
  }
  folder.Write("settings.db", std::string(8192, 'x'));
  EXPECT_EQ(folder.Run("TessaExifHandler", {}).exit, 1);
  EXPECT_EQ(folder.Read("a.jpg"), before);
}

TEST_F(ExifTest, AKillAtAnyMomentLeavesAWholeFile) {
  const std::string source = Source("a.jpg");
  const std::string target = folder.Path("b.jpg");
  Save(target, Waves(900, 600), 300);
  const std::string before = folder.Read("b.jpg");
  const Ran ran = Copy(source, target);
  ASSERT_EQ(ran.exit, 0) << ran.err;
  const std::string after = folder.Read("b.jpg");
  ASSERT_NE(after, before);
  for (long step = 0; step < 25; ++step) {
    folder.Write("b.jpg", before);
    const pid_t process = folder.Start("TessaExifHandler", {});
    const timespec moment{0, step * 2'000'000};
    nanosleep(&moment, nullptr);
    kill(process, SIGKILL);
    folder.Wait(process);
    const std::string now = folder.Read("b.jpg");
    EXPECT_TRUE(now == before || now == after) << step;
  }
}

}  // namespace
}  // namespace quillon::helpers
