// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <limits>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "host/testing/test_host.h"
#include "imaging/services.h"
#include "tools/converter_order.h"

namespace quillon::helpers {
namespace {

using imaging::ImageFacts;
using tools::ConverterOrder;

class PicCutConverter : public ::testing::Test {
 protected:
  PicCutConverter() {
    imaging::Image canvas;
    EXPECT_TRUE(images.NewCanvas({600, 400}, base::kWhite, canvas));
    EXPECT_TRUE(images.SaveByEncoder(canvas, folder.Path("source.jpg"), imaging::Encoder::Jpeg, 90));
    order.source = folder.Path("source.jpg");
    order.target = folder.Path("target.jpg");
  }

  Ran Run() {
    folder.Write("Param.txt", *tools::OrderText(order));
    return folder.Run("PicCutConverter", {});
  }
  base::Size Made(const std::string& name = "target.jpg") {
    ImageFacts facts;
    EXPECT_TRUE(images.ImageInfo(folder.Path(name), facts));
    return {facts.width, facts.height};
  }

  host::testing::TestHost world;
  imaging::Services images{world.files, world.host.programFolder};
  HelperFolder folder;
  ConverterOrder order;
};

TEST_F(PicCutConverter, ZoomsToTheSize) {
  order.OnlyZoom = true;
  order.size = {150, 90};
  const Ran ran = Run();
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Made(), (base::Size{150, 90}));
  EXPECT_TRUE(folder.Exists("Param.txt"));  // the program removes it
}

TEST_F(PicCutConverter, CutsClamped) {
  order.CutPic = true;
  order.cutX = 500;
  order.cutY = 100;
  order.size = {300, 50};
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made(), (base::Size{100, 50}));
}

TEST_F(PicCutConverter, ConvertsTurnsAndZoomsIfAsked) {
  order.target = folder.Path("target.png");
  order.OnlyConverter = true;
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made("target.png"), (base::Size{600, 400}));
  order.PicRotate = true;
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made("target.png"), (base::Size{400, 600}));
  order.PicRotate = false;
  order.NeedZoomS = true;
  order.size = {1200, 800};
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made("target.png"), (base::Size{600, 400}));
  order.NeedZoomB = true;
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made("target.png"), (base::Size{1200, 800}));
}

TEST_F(PicCutConverter, MakesSeveralPartsOfOneSource) {
  tools::CoupleOrder couple{.source = order.source, .target = order.target, .quality = 90};
  couple.items = {"#0#0#100#50", "#550#390#100#50"};
  const auto run = [&] {
    folder.Write("CoupleParam.txt", *tools::OrderText(couple));
    return folder.Run("PicCutConverter", {});
  };
  Ran ran = run();
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(Made("target_01.jpg"), (base::Size{100, 50}));
  EXPECT_EQ(Made("target_02.jpg"), (base::Size{50, 10}));
  couple.items.clear();
  couple.size = {60, 40};
  couple.angle = 90;
  couple.grey = true;
  EXPECT_EQ(run().exit, 0);
  EXPECT_EQ(Made(), (base::Size{40, 60}));
  couple.least = {601, 400};
  EXPECT_EQ(run().exit, 1);
}

TEST_F(PicCutConverter, MakesThePartsOfALongOrderToo) {
  order.CoupleArray = true;
  order.items = {"#10#20#30#40"};
  EXPECT_EQ(Run().exit, 0);
  EXPECT_EQ(Made("target_01.jpg"), (base::Size{30, 40}));
  EXPECT_FALSE(folder.Exists("target.jpg"));
}

// Whatever part is cut, a picture many times as large as that does not come into memory.
TEST_F(PicCutConverter, NeedsLittleMemoryForALargePicture) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "The sanitizer needs more";
#endif
  constexpr rlim_t kMemory = 120 << 20;
  rlimit before{};
  getrlimit(RLIMIT_DATA, &before);
  for (const char* source : {"a.jpg", "a.tif[compression=lzw]", "a.tif[tile,compression=lzw]", "a.tif"}) {
    testing::SaveLarge(folder.Path(source), 9000, 7000);
    order.source = folder.Path(std::string(source).substr(0, 5));
    for (const char* target : {"b.jpg", "b.tif", "b.png"}) {
      order.target = folder.Path(target);
      order.CutPic = true;
      order.cutX = 100;
      order.cutY = 6900;
      order.size = {8000, 100};
      const rlimit tight{kMemory, before.rlim_max};
      setrlimit(RLIMIT_DATA, &tight);
      const Ran ran = Run();
      setrlimit(RLIMIT_DATA, &before);
      EXPECT_EQ(ran.exit, 0) << source << " " << target << " " << ran.err;
      EXPECT_EQ(Made(target), (base::Size{8000, 100})) << source;
    }
  }
}

TEST_F(PicCutConverter, FailuresLeaveNoTarget) {
  order.OnlyZoom = true;
  order.size = {150, 90};
  order.least = {601, 400};
  Ran ran = Run();
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(ran.err, "PicCutConverter: 图片小于要求的最小尺寸\n");
  order.least = {32, 32};
  order.source = folder.Path("missing.jpg");
  EXPECT_EQ(Run().exit, 1);
  order.source = folder.Write("torn.jpg", folder.Read("source.jpg").substr(0, 900));
  EXPECT_EQ(Run().exit, 1);
  EXPECT_FALSE(folder.Exists("target.jpg"));
}

// The program knows only by the target whether the order was carried out.
TEST_F(PicCutConverter, AnOlderTargetGoesToTheTrashWhateverFails) {
  setenv("XDG_DATA_HOME", folder.Path("data").c_str(), 1);
  order.OnlyZoom = true;
  order.size = {150, 90};
  const std::string source = order.source;
  const auto expectDiscarded = [&](const char* failure) {
    folder.Write("target.jpg", "older");
    EXPECT_EQ(Run().exit, 1) << failure;
    EXPECT_FALSE(folder.Exists("target.jpg")) << failure;
  };
  order.source = folder.Path("missing.jpg");
  expectDiscarded("the source is missing");
  order.source = folder.Write("text.jpg", "no picture");
  expectDiscarded("the source is no picture");
  order.source = source;
  order.least = {601, 400};
  expectDiscarded("the source is too small");
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(folder.Read("data/Trash/files/target.jpg"), "older");
}

TEST_F(PicCutConverter, ATargetThatIsTheSourceStays) {
  order.OnlyZoom = true;
  order.size = {150, 90};
  order.least = {601, 400};
  order.target = order.source;
  const std::string before = folder.Read("source.jpg");
  EXPECT_EQ(Run().exit, 1);
  EXPECT_EQ(folder.Read("source.jpg"), before);
}

TEST_F(PicCutConverter, AnOlderTargetGoesToTheTrashIfANewOneCannotBeMade) {
  const host::testing::TempFolder elsewhere;
  order.source = folder.Write("torn.jpg", folder.Read("source.jpg").substr(0, 900));
  order.target = elsewhere.Write("out/target.jpg", "older");
  setenv("XDG_DATA_HOME", elsewhere.Path("data").c_str(), 1);
  const Ran ran = Run();
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(ran.exit, 1);
  EXPECT_FALSE(elsewhere.Exists("out/target.jpg"));
  EXPECT_EQ(elsewhere.Read("data/Trash/files/target.jpg"), "older");
}

TEST_F(PicCutConverter, ATargetOfAnySizeIsRefusedByItsSides) {
  constexpr int kLargest = std::numeric_limits<int>::max();
  order.size = {kLargest, kLargest};
  order.OnlyZoom = true;
  for (const int angle : {0, 90, 33}) {
    order.PicRotate = angle != 0;
    order.angle = angle;
    for (const char* target : {"target.jpg", "target.png", "target.tif"}) {
      order.target = folder.Path(target);
      const Ran ran = Run();
      EXPECT_EQ(ran.exit, 1) << target << " " << angle;
      EXPECT_NE(ran.err.find("图片尺寸超出允许的范围"), std::string::npos) << ran.err;
      EXPECT_FALSE(folder.Exists(target));
    }
  }
}

TEST_F(PicCutConverter, OddOrdersAreRefused) {
  EXPECT_EQ(folder.Run("PicCutConverter", {}).exit, 1);  // none
  for (const char* name : {"Param.txt", "CoupleParam.txt"}) {
    for (const std::string& text : {std::string(), std::string("OnlyZoom=True\n"), std::string(10 << 20, 'x'),
                                    std::string(10 << 20, '\n'), std::string("a\0b\n", 4)}) {
      folder.Write(name, text);
      EXPECT_EQ(folder.Run("PicCutConverter", {}).exit, 1) << name;
    }
  }
  (void)world.host.files.RemoveOwn(folder.Path("CoupleParam.txt"));
  order.OnlyZoom = true;
  order.size = {150, 90};
  order.DrawTxtMode = true;
  EXPECT_EQ(Run().exit, 1);
  order.DrawTxtMode = false;
  order.CoupleArray = true;
  for (const char* item : {"", "first", "#0#0#10", "#0#0#0#10", "#600#0#10#10"}) {
    order.items = {"#0#0#10#10", item};
    EXPECT_EQ(Run().exit, 1) << item;
    (void)world.host.files.RemoveOwn(folder.Path("target_01.jpg"));
  }
  order.CoupleArray = false;
  order.items.clear();
  for (const std::string& path : {std::string("target.jpg"), folder.Path("../target.jpg"), std::string()}) {
    order.target = path;
    EXPECT_EQ(Run().exit, 1) << path;
  }
  EXPECT_FALSE(folder.Exists("target.jpg"));
}

}  // namespace
}  // namespace quillon::helpers
