// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What formats without an orientation tag store of pictures that have one.
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "imaging/crop/huge_picture.h"
#include "imaging/metadata/exif_block.h"
#include "imaging/pictures.h"
#include "imaging/pixels/geometry.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using vips::VImage;

// The rows of the picture "abc def" (two rows of three pixels) as it is shown in the orientations 1 to 8.
const std::vector<std::string> kShown[] = {{"abc", "def"},     {"cba", "fed"},     {"fed", "cba"},
                                           {"def", "abc"},     {"ad", "be", "cf"}, {"da", "eb", "fc"},
                                           {"fc", "eb", "da"}, {"cf", "be", "ad"}};

// Each letter is a colour of its own.
Sheet Letters(const std::vector<std::string>& rows) {
  Sheet sheet{static_cast<int>(rows.front().size()), static_cast<int>(rows.size()), 3, {}};
  for (const std::string& row : rows) {
    for (const char letter : row) {
      const int number = letter - 'a';
      for (const int value : {number * 50, 255 - number * 50, number % 2 * 200}) sheet.values.push_back(value);
    }
  }
  return sheet;
}

class UprightTest : public ServicesTest {
 protected:
  // The stored picture with each orientation, as a tiff.
  std::string Tagged(int orientation) {
    VImage made = ToVips(Letters(kShown[0])).copy();
    made.set(VIPS_META_ORIENTATION, orientation);
    const std::string path = Path("in" + std::to_string(orientation) + ".tif");
    made.tiffsave(path.c_str());
    return path;
  }
  // The colours of a file, without an alpha band.
  Sheet ColoursOf(const std::string& path) {
    const VImage pixels = Load(path).Data()->picture.pixels;
    return FromVips(pixels.extract_band(0, VImage::option()->set("n", 3)));
  }
  Sheet Upright(VImage pixels, int orientation, const Limits& limits) {
    EXPECT_TRUE(MakeUpright(pixels, orientation, {world.files, limits}));
    return FromVips(pixels);
  }
  void ExpectShown(const std::string& name, int orientation) {
    EXPECT_EQ(ColoursOf(Path(name)), Letters(kShown[orientation - 1])) << name << " " << orientation;
  }
  void ForEachOrientation(const std::function<void(const std::string& source, int orientation)>& check) {
    for (int orientation = 1; orientation <= 8; ++orientation) check(Tagged(orientation), orientation);
  }
};

TEST_F(UprightTest, PixelsAreTurnedAsTheOrientationSays) {
  const VImage stored = ToVips(Letters(kShown[0]));
  for (int orientation = 1; orientation <= 8; ++orientation) {
    const Sheet shown = Letters(kShown[orientation - 1]);
    EXPECT_EQ(Upright(stored, orientation, {}), shown) << orientation;
    // Large pixels, and those beyond the limit of memory, are held on disk.
    EXPECT_EQ(Upright(stored, orientation, {.pixelsInMemory = 5}), shown) << orientation;
    EXPECT_EQ(Upright(stored, orientation, {.memory = 5}), shown) << orientation;
  }
  for (const int orientation : {0, 9, -1}) EXPECT_EQ(Upright(stored, orientation, {}), Letters(kShown[0]));
}

TEST_F(UprightTest, GifAndBmpAreUprightHoweverTheyAreMade) {
  ForEachOrientation([&](const std::string& source, int orientation) {
    const base::Rect whole{0, 0, 3, 2};
    for (const auto& [name, encoder] : {std::pair("out.bmp", Encoder::Bmp), std::pair("out.gif", Encoder::Gif)}) {
      const CropRequest crop{.source = source, .destination = Path(name), .rect = whole, .encoder = encoder};
      ASSERT_TRUE(services.CropToFile(crop));
      ExpectShown(name, orientation);
      services.PlanWork({{{crop}}});
      ASSERT_TRUE(services.CropToFile(crop));
      ExpectShown(name, orientation);
      CutSource opened;
      ASSERT_TRUE(services.OpenForCuts(source, encoder, opened));
      ASSERT_TRUE(services.CropToFile(opened, crop));
      ExpectShown(name, orientation);
      ASSERT_TRUE(services.SaveByEncoder(Load(source), Path(name), encoder, 80));
      ExpectShown(name, orientation);
      Image image = Load(source);
      ASSERT_TRUE(services.SaveByType(image, Path(name), name, {}));
      ExpectShown(name, orientation);
      ASSERT_TRUE(services.ZoomPic(source, Path(name), 3, 2));
      ExpectShown(name, orientation);
      ASSERT_TRUE(MakeFromHuge(world.files, {.source = source, .target = Path(name)}, {}));
      ExpectShown(name, orientation);
      const BorderRequest border{.source = source, .destination = Path(name), .total = {3, 2}, .drawn = {3, 2}};
      ASSERT_TRUE(services.AddBoardToFile(border));
      ExpectShown(name, orientation);
    }
    ASSERT_TRUE(services.CropToGif({.source = source, .destination = Path("out.gif"), .rect = whole}));
    ExpectShown("out.gif", orientation);
  });
}

TEST_F(UprightTest, OtherFormatsKeepPixelsAndTag) {
  ForEachOrientation([&](const std::string& source, int orientation) {
    for (const auto& [name, encoder] : {std::pair("out.png", Encoder::Png), std::pair("out.tif", Encoder::Tiff)}) {
      ASSERT_TRUE(
          services.CropToFile({.source = source, .destination = Path(name), .rect = {0, 0, 3, 2}, .encoder = encoder}));
      ExpectShown(name, 1);
      EXPECT_EQ(Load(Path(name)).Data()->picture.tags.orientation, orientation);
    }
  });
}

TEST_F(UprightTest, AnOverlayLiesOnTheUprightPicture) {
  ToVips(Letters({"a"})).pngsave(Path("mark.png").c_str());
  ForEachOrientation([&](const std::string& source, int orientation) {
    const CropRequest crop{.source = source, .destination = Path("out.gif"), .rect = {0, 0, 3, 2}};
    ASSERT_TRUE(services.CropToGif(crop, Overlay{Path("mark.png"), 1, 1}));
    std::vector<std::string> rows = kShown[orientation - 1];
    rows[1][1] = 'a';
    EXPECT_EQ(ColoursOf(Path("out.gif")), Letters(rows)) << orientation;
  });
}

TEST_F(UprightTest, AWorkFileIsTurnedOnceByTheBorderAroundIt) {
  ForEachOrientation([&](const std::string& source, int orientation) {
    CropRequest crop{.source = source, .destination = Path("work.bmp"), .rect = {0, 0, 3, 2}};
    crop.encoder = Encoder::Bmp;
    crop.orient = Orient::Defer;
    BorderRequest border{.source = crop.destination, .destination = Path("out.bmp"), .total = {3, 2}};
    border.image = border.drawn = border.total;
    border.tagSource = source;
    ASSERT_TRUE(services.CropToFile(crop));
    ExpectShown("work.bmp", 1);
    ASSERT_TRUE(services.AddBoardToFile(border));
    ExpectShown("out.bmp", orientation);
    // The work file of prefetched work is passed on in memory, and its tags are read from disk all the same.
    const FileWork work{{crop, border}};
    services.PlanWork({work});
    std::optional<Services::PrefetchedFiles> ready;
    ASSERT_TRUE(services.PopPrefetched(work, ready));
    ASSERT_TRUE(ready.has_value());
    EXPECT_TRUE(ready->front() == world.folder.Read("out.bmp")) << orientation;
    // Without its source the work file is drawn as it is.
    border.tagSource = Path("missing.tif");
    ASSERT_TRUE(services.AddBoardToFile(border));
    ExpectShown("out.bmp", 1);
  });
}

TEST_F(UprightTest, WorkFilesOfAnImageStayAsStored) {
  const Image image = Load(Tagged(6));
  ASSERT_TRUE(services.SaveImageToBmpFile(image, Path("a.bmp"), Orient::Defer));
  ExpectShown("a.bmp", 1);
  ASSERT_TRUE(services.SaveByEncoder(image, Path("a.gif"), Encoder::Gif, 80, Orient::Defer));
  ExpectShown("a.gif", 1);
  Image copy;
  ASSERT_TRUE(services.CloneImage(image, copy));
  ASSERT_TRUE(services.SaveByType(copy, Path("b.bmp"), "bmp", {.orient = Orient::Defer}));
  ExpectShown("b.bmp", 1);
}

TEST_F(UprightTest, ATurnedBackImageGetsItsOrientationAgain) {
  Image image = Load(Tagged(6));
  image.Data()->picture.tags.exif = ExifWithThumbnail(6);
  ASSERT_TRUE(services.RotateImage(image, 90, base::kWhite));
  ASSERT_TRUE(services.RotateImage(image, -90, base::kWhite));
  EXPECT_EQ(image.Data()->picture.tags.orientation, 1);
  ASSERT_TRUE(services.CopyOrientation(image, Path("in6.tif")));
  EXPECT_EQ(image.Data()->picture.tags.orientation, 6);
  EXPECT_EQ(ReadExif(image.Data()->picture.tags.exif).orientation, 6);
  ASSERT_TRUE(services.SaveByEncoder(image, Path("out.bmp"), Encoder::Bmp, 80));
  ExpectShown("out.bmp", 6);
  EXPECT_FALSE(services.CopyOrientation(image, Path("missing.tif")));
  EXPECT_EQ(image.Data()->picture.tags.orientation, 6);
  Image none;
  EXPECT_FALSE(services.CopyOrientation(none, Path("in6.tif")));
}

}  // namespace
}  // namespace quillon::imaging
