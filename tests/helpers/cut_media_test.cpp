// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/runtime/child.h"
#include "host/testing/small_disk.h"

namespace quillon::helpers {
namespace {

TEST(CutMedia, CutsAFile) {
  const HelperFolder folder;
  const std::string source = folder.Path("a b%d[1].png");
  const std::string target = folder.Path("c d%d.png");
  testing::Save(source, testing::Waves(60, 40));
  const Ran ran =
      folder.Run("CutMedia", {"-i \"" + source + "\" -vf crop=x=10:y=5:w=20:h=30 -y -q:v 0 \"" + target + "\""});
  ASSERT_EQ(ran.exit, 0) << ran.err;
  const testing::Pixels cut = testing::Load(target);
  EXPECT_EQ(cut.width, 20);
  EXPECT_EQ(cut.height, 30);
  EXPECT_EQ(cut.At(0, 0), testing::Waves(60, 40).At(10, 5));
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"a b%d[1].png", "c d%d.png"}));
}

TEST(CutMedia, UsesAPaletteOfItsOwn) {
  const HelperFolder folder;
  const std::string source = folder.Path("a.gif");
  const std::string palette = folder.Path("paletten.png");
  const std::string target = folder.Path("b.gif");
  ASSERT_TRUE(RunProgram({"ffmpeg", "-f", "lavfi", "-i", "testsrc=duration=2:size=60x40:rate=10", source}));
  ASSERT_EQ(
      folder
          .Run("CutMedia", {"-i \"" + source + "\" -vf \"fps=2,scale=-1:-1::flags=lanczos,palettegen\" -y -q:v 0 \"" +
                            palette + "\""})
          .exit,
      0);
  const Ran ran = folder.Run(
      "CutMedia", {"-i \"" + source + "\" -i \"" + palette +
                   "\" -filter_complex \"crop=x=1:y=2:w=30:h=20,scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse\"  -y "
                   "-q:v 0 \"" +
                   target + "\""});
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(testing::Load(target).width, 30);
}

// A gif of two frames of 4 x 2 pixels with a table of two colours, which shows them three times, the second one for 99
// hundredths of a second; the second frame covers the right half alone.
std::string TwoFrames() {
  using std::literals::string_literals::operator""s;
  return "GIF89a\4\0\2\0\x80\0\0"s + "\1\2\3\xF1\xF2\xF3" + "!\xFF\x0BNETSCAPE2.0\3\1\3\0\0"s +
         "!\xF9\4\0\x05\0\0\0,\0\0\0\0\4\0\2\0\0\2\5\x44\x88\x30\x60\x50\0"s +
         "!\xF9\4\0\x63\0\0\0,\2\0\0\0\2\0\2\0\0\2\3\x4C\x88\x14\0;"s;
}

TEST(CutMedia, CutsTheFramesOfAGif) {
  using std::literals::string_literals::operator""s;
  const HelperFolder folder;
  const std::string source = folder.Write("a b.gif", TwoFrames());
  const std::string target = folder.Path("out.gif");
  // The palette need not exist, because the colours stay.
  for (const std::string& words :
       {" -vf crop=x=1:y=0:w=2:h=2 -y -q:v 0 \""s,
        " -i \"/none/paletten.png\" -filter_complex \"crop=x=1:y=0:w=2:h=2,scale=-1:-1:flags=lanczos[x];[x][1:v]"
        "paletteuse\"  -y -q:v 0 \""s}) {
    const Ran ran = folder.Run("CutMedia", {"-i \"" + source + "\"" + words + target + "\""});
    ASSERT_EQ(ran.exit, 0) << ran.err;
    const std::string cut = folder.Read("out.gif");
    EXPECT_TRUE(cut.starts_with("GIF89a\2\0\2\0\x80\0\0\1\2\3\xF1\xF2\xF3!\xFF\x0BNETSCAPE2.0\3\1\3\0\0"s));
    EXPECT_NE(cut.find("!\xF9\4\0\x05\0\0\0,\0\0\0\0\2\0\2\0\0"s), std::string::npos);
    EXPECT_NE(cut.find("!\xF9\4\0\x63\0\0\0,\1\0\0\0\1\0\2\0\0"s), std::string::npos);
    std::filesystem::remove(target);
  }
  EXPECT_EQ(folder.Read("a b.gif"), TwoFrames());
}

TEST(CutMedia, RemovesALogoFromAGif) {
  const HelperFolder folder;
  const std::string source = folder.Write("a.gif", TwoFrames());
  const Ran ran = folder.Run(
      "CutMedia", {"-i \"" + source + "\" -i \"" + folder.Path("paletten.png") +
                   "\" -filter_complex \"delogo=x=1:y=1:w=2:h=1,scale=-1:-1:flags=lanczos[x];[x][1:v]paletteuse\"  "
                   "-y -q:v 0 \"" +
                   folder.Path("out.gif") + "\""});
  ASSERT_EQ(ran.exit, 0) << ran.err;
  EXPECT_TRUE(folder.Read("out.gif").starts_with(TwoFrames().substr(0, 10)));
  EXPECT_EQ(testing::Load(folder.Path("out.gif")).width, 4);
}

TEST(CutMedia, NamesTheFrameThatIsDamaged) {
  const HelperFolder folder;
  const std::string source = folder.Write("a.gif", TwoFrames().substr(0, TwoFrames().size() - 4));
  const std::string target = folder.Write("out.gif", "old");
  const Ran ran =
      folder.Run("CutMedia", {"-i \"" + source + "\" -vf crop=x=1:y=0:w=2:h=2 -y -q:v 0 \"" + target + "\""});
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(ran.err, "CutMedia: GIF 第 2 帧的数据中断，文件不完整\n");
  EXPECT_EQ(folder.Get("CutMedia"), "GIF 第 2 帧的数据中断，文件不完整");
  EXPECT_EQ(folder.Read("out.gif"), "old");
}

// The program asks the user about it.
TEST(CutMedia, ReportsAFullDisk) {
  const HelperFolder folder;
  const host::testing::SmallDisk disk(folder.Path("small"));
  if (!disk.Mounted()) GTEST_SKIP() << "no disk can be mounted here: " << disk.Why();
  const std::string source = folder.Write("a.gif", TwoFrames());
  const std::string picture = folder.Path("a.png");
  testing::Save(picture, testing::Waves(60, 40));
  for (const std::string& path : {source, picture}) {
    folder.Set("CutMedia", "");
    disk.FillUntil(0);
    const std::string target = folder.Path("small/out") + path.substr(path.size() - 4);
    const std::string order = "-i \"" + path + "\" -vf crop=x=1:y=0:w=2:h=2 -y -q:v 0 \"" + target + "\"";
    EXPECT_EQ(folder.Run("CutMedia", {order}).exit, 1);
    EXPECT_EQ(folder.Get("CutMedia"), "FullDisk") << path;
    disk.Free();
  }
  EXPECT_TRUE(disk.Names().empty());
}

TEST(CutMedia, LeavesTheOldResultWhenItFails) {
  const HelperFolder folder;
  const std::string target = folder.Write("b.gif", "old");
  folder.Write("bad.gif", "no gif at all");
  EXPECT_EQ(folder.Run("CutMedia", {"-i \"" + folder.Path("bad.gif") + "\" -y \"" + target + "\""}).exit, 1);
  EXPECT_EQ(folder.Run("CutMedia", {"-i \"" + folder.Path("none.gif") + "\" -y \"" + target + "\""}).exit, 1);
  EXPECT_EQ(folder.Run("CutMedia", {}).exit, 1);
  EXPECT_EQ(folder.Read("b.gif"), "old");
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"b.gif", "bad.gif"}));
}

// A server that would answer is never asked.
TEST(CutMedia, ReadsNothingFromTheNetwork) {
  const int server = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  sockaddr_in address{.sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
  socklen_t size = sizeof address;
  ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(listen(server, 4), 0);
  ASSERT_EQ(getsockname(server, reinterpret_cast<sockaddr*>(&address), &size), 0);
  const std::string port = std::to_string(ntohs(address.sin_port));
  const HelperFolder folder;
  const Ran ran = folder.Run(
      "CutMedia", {"-timeout 2000000 -i http://127.0.0.1:" + port + "/a.gif -y \"" + folder.Path("b.gif") + "\""});
  EXPECT_EQ(ran.exit, 1);
  EXPECT_LT(accept(server, nullptr, nullptr), 0);
  EXPECT_EQ(errno, EAGAIN);
  close(server);
}

// FFmpeg would write there at once.
TEST(CutMedia, RefusesFilesThatItDoesNotPassOn) {
  const HelperFolder folder;
  testing::Save(folder.Path("a.png"), testing::Waves(60, 40));
  const std::string other = folder.Write("other.png", "a user's");
  const std::string input = "-i \"" + folder.Path("a.png") + "\" -y ";
  const std::string end = " \"" + folder.Path("b.png") + "\"";
  for (const std::string& word : {other, std::string("../app/other.png"), "file:" + other,
                                  std::string("./x/../other.png"), std::string("file:../app/other.png")}) {
    const Ran ran = folder.Run("CutMedia", {input + word + end});
    EXPECT_EQ(ran.exit, 1) << word;
    EXPECT_EQ(ran.err, "CutMedia: 参数错误：不能直接读写 " + word + "\n");
    if (word.front() != '/') {
      EXPECT_EQ(folder.Run("CutMedia", {input + word}).exit, 1) << word;
    }
  }
  EXPECT_EQ(folder.Read("other.png"), "a user's");
  EXPECT_EQ(folder.Names(), (std::vector<std::string>{"a.png", "other.png"}));
}

}  // namespace
}  // namespace quillon::helpers
