// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Rotation, colours and zoom before, during and after the cut.
#include <filesystem>

#include "job/collaborator_doubles.h"
#include "job/cut_fixture.h"
#include "job/deep_tiff.h"

namespace quillon::job {
namespace {

class CutEffectsTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    form.CmbOutType.SetText("png");
  }
  // Leaves a listed picture that no longer can be read.
  std::string Broken(const std::string& name) {
    const std::string path = Make(name);
    List({path});
    world.folder.Write("in/" + name, "gone bad");
    return path;
  }
};

TEST_F(CutEffectsTest, ABlackAndWhiteTifIsFaxed) {
  form.CmbOutType.SetText("tif");
  const std::string path = Make("a.bmp", 64, 48);
  const auto compression = [](char value) { return std::string("\x03\x01\x03\0\1\0\0\0", 8) + value; };  // tag 259
  Cut({path});
  EXPECT_NE(world.folder.Read("out/a.tif").find(compression(5)), std::string::npos);
  Option("ChToWB", "1");
  Cut();
  EXPECT_NE(world.folder.Read("out/a.tif").find(compression(4)), std::string::npos);
}

TEST_F(CutEffectsTest, Grey) {
  Option("ChToGray", "1");
  Margins(10, 0, 0, 0);
  Cut({Make("a.png", Painted(20, 10, [](int x, int) { return x < 10 ? Pixel{255, 0, 0} : Pixel{0, 0, 255}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.png"));
  EXPECT_EQ(cut.width, 18);
  // 0.299 and 0.114 of 255.
  EXPECT_NEAR(cut.At(0, 0).red, 76, 1);
  EXPECT_NEAR(cut.At(17, 9).red, 29, 1);
  EXPECT_EQ(cut.At(0, 0).red, cut.At(0, 0).blue);
}

TEST_F(CutEffectsTest, BlackAndWhite) {
  Option("ChToWB", "1");
  Cut({Make("a.png", Painted(20, 20, [](int x, int) { return Pixel{118 + x, 118 + x, 118 + x}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.png"));
  for (int x = 0; x < 20; ++x) EXPECT_EQ(cut.At(x, 7).red, x < 10 ? 0 : 255) << x;
}

// The value of a tag of the first directory, which holds 16 bits; -1 if it has none.
int TiffTag(const std::string& tiff, int tag) {
  const auto at = [&](std::size_t place, int bytes) {
    std::size_t value = 0;
    for (int i = bytes; i-- > 0;)
      value = value << 8 | static_cast<unsigned char>(tiff.at(place + static_cast<std::size_t>(i)));
    return value;
  };
  const std::size_t directory = at(4, 4);
  for (std::size_t i = 0; i < at(directory, 2); ++i) {
    const std::size_t entry = directory + 2 + i * 12;
    if (at(entry, 2) == static_cast<std::size_t>(tag)) return static_cast<int>(at(entry + 8, 2));
  }
  return -1;
}

TEST_F(CutEffectsTest, BlackAndWhiteTiffsAreFaxes) {
  form.CmbOutType.SetText("tif");
  Option("ChToWB", "1");
  const std::string path = Make("a.png", 40, 30);
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const std::string tiff = world.folder.Read("out/a.tif");
  EXPECT_EQ(TiffTag(tiff, 259), 4);
  EXPECT_EQ(TiffTag(tiff, 258), 1);
  Put("FBaseOpt.ChToGray", "1");
  program.files.Clear();
  Cut({path});
  EXPECT_EQ(TiffTag(world.folder.Read("out/a.tif"), 259), 5);
}

TEST_F(CutEffectsTest, Inverse) {
  Option("ChInvert", "1");
  Cut({Make("a.png", Painted(3, 3, [](int, int) { return Pixel{1, 20, 255}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Read(Out("a.png")).At(1, 1), (Pixel{254, 235, 0}));
}

TEST_F(CutEffectsTest, OnlyALoadedWindowHasEffects) {
  options.ChInvert.SetHandler({});
  options.ChInvert.Set(true);
  Cut({Make("a.png", Painted(3, 3, [](int, int) { return Pixel{1, 20, 255}; }))});
  EXPECT_EQ(Read(Out("a.png")).At(1, 1), (Pixel{1, 20, 255}));
}

struct RuleCase {
  int rule;
  int width;
  int height;
  double angle;  // 0: stays as it is
};

// The rotated picture, by exact quarter turns.
Picture TurnedPicture(int width, int height, double angle) {
  if (angle > 0) return Painted(height, width, [&](int x, int y) { return Slope(width - 1 - y, x); });
  if (angle < 0) return Painted(height, width, [&](int x, int y) { return Slope(y, height - 1 - x); });
  return Painted(width, height, Slope);
}

TEST_F(CutEffectsTest, RotationRules) {
  const RuleCase cases[] = {{1, 30, 20, 90}, {1, 20, 30, 0},   {2, 30, 20, -90}, {2, 20, 30, 0}, {3, 20, 30, 90},
                            {3, 30, 20, 0},  {4, 20, 30, -90}, {4, 30, 20, 0},   {1, 20, 20, 0}, {3, 20, 20, 0}};
  options.Load();
  for (const RuleCase& c : cases) {
    SCOPED_TRACE(testing::Message() << "rule " << c.rule << " " << c.width << "x" << c.height);
    options.CmbRotate.Select(c.rule);
    program.files.Clear();
    Cut({Make("a.png", c.width, c.height)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(Difference(Read(Out("a.png")), TurnedPicture(c.width, c.height, c.angle)), 0);
  }
}

TEST_F(CutEffectsTest, RotatingBeforeTheCutTurnsByTheAngle) {
  Option("ChRotateCut", "1");
  for (const double angle : {90.0, -90.0, 0.0}) {
    Put("FBaseOpt.TAngle", angle > 0 ? "90" : angle < 0 ? "-90" : "0");
    for (const base::Size size : {base::Size{50, 20}, base::Size{20, 20}, base::Size{20, 50}}) {
      program.files.Clear();
      Cut({Make("a.png", size.width, size.height)});
      ASSERT_EQ(Totals().written, 1u) << Whys();
      EXPECT_EQ(Difference(Read(Out("a.png")), TurnedPicture(size.width, size.height, angle)), 0) << angle;
    }
  }
}

TEST_F(CutEffectsTest, RotatedBeforeTheCutAndTurnedBackAfterIt) {
  Option("ChRotateCut", "1");
  Put("FBaseOpt.TAngle", "90");
  Put("FBaseOpt.ChRecover", "1");
  Margins(10, 20, 0, 0);
  Cut({Make("a.png", 50, 20)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Painted(40, 18, [](int x, int y) { return Slope(x, y + 2); })), 0);
}

TEST_F(CutEffectsTest, ACutThatMemoryDoesNotHoldGoesThroughABitmapOnDisk) {
  constexpr int kSide = 16400;  // with eight bytes a pixel more than 2 GB
  Option("ChInvert", "1");
  Put("ChCutA", "1");
  Margins(10, 5, 0, 0);
  options.TSmalS[2].SetText(std::to_string(kSide));
  options.TSmalS[3].SetText(std::to_string(kSide));
  form.CmbOutType.SetText("jpg");
  form.TQuality.SetText("100");
  Cut({world.folder.Write("in/a.tif", DeepTiff(40, 30, Slope))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{kSide, kSide}));
  EXPECT_EQ(SizeOf(world.folder.Path("app/Tmp.bmp")), (base::Size{40, 30}));
  imaging::CropRequest corner;
  corner.source = Out("a.jpg");
  corner.destination = world.folder.Path("corner.png");
  corner.encoder = imaging::Encoder::Png;
  corner.rect = {0, 0, 32, 28};
  ASSERT_TRUE(program.images.CropToFile(corner));
  const Picture wanted = Painted(32, 28, [](int x, int y) {
    const Pixel source = Slope(x + 10, y + 5);
    return x < 30 && y < 25 ? Pixel{255 - source.red, 255 - source.green, 255 - source.blue} : kWhitePixel;
  });
  EXPECT_LE(Difference(Read(corner.destination), wanted), 8);
}

TEST_F(CutEffectsTest, AnyAngleGrowsTheCanvasOnWhite) {
  Option("CmbRotate", "5");
  options.TAngle.SetText("45");
  Cut({Make("a.png", Painted(40, 40, [](int, int) { return Pixel{0, 0, 0}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.png"));
  EXPECT_GE(cut.width, 56);
  EXPECT_EQ(cut.At(0, 0), kWhitePixel);
  EXPECT_EQ(cut.At(cut.width / 2, cut.height / 2), (Pixel{0, 0, 0}));
}

TEST_F(CutEffectsTest, TheRectangleIsThatOfTheTurnedPicture) {
  Option("CmbRotate", "1");
  Margins(10, 20, 0, 0);
  Cut({Make("a.png", 50, 20)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture turned = TurnedPicture(50, 20, 90);
  const Picture wanted = Painted(18, 40, [&](int x, int y) { return turned.At(x + 2, y + 10); });
  EXPECT_EQ(Difference(Read(Out("a.png")), wanted), 0);
}

TEST_F(CutEffectsTest, RestoredAfterTheCut) {
  Option("CmbRotate", "1");
  options.ChRecover.SetEnabled(true);
  options.ChRecover.Set(true);
  Margins(10, 20, 0, 0);
  for (const char* grey : {"0", "1"}) {
    options.ChToGray.Set(grey[0] == '1');
    program.files.Clear();
    Cut({Make("a.png", 50, 20)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    const Picture cut = Read(Out("a.png"));
    EXPECT_EQ(cut.width, 40) << grey;
    EXPECT_EQ(cut.height, 18) << grey;
    // Left and top of the turned picture were the source's top and right.
    if (grey[0] == '0') {
      EXPECT_EQ(Difference(cut, Painted(40, 18, [](int x, int y) { return Slope(x, y + 2); })), 0);
    }
  }
}

// 40 x 40 turned by 30 degrees is 55 x 55, with white corners; turned back that is 76 x 76.
TEST_F(CutEffectsTest, RestoringFillsWithTheColourOfTheBorder) {
  Option("CmbRotate", "5");
  Put("FBaseOpt.TAngle", "30");
  Put("FBaseOpt.ChRecover", "1");
  Put("FBaseOpt.PBoardColor", "#FF0000");
  Cut({Make("a.png", Painted(40, 40, [](int, int) { return Pixel{0, 0, 0}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.png"));
  EXPECT_EQ(cut.width, 76);
  EXPECT_EQ(cut.height, 76);
  EXPECT_EQ(cut.At(1, 1), (Pixel{255, 0, 0}));
  EXPECT_EQ(cut.At(74, 74), (Pixel{255, 0, 0}));
  EXPECT_EQ(cut.At(38, 38), (Pixel{0, 0, 0}));
  EXPECT_EQ(cut.At(38, 12), kWhitePixel);  // the corner of the first turn
}

TEST_F(CutEffectsTest, ForASheetAPictureStaysTurned) {
  IdleSheets sheets;
  program.sheets = &sheets;
  form.ChCutAndArray.SetHandler({});
  form.ChCutAndArray.Set(true);
  Option("CmbRotate", "1");
  Put("FBaseOpt.ChRecover", "1");
  Cut({Make("a.png", 50, 20)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), TurnedPicture(50, 20, 90)), 0);
}

TEST_F(CutEffectsTest, EffectsOnATurnedPicture) {
  Option("CmbRotate", "2");
  Put("FBaseOpt.ChInvert", "1");
  Cut({Make("a.png", 30, 20)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture turned = TurnedPicture(30, 20, -90);
  const Picture wanted = Painted(20, 30, [&](int x, int y) {
    const Pixel pixel = turned.At(x, y);
    return Pixel{255 - pixel.red, 255 - pixel.green, 255 - pixel.blue};
  });
  EXPECT_EQ(Difference(Read(Out("a.png")), wanted), 0);
}

TEST_F(CutEffectsTest, ZoomBeforeTheCut) {
  Option("ChZoomAndCut", "1");
  struct Case {
    const char* zoom;
    base::Size size;
  };
  const Case cases[] = {{"50%", {50, 40}},   {"100%", {100, 80}}, {"9%", {100, 80}},  {"501%", {100, 80}},
                        {"200", {200, 160}}, {"64,48", {64, 48}}, {"10,99", {32, 99}}};
  for (const Case& c : cases) {
    options.CmbZoom.SetText(c.zoom);
    program.files.Clear();
    Cut({Make("a.png", 100, 80)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(SizeOf(Out("a.png")), c.size) << c.zoom;
  }
}

// What is turned is the zoomed picture, and whether it is turned goes by its sides.
TEST_F(CutEffectsTest, ZoomComesBeforeTheRotation) {
  Option("ChZoomAndCut", "1");
  struct Case {
    int rule;  // 1 turns what is wide, 4 what is high
    base::Size source;
    const char* zoom;
    base::Size size;
  };
  const Case cases[] = {{1, {20, 30}, "64,48", {48, 64}},
                        {1, {30, 20}, "48,64", {48, 64}},
                        {4, {30, 20}, "48,64", {64, 48}},
                        {4, {20, 30}, "64,48", {64, 48}}};
  for (const Case& c : cases) {
    Put("FBaseOpt.CmbZoom", c.zoom);
    options.CmbRotate.Select(c.rule);
    program.files.Clear();
    Cut({Make("a.png", c.source.width, c.source.height)});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(SizeOf(Out("a.png")), c.size) << c.rule;
  }
}

TEST_F(CutEffectsTest, TheRectangleIsThatOfTheZoomedPicture) {
  Option("ChZoomAndCut", "1");
  options.CmbZoom.SetText("50%");
  Margins(50, 0, 0, 0);
  Cut({Make("a.png", Painted(100, 80, [](int x, int) { return x < 50 ? Pixel{255, 0, 0} : Pixel{0, 0, 255}; }))});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture cut = Read(Out("a.png"));
  EXPECT_EQ(cut.width, 25);
  EXPECT_EQ(cut.height, 40);
  EXPECT_NEAR(cut.At(15, 20).blue, 255, 6);
  EXPECT_NEAR(cut.At(15, 20).red, 0, 6);
}

TEST_F(CutEffectsTest, AZoomToNothingIsReported) {
  options.Load();
  const std::string path = Make("a.png", 4, 400);
  for (const char* time : {"ChZoomAndCut", "ChCutAndZoom"}) {
    Put(std::string("FBaseOpt.") + time, "1");
    Put("FBaseOpt.CmbZoom", "10%");
    program.files.Clear();
    Cut({path});
    EXPECT_EQ(Why(1), "结果的宽和高至少要有 1 像素") << time;
    EXPECT_TRUE(OutNames().empty()) << time;
  }
}

TEST_F(CutEffectsTest, AZoomBeyondAllMemoryIsReportedAtOnce) {
  options.Load();
  const std::string path = Make("a.png", 40, 30);
  const std::pair<const char*, const char*> whys[] = {{"ChZoomAndCut", "缩放后为 30000x30000 像素，图片太大，内存不足"},
                                                      {"ChCutAndZoom", "图片太大，内存不足"}};
  for (const auto& [time, why] : whys) {
    Put(std::string("FBaseOpt.") + time, "1");
    Put("FBaseOpt.CmbZoom", "99999,99999");
    program.files.Clear();
    Cut({path});
    EXPECT_EQ(Why(1), why) << time;
    EXPECT_TRUE(OutNames().empty()) << time;
    EXPECT_FALSE(AppHas("Tmp.jpg")) << time;
  }
}

TEST_F(CutEffectsTest, TextsThatAreNoZoomCutTheWholeSize) {
  Option("ChZoomAndCut", "1");
  const std::string path = Make("a.png", 100, 80);
  for (const char* text : {"%", "0%", ",", "10,", "abc", ""}) {
    Put("FBaseOpt.CmbZoom", text);
    program.files.Clear();
    Cut({path});
    ASSERT_EQ(Totals().written, 1u) << text << Whys();
    EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{100, 80})) << text;
  }
  Put("FBaseOpt.CmbZoom", "６４，４８");
  program.files.Clear();
  Cut({path});
  EXPECT_EQ(SizeOf(Out("a.png")), (base::Size{64, 48}));
}

TEST_F(CutEffectsTest, ZoomBeforeTheCutKeepsTheExif) {
  Option("ChZoomAndCut", "1");
  Put("FBaseOpt.CmbZoom", "50%");
  form.CmbOutType.SetText("jpg");
  Make("a.jpg");
  std::string jpeg = world.folder.Read("in/a.jpg");
  // A directory of one entry, the maker's name.
  const std::string block = std::string("Exif\0\0II*\0\x08\0\0\0", 14) +
                            std::string("\x01\0\x0F\x01\x02\0\x07\0\0\0", 10) +
                            std::string("\x1A\0\0\0\0\0\0\0Camera\0\0", 16);
  const std::string head{'\xFF', '\xE1', '\0', static_cast<char>(block.size() + 2)};
  const std::string path = world.folder.Write("in/a.jpg", jpeg.insert(2, head + block));
  for (const bool keep : {true, false}) {
    Put("FBaseOpt.ChKeepExif", keep ? "1" : "0");
    program.files.Clear();
    Cut({path});
    ASSERT_EQ(Totals().written, 1u) << Whys();
    EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{50, 40}));
    EXPECT_EQ(world.folder.Read("out/a.jpg").find("Camera") != std::string::npos, keep);
  }
}

TEST_F(CutEffectsTest, AStaleZoomIsNeverCut) {
  Option("ChZoomAndCut", "1");
  options.CmbZoom.SetText("50%");
  List({Make("a.png")});
  Broken("b.png");
  Cut();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.png"});
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：1"), 1);
}

TEST_F(CutEffectsTest, ZoomAfterTheCut) {
  Option("ChCutAndZoom", "1");
  Margins(50, 0, 0, 0);
  struct Case {
    const char* zoom;
    base::Size size;
  };
  const Case cases[] = {{"50%", {25, 40}}, {"100%", {50, 80}}, {"40,60", {40, 60}}};
  for (const char* effect : {"0", "1"}) {
    options.ChToGray.Set(effect[0] == '1');
    for (const Case& c : cases) {
      options.CmbZoom.SetText(c.zoom);
      program.files.Clear();
      Cut({Make("a.png", 100, 80)});
      ASSERT_EQ(Totals().written, 1u) << Whys();
      EXPECT_EQ(SizeOf(Out("a.png")), c.size) << c.zoom << " effect " << effect;
    }
  }
}

TEST_F(CutEffectsTest, ZoomAfterTheCutOverTheSource) {
  Option("ChCutAndZoom", "1");
  options.CmbZoom.SetText("50%");
  Put("ChOver", "1");
  const std::string path = Make("a.jpg", 100, 80);
  Cut({path});
  EXPECT_EQ(SizeOf(path), (base::Size{50, 40}));
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.jpg"});
}

TEST_F(CutEffectsTest, OnlyALoadFailureOfTheEffectsIsCounted) {
  Option("ChInvert", "1");
  Broken("a.png");
  Broken("b.jpg");
  List({Make("c.png")});
  Cut();
  EXPECT_EQ(Totals().none, 2u);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_FALSE(Why(1).empty());
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：2"), 1);
}

TEST_F(CutEffectsTest, AnOwnResolutionIsAnEffect) {
  Option("CmbDPI", "72");
  Broken("a.jpg");
  List({Make("b.jpg", 60, 50)});
  form.CmbOutType.SetText("jpg");
  Cut();
  EXPECT_EQ(DpiOf(Out("b.jpg")), 72);
  EXPECT_EQ(SizeOf(Out("b.jpg")), (base::Size{60, 50}));
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：1"), 1);
}

TEST_F(CutEffectsTest, AnEmptyRectangleIsNoLoadFailure) {
  Option("ChInvert", "1");
  Margins(50, 0, 50, 0);
  Cut({Make("a.png")});
  EXPECT_EQ(Why(1), "裁剪框的宽或高小于 1 像素（0x80），请检查裁剪参数");
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：0"), 1);
}

TEST_F(CutEffectsTest, EffectsOverTheSource) {
  Option("ChInvert", "1");
  Put("ChOver", "1");
  const std::string path = Make("a.png", Painted(30, 20, [](int, int) { return Pixel{1, 20, 255}; }));
  Cut({path});
  EXPECT_EQ(Read(path).At(5, 5), (Pixel{254, 235, 0}));
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.png"});
}

TEST_F(CutEffectsTest, EffectsInTheFolderOfTheSourceKeepIt) {
  Option("ChInvert", "1");
  const std::string path = Make("a.png");
  const std::string before = world.folder.Read("in/a.png");
  world.folder.Write("in/a.png.bak", "an older one");
  Put("LOutDir", world.folder.Path("in"));
  Cut({path});
  EXPECT_EQ(world.folder.Read("in/a.png.bak"), before);
  EXPECT_EQ(world.folder.Read("data/Trash/files/a.png.bak"), "an older one");
  EXPECT_EQ(Totals().written, 1u);
}

// A type that the save by type does not know goes by its encoder.
TEST_F(CutEffectsTest, TypesBeyondTheSaveByType) {
  Option("ChInvert", "1");
  Put("ChOver", "1");
  const std::string path = Make("a.jfif", Painted(30, 20, [](int, int) { return Pixel{0, 0, 0}; }));
  Cut({path});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_NEAR(Read(path).At(5, 5).green, 255, 3);
}

TEST_F(CutEffectsTest, ASaveThatFailsTwiceIsRescuedUnderTheFoldersName) {
  Option("ChInvert", "1");
  const std::string path = Make("shots/a.png", 40, 30);
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                    .error = EIO,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/.a.png"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 3) << "the prefetched cut, the save by type and the encoder";
  EXPECT_EQ(OutNames(), std::vector<std::string>{"shots.png"});
  EXPECT_EQ(recorder.done[0].output, Out("shots.png"));
  EXPECT_EQ(Difference(Read(Out("shots.png")), Painted(40, 30, Slope)), 0);
}

TEST_F(CutEffectsTest, ARescueThatFailsReportsTheFirstReason) {
  Option("ChInvert", "1");
  List({Make("a.png")});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew,
                    .error = EROFS,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 4);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(1).empty());
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：0"), 1);
}

TEST_F(CutEffectsTest, FullDiskIsAskedAboutAndNotRescued) {
  Option("ChInvert", "1");
  List({Make("a.png"), Make("b.png")});
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/"});
  world.boxes.Answer("盘空间不足", host::Reply::Cancel);
  Cut();
  EXPECT_EQ(world.boxes.Count("盘空间不足，请释放空间后重试保存！"), 1);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_TRUE(OutNames().empty());
}

}  // namespace
}  // namespace quillon::job
