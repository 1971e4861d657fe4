// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The run of cut mode 1, with a helper that does what it is called for.
#include "formats/gif/gif_fixture.h"
#include "formats/manual_answer.h"

namespace quillon::formats {
namespace {

using base::Rect;
using base::Size;

TEST_F(GifTest, CutsEveryFrameIntoTheOutputFolder) {
  const std::string film = Film("a.gif");
  const std::string source = world.folder.Read("in/a.gif");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 20, 60, 20}, Tmp())});
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{60, 20}));
  EXPECT_EQ(FramesOf(Out("a.gif")), 3);
  EXPECT_TRUE(world.folder.Read("in/a.gif") == source);
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(recorder.done.at(0).output, Out("a.gif"));
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.gif"});
  EXPECT_EQ(world.boxes.Count("处理完毕！\r\n要打开输出目录吗？"), 1);
  EXPECT_TRUE(AppHas("CutMedia.exe"));
}

// A picture narrower than the fixed size is cut by its margins.
TEST_F(GifTest, TheFixedSizeCountsWithAFixedCutAlone) {
  const std::string film = Film("a.gif");
  Put("ChFixCut", "1");
  PixelMargins(10, 20, 0, 0);
  Run({film});
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(Why(1), "裁剪框的宽或高小于 1 像素（-972x-1570），请检查裁剪参数");
  Put("TFixWH(0)", "30");
  Put("TFixWH(1)", "40");
  PixelMargins(10, 20, 0, 0);
  Click("MenuGifCut");
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 20, 60, 20}, Tmp())});
}

TEST_F(GifTest, CutsByFractionsOfPercent) {
  Put("ChCutA", "0");
  PixelMargins(12.5, 0, 12.5, 25);
  const std::string film = Film("a.gif", 80, 80);
  Run({film});
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 0, 60, 60}, Tmp())});
}

TEST_F(GifTest, RaisesOddSidesUpToTheEdge) {
  const std::string film = Film("a.gif", 101, 80);
  PixelMargins(0, 0, 0, 9);
  Run({film});
  EXPECT_EQ(calls.at(0), CropText(film, {0, 0, 101, 72}, Tmp()));
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{101, 72}));
}

TEST_F(GifTest, ReplacesTheSourceByAFinishedResult) {
  const std::string film = Film("a.gif");
  Put("ChOver", "1");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(SizeOf(film), (Size{60, 20}));
  EXPECT_EQ(FramesOf(film), 3);
  EXPECT_TRUE(world.folder.Read("app/Tmp.gif") == world.folder.Read("in/a.gif"));  // the last result stays
  EXPECT_TRUE(OutNames().empty());
  EXPECT_EQ(world.boxes.Count("处理完毕！"), 1);
  EXPECT_EQ(world.boxes.Count("要打开输出目录吗？"), 0);
}

TEST_F(GifTest, AnOutputInThePlaceOfItsSourceLeavesABackup) {
  const std::string film = Film("a.gif");
  const std::string before = world.folder.Read("in/a.gif");
  Put("LOutDir", world.folder.Path("in"));
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(SizeOf(film), (Size{60, 20})) << Whys();
  EXPECT_TRUE(world.folder.Read("in/a.gif.bak") == before);
}

// Otherwise the second source would be replaced by the result of the first.
TEST_F(GifTest, AResultIsNeverCopiedOverAnotherSource) {
  const std::string first = Film("a.gif");
  const std::string second = Film("b.gif", 90, 70, 4);
  const std::string before = world.folder.Read("in/b.gif");
  fails = second;
  Put("ChOver", "1");
  PixelMargins(10, 20, 30, 40);
  Run({first, second});
  EXPECT_EQ(SizeOf(first), (Size{60, 20}));
  EXPECT_TRUE(world.folder.Read("in/b.gif") == before);
  EXPECT_EQ(Why(2), "CutMedia 没有得到结果，Gif 可能已损坏");
  EXPECT_EQ(Totals().none, 1u);
  EXPECT_FALSE(AppHas("Tmp.gif"));
}

TEST_F(GifTest, AResultWithoutAllFramesIsRefused) {
  const std::string film = Film("a.gif");
  const std::string before = world.folder.Read("in/a.gif");
  const std::string shorter = Film("b.gif", 60, 20, 2);
  const std::string other = Film("c.gif", 60, 22);
  Put("ChOver", "1");
  PixelMargins(10, 20, 30, 40);
  std::string made = world.folder.Read("in/b.gif");
  world.shell.OnStart([&](const auto&) { WriteApp("Tmp.gif", made); });
  Run({film});
  EXPECT_EQ(Why(1), "结果有 2 帧，应为 3 帧");
  made = world.folder.Read("in/c.gif");
  Click("MenuGifCut");
  EXPECT_EQ(Why(1), "结果是 60x22 像素，应为 60x20");
  EXPECT_TRUE(world.folder.Read("in/a.gif") == before);
}

TEST_F(GifTest, KeepsTheFoldersOfSources) {
  const std::string film = Film("sub/a.gif");
  Put("ChKeepDir", "1");
  PixelMargins(0, 0, 0, 0);
  Run({film});
  ASSERT_EQ(Totals().written, 1u) << Whys();
  EXPECT_NE(recorder.done.at(0).output, Out("a.gif"));
  EXPECT_TRUE(recorder.done.at(0).output.ends_with("in/sub/a.gif"));
}

TEST_F(GifTest, TheHighQualityTakesTwoPasses) {
  const std::string film = Film("a.gif");
  formats.fGifCut.Load();
  EXPECT_TRUE(flags.GifOptionsLoaded);
  Put("FGifCut.ChHighGifCut", "1");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(calls, (std::vector<std::string>{PaletteText(film, Palette()),
                                             PaletteCropText(film, Palette(), {10, 20, 60, 20}, Tmp())}));
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{60, 20}));
}

TEST_F(GifTest, OptionsCountOnceTheirWindowWasOpened) {
  const std::string film = Film("a.gif");
  formats.fGifCut.ChHighGifCut.Set(true);
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 20, 60, 20}, Tmp())});
  formats.fGifCut.Show();
  formats.fGifCut.Close();
  EXPECT_FALSE(formats.fGifCut.Visible());
  calls.clear();
  Click("MenuGifCut");
  EXPECT_EQ(calls.size(), 2u);
}

TEST_F(GifTest, ALogoIsRemovedFromTheWholePicture) {
  const std::string film = Film("a.gif");
  formats.fGifCut.Load();
  Put("FGifCut.ChHighGifCut", "1");
  Put("FGifCut.ChNoCutGif", "1");
  PixelMargins(0, 0, 71, 60);
  Run({film});
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[1], PaletteLogoText(film, Palette(), {1, 1, 30, 20}, Tmp()));
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{100, 80})) << Whys();
  EXPECT_EQ(FramesOf(Out("a.gif")), 3);
}

TEST_F(GifTest, ThePreviewAnnouncesTheWholePictureIfALogoIsRemoved) {
  const std::string film = Film("a.gif");
  program.ShowInPreview(film);
  const auto& preview = program.fCutPre.preview;
  formats.fGifCut.Load();
  Put("FGifCut.ChNoCutGif", "1");
  for (const auto& [margin, text] : {std::pair{"2", "50"}, {"3", "40"}})
    Put("TCutValue(" + std::string(margin) + ")", text);
  EXPECT_EQ(preview.Result()->outcome.size, (Size{50, 40})) << "without the high quality it is a cut";
  Put("FGifCut.ChHighGifCut", "1");
  EXPECT_EQ(preview.Result()->outcome.size, (Size{100, 80}));
  EXPECT_EQ(preview.Result()->cut.width, 50) << "the frame around the logo stays";
  EXPECT_EQ(preview.Result()->notice, "");
  Put("TCutValue(2)", "100");
  EXPECT_EQ(preview.Result()->outcome.why, "请在预览中框选要去掉的图标");
  Put("FGifCut.ChHighGifCut", "0");
  Put("TCutValue(2)", "50");
  EXPECT_EQ(preview.Result()->outcome.size, (Size{50, 40}));
}

TEST_F(GifTest, ALogoMustBeFramedFirst) {
  const std::string film = Film("a.gif");
  formats.fGifCut.Load();
  program.ShowInPreview(film);
  Put("FGifCut.ChHighGifCut", "1");
  Put("FGifCut.ChNoCutGif", "1");
  for (const char* side : {"TCutValue(0)", "TCutValue(1)"}) EXPECT_EQ(Value(side), "1");
  EXPECT_EQ(Value("TCutValue(2)"), "100");
  EXPECT_EQ(Value("TCutValue(3)"), "80");
  Run({film});
  EXPECT_EQ(Why(1), "请在预览中框选要去掉的图标");
  EXPECT_TRUE(calls.empty());
  Put("FGifCut.ChNoCutGif", "0");
  EXPECT_EQ(Value("TCutValue(0)"), "1");
  EXPECT_EQ(Value("TCutValue(1)"), "1");
  EXPECT_EQ(Value("TCutValue(2)"), "80");
  EXPECT_EQ(Value("TCutValue(3)"), "72");
}

// A margin in per cent is at most 90, so what the box sets would be a region nobody has framed.
TEST_F(GifTest, ALogoMustBeFramedInPerCentToo) {
  const std::string film = Film("a.gif");
  const std::string bytes = world.folder.Read("in/a.gif");
  formats.fGifCut.Load();
  Put("ChCutA", "0");
  Put("ChOver", "1");
  Put("FGifCut.ChHighGifCut", "1");
  Put("FGifCut.ChNoCutGif", "1");
  Run({film});
  EXPECT_EQ(Why(1), "请在预览中框选要去掉的图标");
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(world.folder.Read("in/a.gif") == bytes);
  Put("TCutValue(2)", "40");
  Put("TCutValue(3)", "40");
  Click("MenuGifCut");
  EXPECT_EQ(calls.size(), 2u) << Whys();
}

TEST_F(GifTest, APictureOfAnotherKindStaysAsItIs) {
  const std::string film = Film("a.gif");
  List({film});
  Make("b.jpg");
  const std::string jpeg = world.folder.Read("in/b.jpg");
  world.folder.Write("in/a.gif", jpeg);
  Put("ChOver", "1");
  PixelMargins(10, 20, 30, 40);
  Click("MenuGifCut");
  EXPECT_EQ(Why(1), "文件内容不是 gif，本模式只裁动态Gif");
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(world.folder.Read("in/a.gif") == jpeg);
}

TEST_F(GifTest, WithoutTheHighQualityALogoStays) {
  const std::string film = Film("a.gif");
  formats.fGifCut.Load();
  Put("FGifCut.ChNoCutGif", "1");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 20, 60, 20}, Tmp())});
}

TEST_F(GifTest, ListsFilesOfSeveralFramesAndNamesDamagedOnes) {
  const std::string film = Film("a.gif", 100, 80, 12);
  const std::string still = Make("b.gif");
  Film("c.gif");
  const std::string cutOff = world.folder.Write("in/c.gif", world.folder.Read("in/c.gif").substr(0, 100));
  const std::string jpeg = Make("d.jpg");
  const std::string called = world.folder.Write("in/d.gif", world.folder.Read("in/d.jpg"));
  List({film, still, cutOff, called});
  ASSERT_EQ(program.files.RowCount(), 1u);
  EXPECT_EQ(program.files.Cell(0, 6), "12");
  EXPECT_EQ(form.MSF.Headers().at(6), "Gif帧数");
  ASSERT_EQ(recorder.notListed.size(), 2u) << Whys();
  EXPECT_EQ(recorder.notListed[0].first, cutOff);
  EXPECT_FALSE(recorder.notListed[0].second.empty());
  EXPECT_EQ(recorder.notListed[1], std::pair(called, std::string("内容不是 gif，只是用了它的扩展名")));
  ASSERT_EQ(recorder.filteredOut.size(), 1u);
  EXPECT_EQ(recorder.filteredOut[0], std::pair(still, std::string("只有一帧，没有加入列表")));
}

TEST_F(GifTest, AFileThatWasDamagedSinceIsNamedAndTheRunGoesOn) {
  const std::string first = Film("a.gif");
  const std::string second = Film("b.gif");
  PixelMargins(10, 20, 30, 40);
  List({first, second});
  world.folder.Write("in/a.gif", "no gif at all");
  Click("MenuGifCut");
  EXPECT_FALSE(Why(1).empty());
  EXPECT_EQ(world.folder.Read("in/a.gif"), "no gif at all");
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(OutNames(), std::vector<std::string>{"b.gif"});
}

TEST_F(GifTest, AFolderIsCutWithoutAList) {
  Film("a.gif");
  Film("sub/b.gif");
  Make("c.jpg");
  Put("LInDir", world.folder.Path("in"));
  Put("ChSubFold", "1");
  Put("ChBig", "1");
  PixelMargins(10, 20, 30, 40);
  Click("MenuGifCut");
  EXPECT_EQ(OutNames(), (std::vector<std::string>{"a.gif", "b.gif"})) << Whys();
  EXPECT_EQ(Totals().written, 2u);
}

TEST_F(GifTest, ANameThatAnotherSourceHasIsNotTaken) {
  const std::string film = Film("a.gif");
  const std::string other = world.folder.Write("out/a.gif", world.folder.Read("in/a.gif"));
  const std::string before = world.folder.Read("out/a.gif");
  PixelMargins(10, 20, 30, 40);
  Run({film, other});
  EXPECT_TRUE(world.folder.Read("out/a.gif.bak") == before);  // replaced by its own cut alone
  EXPECT_EQ(SizeOf(Out("a.gif")), (Size{60, 20}));
  EXPECT_NE(Why(1).find("会覆盖另一个文件"), std::string::npos) << Whys();
}

TEST_F(GifTest, AnUpdateMustBeInstalledFirst) {
  flags.UpdatePending = true;
  Run({Film("a.gif")});
  EXPECT_EQ(world.boxes.Count("请先更新再行使用！"), 1);
  EXPECT_TRUE(calls.empty());
  EXPECT_FALSE(Enabled("MenuGifCut"));
}

TEST_F(GifTest, OptionsOfOtherModesChangeNothing) {
  const std::string film = Film("a.gif");
  options.Load();
  options.CmbRotate.Select(1);
  options.ChZoomAndCut.Set(true);
  options.ChAddBoard.Set(true);
  options.CmbExtCase.Select(1);
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {10, 20, 60, 20}, Tmp())});
  EXPECT_EQ(OutNames(), std::vector<std::string>{"a.gif"});
}

TEST_F(GifTest, TheWindowIsHiddenInOtherModes) {
  Click("MenuGifCutOps");
  EXPECT_TRUE(formats.fGifCut.Visible());
  Put("CmbCutMode", "0");
  EXPECT_FALSE(formats.fGifCut.Visible());
  EXPECT_EQ(form.MSF.Headers().at(6), "新大小/kb");
}

// --- The manual frame

TEST_F(GifTest, TheUserPlacesTheFrame) {
  ManualAnswer frame(program);
  flags.ManualCutMode = true;
  const std::string film = Film("a.gif");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_EQ(frame.asked, std::vector<std::string>{film});
  EXPECT_EQ(frame.whyNotTurned, "动态Gif的每一帧都要裁，不能旋转或扩边");
  EXPECT_EQ(frame.rests, 1);
  EXPECT_EQ(calls, std::vector<std::string>{CropText(film, {40, 20, 30, 20}, Tmp())});
}

TEST_F(GifTest, APictureThatIsNotCutIsCopied) {
  ManualAnswer frame(program);
  frame.skip = true;
  flags.ManualCutMode = true;
  const std::string film = Film("a.gif");
  PixelMargins(10, 20, 30, 40);
  Run({film});
  EXPECT_TRUE(calls.empty());
  EXPECT_TRUE(world.folder.Read("out/a.gif") == world.folder.Read("in/a.gif"));
  EXPECT_EQ(Totals().written, 1u) << Whys();
}

TEST_F(GifTest, WithChOverAPictureThatIsNotCutStays) {
  ManualAnswer frame(program);
  frame.skip = true;
  flags.ManualCutMode = true;
  Put("ChOver", "1");
  const std::string film = Film("a.gif");
  const std::string before = world.folder.Read("in/a.gif");
  Run({film});
  EXPECT_TRUE(world.folder.Read("in/a.gif") == before);
  EXPECT_EQ(Totals().skipped, 1u);
  EXPECT_EQ(Why(1), "按“本图不裁剪”保留原文件");
}

}  // namespace
}  // namespace quillon::formats
