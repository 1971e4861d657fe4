// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/page_counter.h"

#include "job/several_pages.h"
#include "tools/command_lines.h"
#include "tools/tools_fixture.h"

namespace quillon::formats {
namespace {

class PageCounterTest : public tools::ToolsFixture {
 protected:
  PageCounterTest() { WriteApp("QxImgTool.exe", "helper"); }

  job::Program program{world.host};
  PageCounter counter{program};
};

TEST_F(PageCounterTest, CountsFramesAndPagesWithoutAHelper) {
  const std::string gif = world.folder.Write("a.gif", job::RepeatedFrame(tools::TinyPicture(), 7));
  const std::string tif = world.folder.Write("a.tif", job::TwoPages(20, 10));
  EXPECT_EQ(counter.Count(1, gif, 72).count, 7);
  EXPECT_EQ(counter.Count(5, tif, 72).count, 2);
  EXPECT_EQ(counter.Count(5, tif, 72).why, "");
  EXPECT_TRUE(world.shell.Starts().empty());
}

TEST_F(PageCounterTest, NamesWhatIsWrong) {
  const std::string bad = world.folder.Write("a.gif", tools::TinyPicture().substr(0, 15));
  EXPECT_NE(counter.Count(1, bad, 72).why, "");
  EXPECT_NE(counter.Count(1, world.folder.Path("none.gif"), 72).why, "");
}

TEST_F(PageCounterTest, HasTheHelperCountThePagesOfAPdf) {
  Helper("QxImgTool.exe", 1, [this](const std::string&) {
    tools::WriteKey(world.host, "GetPdfPages", "3");
    tools::WriteKey(world.host, "PdfW", "1654");
    tools::WriteKey(world.host, "PdfH", "2339");
  });
  const job::Pages pages = counter.Count(3, "/in/a.pdf", 200);
  EXPECT_EQ(pages.count, 3);
  EXPECT_EQ(pages.first, (base::Size{1654, 2339}));
  EXPECT_EQ(pages.why, "");
  EXPECT_EQ(Started(0), "QxImgTool.exe: " + tools::CountPdfPagesText("/in/a.pdf", world.host.programFolder, 200, 90));
  Helper("QxImgTool.exe", 1);
  EXPECT_EQ(counter.Count(3, "/in/locked.pdf", 72).why, "没有得到 Pdf 的页数，文件可能有密码或已损坏");
}

}  // namespace
}  // namespace quillon::formats
