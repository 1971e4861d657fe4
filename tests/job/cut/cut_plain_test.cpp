// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The cut without effects: the path of the output, the way of the pixels, and the metadata.
#include <chrono>
#include <filesystem>

#include "job/cut_fixture.h"

namespace quillon::job {
namespace {

using host::Reply;

class CutPlainTest : public CutTest {
 protected:
  // What a cut of so many percent leaves of a painted picture.
  static Picture Part(int left, int top, int width, int height, const Paint& paint = Slope) {
    return Painted(width, height, [&](int x, int y) { return paint(x + left, y + top); });
  }
};

TEST_F(CutPlainTest, EveryFormatIntoEveryFormat) {
  Margins(10, 20, 30, 40);
  for (const char* from : {"jpg", "png", "tif", "bmp", "gif"}) {
    for (const char* to : {"jpg", "png", "tif", "bmp", "gif"}) {
      SCOPED_TRACE(std::string(from) + " to " + to);
      const std::string name = std::string("p_") + from + "_" + to;
      // Four plain quarters survive a palette and a jpeg alike.
      const Paint quarters = [](int x, int y) { return Pixel{x < 50 ? 255 : 0, y < 40 ? 255 : 0, 128}; };
      Make(name + "." + from, Painted(100, 80, quarters));
      program.files.Clear();
      form.CmbOutType.SetText(to);
      Cut({In(name + "." + from)});
      ASSERT_EQ(Totals().written, 1u) << Why(1);
      const Picture cut = Read(Out(name + "." + to));
      ASSERT_EQ(cut.width, 60);
      ASSERT_EQ(cut.height, 32);
      // At a distance from the edges, because a jpeg is smooth there.
      for (const auto& [x, y] : {std::pair{10, 5}, {55, 5}, {10, 30}, {55, 30}}) {
        const Pixel wanted = quarters(x + 10, y + 16);
        EXPECT_NEAR(cut.At(x, y).red, wanted.red, 8) << x << "," << y;
        EXPECT_NEAR(cut.At(x, y).green, wanted.green, 8) << x << "," << y;
        EXPECT_NEAR(cut.At(x, y).blue, wanted.blue, 8) << x << "," << y;
      }
    }
  }
}

TEST_F(CutPlainTest, LosslessFormatsKeepEveryPixel) {
  Margins(10, 20, 30, 40);
  for (const char* type : {"png", "tif", "bmp"}) {
    form.CmbOutType.SetText(type);
    program.files.Clear();
    Cut({Make(std::string("a.") + type, 100, 80)});
    EXPECT_EQ(Difference(Read(Out(std::string("a.") + type)), Part(10, 16, 60, 32)), 0) << type;
  }
}

TEST_F(CutPlainTest, PixelMarginsCountTheFrameAsRemainder) {
  Put("ChCutA", "1");
  Margins(7, 9, 0, 0);
  flags.FixW = 20;
  flags.FixH = 30;
  form.CmbOutType.SetText("png");
  Cut({Make("a.png", 100, 80)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Part(7, 9, 73, 41)), 0);
}

TEST_F(CutPlainTest, WithTheAdvancedOptionsTheFixedSizeCounts) {
  Put("ChCutA", "1");
  Margins(7, 9, 0, 0);
  options.Load();
  options.TSmalS[2].SetText("30");
  options.TSmalS[3].SetText("25");
  form.CmbOutType.SetText("png");
  Cut({Make("a.png", 100, 80)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Difference(Read(Out("a.png")), Part(7, 9, 30, 25)), 0);
}

TEST_F(CutPlainTest, OutsideIsWhite) {
  Put("ChCutA", "1");
  Margins(90, 70, 0, 0);
  options.Load();
  options.TSmalS[2].SetText("20");
  options.TSmalS[3].SetText("15");
  form.CmbOutType.SetText("png");
  Cut({Make("a.png", 100, 80)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  const Picture wanted =
      Painted(20, 15, [](int x, int y) { return x < 10 && y < 10 ? Slope(x + 90, y + 70) : kWhitePixel; });
  EXPECT_EQ(Difference(Read(Out("a.png")), wanted), 0);
}

// A frame that holds no pixel of the picture would be a white rectangle, with ChOver in place of the picture.
class OutsideTest : public CutPlainTest {
 protected:
  void SetUp() override {
    CutPlainTest::SetUp();
    Put("ChCutA", "1");
    Margins(100, 70, 0, 0);
    options.Load();
    options.TSmalS[2].SetText("20");
    options.TSmalS[3].SetText("15");
  }
  void ExpectNothing(const std::string& path) {
    const std::string before = world.folder.Read("in/a.png");
    Cut({path});
    EXPECT_EQ(Totals().none, 1u);
    EXPECT_EQ(Why(1), "裁剪框整个在图片之外（左 100，上 70，图片 100x80），请检查裁剪参数");
    EXPECT_EQ(world.folder.Read("in/a.png"), before);
    EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.png"});
  }
};

TEST_F(OutsideTest, AFrameBesideThePictureLeavesTheOriginal) {
  Put("ChOver", "1");
  ExpectNothing(Make("a.png", 100, 80));
}

TEST_F(OutsideTest, AFrameBesideThePictureGivesNoOutput) {
  form.CmbOutType.SetText("png");
  ExpectNothing(Make("a.png", 100, 80));
  EXPECT_TRUE(OutNames().empty());
}

TEST_F(OutsideTest, EffectsMakeNoDifference) {
  Put("ChOver", "1");
  options.ChInvert.Set(true);
  ExpectNothing(Make("a.png", 100, 80));
}

TEST_F(OutsideTest, NorDoesTheResolution) {
  Put("ChOver", "1");
  Put("FBaseOpt.CmbDPI", "72");
  ExpectNothing(Make("a.png", 100, 80));
}

// The frame counts in the picture as it is turned.
TEST_F(OutsideTest, ThePictureIsMeasuredAsItIsTurned) {
  Put("ChOver", "1");
  Option("CmbRotate", "5");
  options.TAngle.SetText("90");
  Margins(79, 99, 0, 0);
  Cut({Make("a.png", 100, 80)});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Read(In("a.png")).At(1, 1), kWhitePixel);
  Margins(80, 0, 0, 0);
  Make("a.png", 100, 80);
  Cut();
  EXPECT_EQ(Why(1), "裁剪框整个在图片之外（左 80，上 0，图片 80x100），请检查裁剪参数");
}

TEST_F(CutPlainTest, AnEmptyRectangleFailsTheFile) {
  Margins(50, 0, 50, 0);
  Cut({Make("a.png"), Make("b.jpg")});
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 2u);
  EXPECT_FALSE(Why(1).empty());
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：0"), 1);
}

TEST_F(CutPlainTest, TheResolutionIsStamped) {
  const std::string path = Make("a.jpg", Painted(50, 40, Slope), 72);
  Cut({path});
  EXPECT_EQ(DpiOf(Out("a.jpg")), 300);
  flags.OutDpi = 0;
  Cut();
  EXPECT_EQ(DpiOf(Out("a.jpg")), 72);
}

TEST_F(CutPlainTest, QualityIsThatOfTQuality) {
  const std::string path = Make("a.bmp", Painted(200, 200, [](int x, int y) {
                                  return Pixel{(x * y * 7) % 256, (x * 31 + y * 17) % 256, (x * 13) % 256};
                                }));
  form.TQuality.SetText("95");
  Cut({path});
  const std::uint64_t fine = world.files.Stat(Out("a.jpg"))->size;
  form.TQuality.SetText("35");
  Cut();
  EXPECT_LT(world.files.Stat(Out("a.jpg"))->size * 2, fine);
}

TEST_F(CutPlainTest, KeptFolders) {
  Put("ChKeepDir", "1");
  const std::string deep = Make("deep/er/a.jpg");
  Cut({deep});
  EXPECT_EQ(recorder.done[0].output, outFolder + world.folder.Path("in/deep/er") + "/a.jpg");
  EXPECT_TRUE(world.files.IsFile(recorder.done[0].output));
}

TEST_F(CutPlainTest, AFolderThatCannotBeMadeFailsTheFile) {
  Put("ChKeepDir", "1");
  const std::string path = Make("a.jpg");
  world.faults.Set({.call = host::testing::DiskCall::MakeFolder, .error = EROFS, .pathHolds = "out"});
  Cut({path});
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(Why(1).find("无法创建输出文件夹："), 0u) << Why(1);
}

TEST_F(CutPlainTest, CaseOfTheExtension) {
  Option("CmbExtCase", "1");
  Cut({Make("a.jpg")});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.JPG"});
  Put("FBaseOpt.CmbExtCase", "2");
  Put("ChOver", "1");
  program.files.Clear();
  Cut({Make("B.PNG")});
  EXPECT_EQ(recorder.done.back().output, In("B.png"));
}

TEST_F(CutPlainTest, AnOverwrittenSourceIsRemovedEvenIfTheCaseOfItsExtensionChanges) {
  Option("CmbExtCase", "2");
  Put("ChOver", "1");
  Cut({Make("B.PNG")});
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"B.png"});
  EXPECT_TRUE(world.folder.Exists("data/Trash/files/B.PNG"));
}

TEST_F(CutPlainTest, AForeignFileUnderTheNewNameIsKept) {
  Option("CmbExtCase", "2");
  Put("ChOver", "1");
  const std::string foreign = Make("B.png", 8, 8);
  const std::string before = world.folder.Read("in/B.png");
  Cut({Make("B.PNG", 40, 30)});
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + foreign + "，已跳过");
  EXPECT_EQ(world.folder.Read("in/B.png"), before);
  EXPECT_TRUE(world.folder.Exists("in/B.PNG"));
}

// Nothing is written under the name of the whole.
TEST_F(CutPlainTest, ASplitPictureMindsTheNamesOfItsPiecesAlone) {
  Option("CmbExtCase", "2");
  Option("ChSplit", "1");
  Put("FBaseOpt.TSmalS(4)", "2");
  Put("FBaseOpt.TSmalS(5)", "1");
  Put("ChOver", "1");
  Make("B.png", 8, 8);
  const std::string source = Make("B.PNG", 40, 30);
  Cut({source});
  EXPECT_EQ(world.folder.Names("in"), (std::vector<std::string>{"B.PNG", "B.png", "B_01.png", "B_02.png"}));
  program.files.Clear();
  const std::string piece = world.folder.Read("in/B_01.png");
  Cut({source});
  EXPECT_EQ(Why(1), "会覆盖另一个文件 " + In("B_01.png") + "，已跳过");
  EXPECT_EQ(world.folder.Read("in/B_01.png"), piece);
}

TEST_F(CutPlainTest, ExtensionCaseCountsOnlyWithTheWindowLoaded) {
  options.CmbExtCase.Select(1);
  Cut({Make("a.jpg")});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.jpg"});
}

TEST_F(CutPlainTest, OverTheSource) {
  Put("ChOver", "1");
  Margins(10, 20, 30, 40);
  for (const char* name : {"a.jpg", "b.png", "c.gif", "d.bmp", "e.tif", "f.JPEG", "g.jfif"}) {
    program.files.Clear();
    const std::string path = Make(name, 100, 80);
    std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    const auto names = world.folder.Names("in");
    Cut({path});
    ASSERT_EQ(Totals().written, 1u) << name << Why(1);
    EXPECT_EQ(recorder.done.back().output, path);
    const Picture cut = Read(path);
    EXPECT_EQ(cut.width, 60) << name;
    EXPECT_EQ(cut.height, 32) << name;
    EXPECT_EQ(world.folder.Names("in"), names) << "nothing is left beside the source";
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  }
  EXPECT_TRUE(OutNames().empty());
}

// Photographs sorted by their times stay in their order.
TEST_F(CutPlainTest, AnOverwrittenPictureKeepsItsTimes) {
  Put("ChOver", "1");
  Margins(10, 20, 30, 40);
  const auto taken = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
  for (const char* grey : {"0", "1"}) {
    Option("ChToGray", grey);
    for (const char* name : {"a.jpg", "b.png", "c.gif", "d.bmp", "e.tif"}) {
      program.files.Clear();
      const std::string path = Make(name, 100, 80);
      std::filesystem::last_write_time(path, taken);
      const auto before = std::filesystem::last_write_time(path);
      Cut({path});
      ASSERT_EQ(Totals().written, 1u) << name << Why(1);
      EXPECT_EQ(SizeOf(path), (base::Size{60, 32}));
      EXPECT_EQ(std::filesystem::last_write_time(path), before) << name << grey;
    }
  }
}

TEST_F(CutPlainTest, ASourceThatCannotBeReplacedStaysWhole) {
  Put("ChOver", "1");
  const std::string path = Make("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::Rename, .error = EIO, .pathHolds = "in/"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_EQ(world.folder.Names("in"), std::vector<std::string>{"a.jpg"});
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(1).empty());
}

TEST_F(CutPlainTest, TheOutputFolderMayBeThatOfTheSource) {
  const std::string path = Make("a.jpg", 100, 80);
  const std::string before = world.folder.Read("in/a.jpg");
  Put("LOutDir", world.folder.Path("in"));
  Margins(0, 0, 50, 0);
  Cut({path});
  EXPECT_EQ(SizeOf(path), (base::Size{50, 80}));
  EXPECT_EQ(world.folder.Read("in/a.jpg.bak"), before);
  EXPECT_EQ(Totals().written, 1u);
}

TEST_F(CutPlainTest, AGifThatCannotBeCutByFileIsCutInMemory) {
  const std::string path = Make("a.gif", Painted(40, 30, [](int x, int) {
                                  return x < 20 ? Pixel{255, 0, 0} : Pixel{0, 0, 255};
                                }));
  Margins(0, 0, 50, 0);
  form.CmbOutType.SetText("png");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::OpenNew, .error = EIO, .pathHolds = "app/.Tmp.png"});
  Cut();
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(Totals().written, 1u) << Why(1);
  EXPECT_EQ(Difference(Read(Out("a.png")), Painted(20, 30, [](int, int) { return Pixel{255, 0, 0}; })), 0);
}

TEST_F(CutPlainTest, ALongListContinuesAfterABadFile) {
  const std::string bad = Make("b.jpg");
  List({Make("a.jpg"), bad, Make("c.jpg")});
  world.folder.Write("in/b.jpg", world.folder.Read("in/b.jpg").substr(0, 400));
  Cut();
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.jpg", "c.jpg"}));
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(Why(2).empty());
  EXPECT_EQ(world.boxes.Count("处理完毕！失败：0"), 1) << "only the effects count failures";
}

TEST_F(CutPlainTest, FullDiskRetries) {
  List({Make("a.jpg")});
  world.faults.Set({.call = host::testing::DiskCall::Write, .error = ENOSPC, .pathHolds = "out/"});
  world.boxes.Answer("盘空间不足，请释放空间后重试保存！", Reply::Retry);
  Cut();
  EXPECT_EQ(world.faults.Fired(), 1);
  ASSERT_EQ(world.boxes.Count("/盘空间不足，请释放空间后重试保存！"), 1);
  EXPECT_EQ(world.boxes.All()[0].box.type, 21);
  EXPECT_EQ(Totals().written, 1u);
  EXPECT_EQ(SizeOf(Out("a.jpg")), (base::Size{100, 80}));
}

TEST_F(CutPlainTest, FullDiskCancelEndsTheRun) {
  List({Make("a.jpg"), Make("b.jpg")});
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "out/"});
  world.boxes.Answer("盘空间不足", Reply::Cancel);
  Cut();
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 1);
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_TRUE(Totals().stopped);
  EXPECT_EQ(world.boxes.Count("处理完毕！"), 1);
}

TEST_F(CutPlainTest, FullDiskWhileASourceIsReplaced) {
  Put("ChOver", "1");
  const std::string path = Make("a.jpg");
  const std::string before = world.folder.Read("in/a.jpg");
  List({path});
  world.faults.Set({.call = host::testing::DiskCall::Write,
                    .error = ENOSPC,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "in/"});
  world.boxes.Answer("盘空间不足", Reply::Retry, 2);
  world.boxes.Answer("盘空间不足", Reply::Cancel);
  Cut();
  EXPECT_EQ(world.boxes.Count("盘空间不足"), 3);
  EXPECT_EQ(world.folder.Read("in/a.jpg"), before);
  EXPECT_TRUE(Totals().stopped);
}

TEST_F(CutPlainTest, ARunPrefetchesWithoutChangingAnything) {
  std::vector<std::string> paths;
  for (int i = 0; i < 30; ++i) {
    const int width = 60 + i;
    paths.push_back(Make("p" + std::to_string(100 + i) + ".jpg", width, 50));
  }
  Margins(10, 10, 10, 10);
  Cut(paths);
  EXPECT_EQ(Totals().written, 30u);
  for (int i = 0; i < 30; ++i) {
    const base::Size size = SizeOf(Out("p" + std::to_string(100 + i) + ".jpg"));
    EXPECT_EQ(size.height, 40);
    EXPECT_NEAR(size.width, (60 + i) * 0.8, 0.6);
  }
}

// The source changes between its listing and its turn: the prefetched result must not be used.
TEST_F(CutPlainTest, ASourceThatChangedMeanwhileIsCutAsItIsNow) {
  List({Make("a.jpg"), Make("b.jpg", 100, 80)});
  Margins(50, 0, 0, 0);
  recorder.onFileDone = [&](const FileResult& file) {
    if (file.row == 1) Make("b.jpg", Painted(60, 40, [](int, int) { return Pixel{10, 200, 30}; }));
  };
  Cut();
  const Picture cut = Read(Out("b.jpg"));
  EXPECT_EQ(cut.width, 30);
  EXPECT_EQ(cut.height, 40);
  EXPECT_NEAR(cut.At(10, 10).green, 200, 6);
}

// The first file of a folder puts the folder on the list, so that the rest of it is passed over at once.
TEST_F(CutPlainTest, SkippedFoldersAreNamed) {
  Option("ChOmitFolds", "1");
  Cut({Make("x/1.bmp"), Make("x/2.bmp"), Make("y/3.bmp")});
  EXPECT_EQ(Totals().written, 2u);
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_EQ(program.files.Row(1).result, Result::Skipped);
  EXPECT_EQ(Why(2), "所在文件夹已有图片处理过，按“忽略已处理过的文件夹”跳过");
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), In("x") + "\r\n" + In("y") + "\r\n");
  EXPECT_EQ(flags.OmittedFolders, "");
  Cut();
  EXPECT_EQ(Totals().skipped, 3u);
  Put("FBaseOpt.ChOmitFolds", "0");
  Cut();
  EXPECT_EQ(Totals().written, 3u);
}

}  // namespace
}  // namespace quillon::job
