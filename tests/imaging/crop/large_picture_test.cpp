// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures above Limits::pixelsInMemory are kept on disk; the results are those of pictures in memory, byte for byte.
#include <cerrno>
#include <functional>
#include <utility>

#include "imaging/crop/huge_picture.h"
#include "imaging/jpeg_maker.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::testing::DiskCall;
using host::testing::Fault;
using vips::VImage;

constexpr base::Size kSize{331, 207};

class LargePictureTest : public ServicesTest {
 protected:
  static Limits SmallMemory() {
    Limits limits;
    limits.pixelsInMemory = 5000;
    return limits;
  }

  std::vector<std::string> Sources() {
    ToVips(PhotoLike(kSize.width, kSize.height, 3)).pngsave(Path("rgb.png").c_str());
    ToVips(PhotoLike(kSize.width, kSize.height, 4)).pngsave(Path("alpha.png").c_str());
    ToVipsDeep(PhotoLike(kSize.width, kSize.height, 3, 65535)).pngsave(Path("deep.png").c_str());
    ToVips(PhotoLike(kSize.width, kSize.height, 1), VIPS_INTERPRETATION_B_W).tiffsave(Path("grey.tif").c_str());
    ToVips(PhotoLike(kSize.width, kSize.height, 4), VIPS_INTERPRETATION_CMYK).tiffsave(Path("ink.tif").c_str());
    world.folder.Write("one.jpg", MakeJpeg(TestPicture(kSize, Colours::YCbCr), {}));
    std::vector<std::string> paths;
    for (const char* name : {"rgb.png", "alpha.png", "deep.png", "grey.tif", "ink.tif", "one.jpg"}) {
      paths.push_back(Path(name));
    }
    return paths;
  }

  // What act writes to "out", by services that hold pictures in memory and by those that keep them on disk.
  void ExpectSame(const std::function<Status(Services&)>& act) {
    const Status plain = act(services);
    ASSERT_TRUE(plain) << plain.Why();
    EXPECT_EQ(world.faults.Count(DiskCall::OpenScratch), 0);
    const std::string expected = world.folder.Read("out");
    const Status tiled = act(large);
    ASSERT_TRUE(tiled) << tiled.Why();
    EXPECT_GT(world.faults.Count(DiskCall::OpenScratch), 0);
    EXPECT_TRUE(world.folder.Read("out") == expected);
    EXPECT_TRUE(world.files.Flush().empty());
    EXPECT_EQ(world.faults.OpenHandles(), 0);
    world.faults.Clear();
  }

  Services large{world.files, world.host.programFolder, nullptr, SmallMemory()};
};

TEST_F(LargePictureTest, TurnsAreTheSame) {
  for (const std::string& source : Sources()) {
    for (const double angle : {90.0, 180.0, 270.0, -90.0, 0.7, -33.0, 45.0, 171.3}) {
      SCOPED_TRACE(source + " by " + std::to_string(angle));
      ExpectSame([&](Services& with) {
        Image image;
        if (Status loaded = with.LoadImageFromFile(source, image); !loaded) return loaded;
        if (Status turned = with.RotateImage(image, angle, {0x3060A0}); !turned) return turned;
        return with.SaveByType(image, Path("out"), "tif", {});
      });
    }
  }
}

// These formats have no orientation, so that the pixels are turned.
TEST_F(LargePictureTest, GifAndBmpOfATurnedPictureAreTheSame) {
  VImage photo = ToVips(PhotoLike(kSize.width, kSize.height, 3)).copy();
  for (const int orientation : {2, 3, 5, 6, 8}) {
    photo.set(VIPS_META_ORIENTATION, orientation);
    photo.tiffsave(Path("turned.tif").c_str());
    CropRequest crop{.source = Path("turned.tif"), .destination = Path("out"), .rect = {-3, 8, 320, 190}};
    for (const Encoder encoder : {Encoder::Bmp, Encoder::Gif}) {
      SCOPED_TRACE(std::to_string(orientation) + " " + std::to_string(static_cast<int>(encoder)));
      crop.encoder = encoder;
      ExpectSame([&](Services& with) { return with.CropToFile(crop); });
    }
  }
}

TEST_F(LargePictureTest, EffectsInARowAreTheSame) {
  for (const std::string& source : Sources()) {
    for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
      SCOPED_TRACE(source + " " + type);
      ExpectSame([&](Services& with) {
        Image image;
        Image canvas;
        Status status = with.LoadImageFromFile(source, image);
        if (status) status = with.RotateImage(image, 12, base::kWhite);
        if (status) status = with.ResampleImage(image, 290, 230);
        if (status) status = with.Invert(image);
        if (status) status = with.CutImage(image, {-5, 10, 280, 200});
        if (status) status = with.RotateImage(image, -12, base::kWhite);
        if (status) status = with.NewCanvas({300, 260}, base::kWhite, canvas);
        if (status) status = with.DrawImage(canvas, image, {10, -7, 270, 250});
        if (status) with.CopyTags(canvas, image);
        return status ? with.SaveByType(canvas, Path("out"), type, {}) : status;
      });
    }
  }
}

TEST_F(LargePictureTest, ASmallCutOfALargePictureIsTheSame) {
  for (const std::string& source : Sources()) {
    SCOPED_TRACE(source);
    ExpectSame([&](Services& with) {
      Image image;
      Status status = with.LoadImageFromFile(source, image);
      if (status) status = with.RotateImage(image, -4, base::kWhite);
      if (status) status = with.CutImage(image, {100, 80, 60, 50});
      if (status) status = with.ConvertImageToGrayMode(image);
      if (status) status = with.Threshold(image, 120);
      return status ? with.SaveByType(image, Path("out"), "png", {}) : status;
    });
  }
}

TEST_F(LargePictureTest, BordersAreTheSame) {
  for (const std::string& source : Sources()) {
    for (const auto& [rotation, scale] : {std::pair(0.0, 1.0), {0.0, 0.7}, {90.0, 1.0}, {-20.0, 1.0}, {8.5, 0.9}}) {
      SCOPED_TRACE(source + " by " + std::to_string(rotation) + " and " + std::to_string(scale));
      ExpectSame([&, turn = rotation, by = scale](Services& with) {
        BorderRequest request;
        request.source = source;
        request.destination = Path("out");
        request.image = {320, 200};
        request.drawn = base::TurnedSize(request.image, turn);
        request.total = {400, 390};
        request.offsetX = 13;
        request.offsetY = -6;
        request.rotation = turn;
        request.scale = by;
        request.colour = {0x2040F0};
        return with.AddBoardToFile(request);
      });
    }
  }
}

TEST_F(LargePictureTest, SeveralCutsAreTheSame) {
  for (const std::string& source : Sources()) {
    for (const Encoder encoder : {Encoder::Jpeg, Encoder::Png}) {
      for (const base::Rect rect : {base::Rect{0, 0, 331, 207}, base::Rect{120, 101, 60, 50}, {-9, 150, 200, 90}}) {
        SCOPED_TRACE(source + " " + std::to_string(static_cast<int>(encoder)) + " " + std::to_string(rect.left));
        ExpectSame([&](Services& with) {
          CropRequest request;
          request.source = source;
          request.destination = Path("out");
          request.rect = rect;
          request.encoder = encoder;
          CutSource opened;
          const Status status = with.OpenForCuts(source, encoder, opened);
          return status ? with.CropToFile(opened, request) : status;
        });
      }
    }
  }
}

// Of a large JPEG only what the named cuts use is kept; another cut decodes the file again.
TEST_F(LargePictureTest, CutsThatWereNotNamedAreTheSame) {
  const std::string source = Sources().back();
  CropRequest named;
  named.source = source;
  named.destination = Path("out");
  named.rect = {10, 10, 50, 40};
  CropRequest other = named;
  other.rect = {200, 110, 60, 50};
  CropRequest outside = named;
  outside.rect = {-80, -70, 60, 50};
  for (const CropRequest& request : {named, other, outside}) {
    SCOPED_TRACE(request.rect.left);
    ExpectSame([&](Services& with) {
      CutSource opened;
      const Status status = with.OpenForCuts(source, Encoder::Jpeg, opened, {{named, named}});
      return status ? with.CropToFile(opened, request) : status;
    });
  }
}

TEST_F(LargePictureTest, OneIsHeldInMemoryIfThereIsNoDisk) {
  for (const std::string& source : Sources()) {
    SCOPED_TRACE(source);
    const auto turn = [&](Services& with) {
      Image image;
      CutSource opened;
      Status status = with.LoadImageFromFile(source, image);
      if (status) status = with.RotateImage(image, 30, base::kWhite);
      if (status) status = with.RotateImage(image, 90, base::kWhite);
      if (status) status = with.SaveByType(image, Path("out"), "png", {});
      return status ? with.OpenForCuts(source, Encoder::Jpeg, opened) : status;
    };
    ASSERT_TRUE(turn(services));
    const std::string expected = world.folder.Read("out");
    world.faults.Set({.call = DiskCall::OpenScratch, .error = ENOSPC, .length = Fault::Length::ForEver});
    ASSERT_TRUE(turn(large));
    EXPECT_GT(world.faults.Fired(), 0);
    EXPECT_TRUE(world.folder.Read("out") == expected);
    world.faults.Clear();
  }
}

// The failure of a tile is one of the save, and what stood under the name is unchanged.
TEST_F(LargePictureTest, ATileThatCannotBeReadWritesNothing) {
  const std::string source = Sources().front();
  world.folder.Write("out", "old");
  Image image;
  ASSERT_TRUE(large.LoadImageFromFile(source, image));
  ASSERT_TRUE(large.RotateImage(image, 90, base::kWhite));
  world.faults.Set({.call = DiskCall::ReadAt, .nth = 3, .error = EIO});
  EXPECT_FALSE(large.SaveByType(image, Path("out"), "png", {}));
  EXPECT_EQ(world.folder.Read("out"), "old");
}

TEST_F(LargePictureTest, AFullDiskFailsTheDecode) {
  for (const std::string& source : Sources()) {
    world.faults.Set({.call = DiskCall::Write, .nth = 2, .error = ENOSPC});
    Image image;
    EXPECT_TRUE(large.LoadImageFromFile(source, image).DiskFull()) << source;
    EXPECT_FALSE(image);
    world.faults.Clear();
    EXPECT_EQ(world.faults.OpenHandles(), 0);
  }
}

TEST_F(LargePictureTest, TheLimitOfMemoryHoldsOnDiskToo) {
  Limits limits = SmallMemory();
  limits.memory = 331 * 207 * 3 - 1;
  Services bounded(world.files, world.host.programFolder, nullptr, limits);
  Image image;
  EXPECT_EQ(bounded.LoadImageFromFile(Sources().front(), image).GetProblem(), host::Problem::TooLarge);
  EXPECT_EQ(world.faults.Count(DiskCall::OpenScratch), 0);
}

TEST_F(LargePictureTest, HugeTurnsAreTheSame) {
  Sources();
  Limits onDisk;
  onDisk.memory = 1000;  // the helper keeps on disk what is above it
  for (const char* name : {"rgb.png", "ink.tif", "one.jpg"}) {
    for (const double angle : {90.0, 33.0}) {
      SCOPED_TRACE(std::string(name) + " by " + std::to_string(angle));
      HugeOrder order;
      order.source = Path(name);
      order.target = Path("out.tif");
      order.angle = angle;
      ASSERT_TRUE(MakeFromHuge(world.host.files, order, {}));
      const std::string expected = world.folder.Read("out.tif");
      for (const Limits& limits : {SmallMemory(), onDisk}) {
        world.faults.Clear();
        const Status made = MakeFromHuge(world.host.files, order, limits);
        ASSERT_TRUE(made) << made.Why();
        EXPECT_EQ(world.faults.Count(DiskCall::OpenScratch), 1);
        EXPECT_TRUE(world.folder.Read("out.tif") == expected);
      }
      world.faults.Set({.call = DiskCall::OpenScratch, .error = ENOSPC});
      EXPECT_EQ(MakeFromHuge(world.host.files, order, onDisk).GetProblem(), host::Problem::TooLarge);
    }
  }
}

}  // namespace
}  // namespace quillon::imaging
