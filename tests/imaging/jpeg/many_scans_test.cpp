// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A picture stored in hundreds of scans is a picture like any other: whatever is made of it is what the same picture
// stored in one scan gives.
#include <gtest/gtest.h>

#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using namespace testing;

class ManyScans : public ServicesTest {
 protected:
  void SetUp() override {
    MakeOptions options;
    const Pixels pixels = TestPicture({160, 120}, Colours::YCbCr);
    world.folder.Write("one.jpg", MakeJpeg(pixels, options));
    options.scans = Scans::Hundreds;
    world.folder.Write("many.jpg", MakeJpeg(pixels, options));
  }
};

TEST_F(ManyScans, AreCut) {
  for (const char* name : {"one", "many"}) {
    CropRequest request;
    request.source = Path(std::string(name) + ".jpg");
    request.destination = Path(std::string("cut ") + name + ".jpg");
    request.rect = {7, 5, 60, 50};
    const Status cut = services.CropToFile(request);
    EXPECT_TRUE(cut) << cut.Why();
  }
  EXPECT_EQ(world.folder.Read("cut many.jpg"), world.folder.Read("cut one.jpg"));
}

TEST_F(ManyScans, AreCutFromOneDecode) {
  CutSource source;
  const Status opened = services.OpenForCuts(Path("many.jpg"), Encoder::Jpeg, source);
  ASSERT_TRUE(opened) << opened.Why();
  CropRequest request;
  request.source = Path("many.jpg");
  request.destination = Path("cut many.jpg");
  request.rect = {7, 5, 60, 50};
  ASSERT_TRUE(services.CropToFile(source, request));
  request.source = Path("one.jpg");
  request.destination = Path("cut one.jpg");
  ASSERT_TRUE(services.CropToFile(request));
  EXPECT_EQ(world.folder.Read("cut many.jpg"), world.folder.Read("cut one.jpg"));
}

TEST_F(ManyScans, ArePreviewed) {
  for (const base::Size limit : {base::Size{160, 120}, base::Size{20, 20}}) {
    Services::Preview many;
    const Status shown = services.LoadPreview(Path("many.jpg"), limit, many);
    ASSERT_TRUE(shown) << shown.Why();
    Services::Preview one;
    ASSERT_TRUE(services.LoadPreview(Path("one.jpg"), limit, one));
    EXPECT_EQ(many.size, one.size);
    EXPECT_EQ(many.rgb, one.rgb);
  }
}

TEST_F(ManyScans, AcceptEffects) {
  Image many;
  const Status loaded = services.LoadImageFromFile(Path("many.jpg"), many);
  ASSERT_TRUE(loaded) << loaded.Why();
  Image one = Load(Path("one.jpg"));
  for (Image* image : {&many, &one}) {
    ASSERT_TRUE(services.RotateImage(*image, 10, base::kWhite));
    ASSERT_TRUE(services.ConvertImageToGrayMode(*image));
  }
  EXPECT_EQ(PixelsOf(many), PixelsOf(one));
}

TEST_F(ManyScans, AreScaled) {
  for (const std::string name : {"one", "many"}) {
    const Status scaled = services.ZoomPic(Path(name + ".jpg"), Path(name + " small.png"), 40, 30, Exif::Drop);
    EXPECT_TRUE(scaled) << scaled.Why();
  }
  EXPECT_EQ(world.folder.Read("many small.png"), world.folder.Read("one small.png"));
}

}  // namespace
}  // namespace quillon::imaging
