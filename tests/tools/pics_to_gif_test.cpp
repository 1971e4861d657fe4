// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/pics_to_gif.h"

#include "tools/command_lines.h"
#include "tools/keys.h"
#include "tools/tools_fixture.h"

namespace quillon::tools {
namespace {

class PicsToGifTest : public ToolsFixture {
 protected:
  host::Status Assemble() {
    return PicsToGif(tools, {{"/in/a.jpg", 0, 0, 50}, {"/in/b.jpg", 3, -4, 200}}, {60, 40}, out_,
                     [this](int done) { shown_.push_back(done); });
  }

  const std::string out_ = world.folder.Path("out/a.gif");
  std::vector<int> shown_;
};

TEST_F(PicsToGifTest, ListsTheFramesAndFollowsTheHelper) {
  WriteApp("PicsToAniGif.dll", "twin");
  WriteApp("GifTmp/old.jpg", "of an earlier run");
  world.host.settings.Set("PicsCut", kSection, "PicsToGif", "7");
  Helper("PicsToAniGif.exe", 2, [this](const std::string&) {
    EXPECT_EQ(ReadKey(world.host, "PicsToGif", "PicsCut"), "0");
    EXPECT_EQ(world.folder.Read("app/Gif.txt"), "/in/a.jpg\t0\t0\t50\r\n/in/b.jpg\t3\t-4\t200\r\n");
    EXPECT_TRUE(AppHas("GifTmp"));
    EXPECT_FALSE(AppHas("GifTmp/old.jpg"));
    WriteKey(world.host, "PicsToGif", "2", "PicsCut");
    world.folder.Write("out/a.gif", TinyPicture());
  });
  const host::Status made = Assemble();
  EXPECT_TRUE(made) << made.Why();
  EXPECT_EQ(Started(0), "PicsToAniGif.exe: " + GifText(tools.App(), {60, 40}, out_));
  ASSERT_FALSE(shown_.empty());
  EXPECT_EQ(shown_.back(), 2);
  EXPECT_FALSE(AppHas("GifTmp"));
}

TEST_F(PicsToGifTest, FailsIfTheHelperLeavesNoPicture) {
  world.folder.Write("out/a.gif", "of an earlier run");
  WriteApp("PicsToAniGif.dll", "twin");
  Helper("PicsToAniGif.exe", 2);
  EXPECT_EQ(Assemble().Why(), "没有得到动态Gif");
  EXPECT_FALSE(world.folder.Exists("out/a.gif")) << "it is in the trash";
  EXPECT_FALSE(AppHas("GifTmp"));
}

TEST_F(PicsToGifTest, RefusesNamesThatTheListCannotHold) {
  EXPECT_EQ(PicsToGif(tools, {{"/in/a\tb.jpg"}}, {60, 40}, out_, [](int) {}).GetProblem(), host::Problem::Unsupported);
  EXPECT_TRUE(world.shell.Starts().empty());
}

}  // namespace
}  // namespace quillon::tools
