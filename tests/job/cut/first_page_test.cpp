// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A result of one page never replaces a file of several.
#include "job/cut/first_page.h"

#include <cerrno>
#include <string>
#include <tuple>
#include <unordered_map>

#include "job/cut_fixture.h"
#include "job/several_pages.h"
#include "job/windows/foreseen_list.h"

namespace quillon::job {
namespace {

class FirstPageTest : public CutTest {
 protected:
  void SetUp() override {
    CutTest::SetUp();
    tiff = world.folder.Write("in/a.tif", TwoPages(40, 30));
    gif = Make("b.gif", 40, 30);
    world.folder.Write("in/b.gif", RepeatedFrame(world.folder.Read("in/b.gif"), 12));
    png = Make("c.png", 40, 30);
    world.folder.Write("in/c.png", Animated(world.folder.Read("in/c.png"), 5));
    Margins(25, 0, 0, 0);
  }
  // The reason of the last file that was handled.
  const std::string& LastWhy() const { return recorder.done.back().why; }

  std::string tiff;
  std::string gif;
  std::string png;
};

TEST_F(FirstPageTest, NeverReplacesAFileOfSeveralPages) {
  const std::string before =
      world.folder.Read("in/a.tif") + world.folder.Read("in/b.gif") + world.folder.Read("in/c.png");
  Put("ChOver", "1");
  List({tiff, gif, png});
  Cut();
  EXPECT_EQ(Totals().none, 3u) << Whys();
  EXPECT_EQ(Why(1), "源文件有 2 页，普通裁剪只取第一页，未覆盖；请用模式 5");
  EXPECT_EQ(Why(2), "源文件有 12 帧，普通裁剪只取第一帧，未覆盖；请用模式 1");
  EXPECT_EQ(Why(3), "源文件有 5 帧，普通裁剪只取第一帧，未覆盖；请输出到别的文件夹");
  EXPECT_EQ(world.folder.Read("in/a.tif") + world.folder.Read("in/b.gif") + world.folder.Read("in/c.png"), before);
}

// What the list announces is what the run does, with every combination of the options that decide.
TEST_F(FirstPageTest, TheListForeseesWhatIsRefused) {
  const std::string single = Make("d.tif", 40, 30);
  const std::string photo = Make("e.jpg", 40, 30);
  const std::string upper = world.folder.Write("in/F.TIFF", TwoPages(40, 30));
  ForeseenList foreseen(program);
  for (const auto& [over, split, none] : {std::tuple{"0", "0", 0U}, {"1", "1", 0U}, {"1", "0", 4U}}) {
    SCOPED_TRACE(std::string("ChOver ") + over + " ChSplit " + split);
    Option("ChSplit", split);
    Put("ChOver", over);
    program.files.Clear();
    List({tiff, gif, png, single, photo, upper});
    foreseen.Restart();
    EXPECT_EQ(foreseen.Unread().size(), none > 0 ? 5U : 0U);
    std::unordered_map<std::string, PagesOfFile> found;
    for (const std::string& path : foreseen.Unread()) EXPECT_TRUE(FindPages(world.files, path, found[path]));
    foreseen.Learn(found);
    EXPECT_TRUE(foreseen.Unread().empty());
    foreseen.CountAnew();
    EXPECT_TRUE(foreseen.CountMore(100));
    EXPECT_EQ(foreseen.WithoutFile(), none);
    Cut();
    EXPECT_EQ(Totals().none, foreseen.WithoutFile()) << Whys();
    for (std::size_t row = 0; row < program.files.RowCount() && none > 0; ++row) {
      EXPECT_EQ(foreseen.Of(row)->why, Why(row + 1));
    }
  }
}

TEST_F(FirstPageTest, FindsThePagesOfAFile) {
  PagesOfFile pages;
  EXPECT_TRUE(FindPages(world.files, gif, pages));
  EXPECT_EQ(pages, (PagesOfFile{imaging::Format::Gif, 12}));
  EXPECT_TRUE(FindPages(world.files, Make("e.jpg", 40, 30), pages));
  EXPECT_EQ(pages.count, 1);
  EXPECT_TRUE(FindPages(world.files, world.folder.Write("in/empty.tif", ""), pages));
  EXPECT_EQ(pages.count, 1);
  EXPECT_TRUE(FindPages(world.files, world.folder.Write("in/broken.gif", "GIF89a"), pages));
  EXPECT_EQ(pages.count, 1);
  EXPECT_EQ(FindPages(world.files, In("missing.tif"), pages).GetProblem(), host::Problem::Missing);
}

TEST_F(FirstPageTest, NeitherDoesAConversionOrALargeRun) {
  Put("ChOver", "1");
  for (const char* option : {"ChToGray", "ChToCMYK"}) {
    SCOPED_TRACE(option);
    Option(option, "1");
    List({tiff});
    Cut();
    EXPECT_EQ(LastWhy(), "源文件有 2 页，普通裁剪只取第一页，未覆盖；请用模式 5");
    Option(option, "0");
  }
  Put("CmbOutType", "pdf");
  Cut();
  EXPECT_EQ(LastWhy(), "源文件有 2 页，普通裁剪只取第一页，未覆盖；请用模式 5");
  Put("CmbOutType", "jpg");
  Put("ChBig", "1");
  Put("LInDir", world.folder.Path("in"));
  Cut();
  EXPECT_EQ(Totals().none, 3u) << Whys();
}

TEST_F(FirstPageTest, TheContentDecidesWhateverTheNameSays) {
  const std::string named = world.folder.Write("in/film.jpg", world.folder.Read("in/b.gif"));
  Put("ChOver", "1");
  List({named});
  Cut();
  EXPECT_EQ(Why(1), "源文件有 12 帧，普通裁剪只取第一帧，未覆盖；请用模式 1");
}

TEST_F(FirstPageTest, AFileThatCannotBeCountedIsNotReplaced) {
  Put("ChOver", "1");
  List({tiff});
  const std::string before = world.folder.Read("in/a.tif");
  world.faults.Set({.call = host::testing::DiskCall::OpenRead, .nth = 1, .error = EIO, .pathHolds = "in/a.tif"});
  Cut();
  world.faults.Clear();
  EXPECT_EQ(Totals().none, 1u) << Whys();
  EXPECT_EQ(world.folder.Read("in/a.tif"), before);
}

TEST_F(FirstPageTest, AResultBesideTheSourceIsWrittenAndNoted) {
  Put("CmbOutType", "bmp");
  const std::string single = Make("d.tif", 40, 30);
  List({tiff, gif, png, single});
  Cut();
  ASSERT_EQ(Totals().written, 4u) << Whys();
  EXPECT_EQ(Why(1), "源文件有 2 页，只取第一页");
  EXPECT_EQ(Why(2), "源文件有 12 帧，只取第一帧");
  EXPECT_EQ(Why(3), "源文件有 5 帧，只取第一帧");
  EXPECT_EQ(Why(4), "");
  EXPECT_EQ(SizeOf(Out("a.bmp")), (base::Size{30, 30}));
}

TEST_F(FirstPageTest, PiecesBesideTheSourceAreNoted) {
  Put("ChOver", "1");
  Option("ChSplit", "1");
  const std::string before = world.folder.Read("in/a.tif");
  List({tiff});
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(Why(1), "源文件有 2 页，只取第一页");
  EXPECT_EQ(world.folder.Read("in/a.tif"), before);
}

TEST_F(FirstPageTest, ASinglePageIsReplaced) {
  const std::string single = Make("d.tif", 40, 30);
  Put("ChOver", "1");
  List({single});
  Cut();
  EXPECT_EQ(Totals().written, 1u) << Whys();
  EXPECT_EQ(SizeOf(single), (base::Size{30, 30}));
}

}  // namespace
}  // namespace quillon::job
