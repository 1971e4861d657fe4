// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A manual run that was killed is continued where it stopped.
#include <csignal>
#include <set>

#include "cli/program_fixture.h"

namespace quillon::cli {
namespace {

class ManualResumeTest : public ProgramTest {
 protected:
  // A manual cut of the lower half of the pictures in "in".
  std::vector<std::string> Manual(const std::vector<std::string>& answers) const {
    std::vector<std::string> all{"--json",         "--set", "ChCutA=0", "--set",    "TCutValue(3)=50", "--set",
                                 "CmbOutType=bmp", "--out", out,        "--answer", "打开输出目录=No"};
    for (const std::string& answer : answers) all.insert(all.end(), {"--answer", answer});
    all.insert(all.end(),
               {"--open", "FBaseOpt", "--set", "FBaseOpt.ChMamal=1", "--click", "menuNormalCut", "--", "in"});
    return all;
  }
  static std::set<std::string> Asked(const std::string& lines) {
    std::set<std::string> asked;
    for (const Json& dialog : EventsOf(lines, "dialog")) {
      if (dialog.at("kind") == "frame") asked.insert(dialog.at("title").get<std::string>());
    }
    return asked;
  }
  // Drops a last line that was cut off when the process died.
  static std::string WholeLines(const std::string& lines) { return lines.substr(0, lines.rfind('\n') + 1); }
  int HeightOf(const std::string& name) const {
    const std::string bytes = folder.Read("out/" + name);
    return bytes.size() > 22 ? static_cast<unsigned char>(bytes[22]) : 0;
  }
};

TEST_F(ManualResumeTest, AKilledRunForgetsNoDecision) {
  constexpr std::size_t kPictures = 150;
  Pictures(kPictures);
  BatchProcess process(Manual({"/p1.bmp=CmdNotCut"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\",\"source\":\"" + folder.Path("in/p5.bmp")));
  process.Signal(SIGKILL);
  const Ran killed = process.Wait();
  ASSERT_EQ(killed.signal, SIGKILL);
  const std::string lines = WholeLines(killed.out);
  const std::set<std::string> before = Asked(lines);
  ASSERT_LT(before.size(), kPictures);
  ASSERT_EQ(before.count(folder.Path("in/p1.bmp")), 1u);

  BatchProcess again(Manual({"上次的手动裁剪没有做完=Yes"}), folder.Path(), process.TemporaryFolder());
  const Ran ran = again.Wait();
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(EventsOf(ran.out, "file").size(), kPictures);
  const std::set<std::string> after = Asked(ran.out);
  // The run may ask again about the picture at which it was killed, but not about those before it.
  for (const Json& file : EventsOf(lines, "file")) EXPECT_EQ(after.count(file.at("source").get<std::string>()), 0u);
  EXPECT_GE(before.size() + after.size(), kPictures);
  EXPECT_LE(before.size() + after.size(), kPictures + 1);
  const std::string question = EventsOf(ran.out, "box").front().at("text").get<std::string>();
  EXPECT_THAT(question, HasSubstr("要从第 " + std::to_string(kPictures - after.size() + 1) + " 张继续吗？"));
  EXPECT_EQ(HeightOf("p1.bmp"), 30) << "not to be cut";
  EXPECT_EQ(HeightOf("p0.bmp"), 15);
  EXPECT_EQ(HeightOf("p149.bmp"), 15);
}

}  // namespace
}  // namespace quillon::cli
