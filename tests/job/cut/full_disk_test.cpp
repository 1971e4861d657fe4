// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A disk that is really full, with every number of kilobytes left, so that each write of a save is the one that fails.
#include "host/testing/small_disk.h"
#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

class FullDiskTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    if (!disk.Mounted()) GTEST_SKIP() << "no disk can be mounted here: " << disk.Why();
  }
  static Pixel Noise(int x, int y) { return {(x * 37 + y * 91) % 256, (x * y * 13) % 256, (x * 7 + y * y) % 256}; }

  host::testing::SmallDisk disk{world.folder.Path("small")};
};

TEST_F(FullDiskTest, EveryWriteOfAnOutput) {
  Put("LOutDir", world.folder.Path("small"));
  form.CmbOutType.SetText("bmp");
  List({Make("a.bmp", Painted(80, 60, Noise))});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  std::size_t pages = 0;
  for (; pages < 20; ++pages) {
    SCOPED_TRACE(pages);
    disk.FillUntil(pages);
    world.boxes.Forget();
    Cut();
    if (Totals().none == 0) break;
    EXPECT_EQ(world.boxes.Count("/盘空间不足，请释放空间后重试保存！"), 1);
    EXPECT_TRUE(disk.Names().empty()) << "neither a part nor a draft";
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_TRUE(Totals().stopped);
  }
  EXPECT_EQ(pages, 4u);
  EXPECT_EQ(disk.Names(), std::vector<std::string>{"a.bmp"});
}

TEST_F(FullDiskTest, RetriesUntilThereIsRoom) {
  Put("LOutDir", world.folder.Path("small"));
  List({Make("a.bmp", Painted(80, 60, Noise))});
  disk.FillUntil(0);
  int asked = 0;
  world.boxes.OnShow([&](const host::Box& box) {
    if (box.text.find("盘空间不足") != std::string::npos && ++asked == 3) disk.Free();
  });
  world.boxes.Answer("盘空间不足", host::Reply::Retry, 3);
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  Cut();
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(world.folder.Path("small/a.jpg")), (base::Size{80, 60}));
}

TEST_F(FullDiskTest, EveryWriteOverASource) {
  Put("ChOver", "1");
  Margins(10, 0, 0, 0);
  const Picture picture = Painted(80, 60, Noise);
  const std::string whole = BitmapBytes(picture);
  const std::string path = world.folder.Write("small/a.bmp", whole);
  List({path});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  std::size_t pages = 0;
  for (; pages < 20; ++pages) {
    SCOPED_TRACE(pages);
    disk.FillUntil(pages);
    Cut();
    EXPECT_EQ(disk.Names(), std::vector<std::string>{"a.bmp"});
    if (Totals().none == 0) break;
    EXPECT_EQ(world.folder.Read("small/a.bmp"), whole) << "the source is as it was";
  }
  EXPECT_GT(pages, 1u);
  EXPECT_EQ(SizeOf(path), (base::Size{72, 60}));
}

}  // namespace
}  // namespace quillon::job
