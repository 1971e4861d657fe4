// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "helpers/helper_process.h"
#include "helpers/pictures.h"
#include "helpers/until.h"

namespace quillon::helpers {
namespace {

class QxBackImgTest : public ::testing::Test {
 protected:
  QxBackImgTest() { testing::Save(picture, testing::Waves(60, 40), 300); }
  ~QxBackImgTest() override {
    if (server > 0) {
      kill(server, SIGKILL);
      folder.Wait(server);
    }
  }

  bool Answered() {
    return testing::Until([this] { return folder.Get("QxBackImg") == "1"; });
  }
  bool StartLoading(const std::string& file) {
    folder.Set("QxBackImg", "");
    server = folder.Start("QxBackImg", {"Quillon\tQxBackImg\t" + file + "\tload|" + file + "|0"});
    return Answered();
  }
  bool Send(const std::string& command) {
    folder.Set("QxBackImg", command);
    return Answered();
  }

  HelperFolder folder;
  std::string picture = folder.Path("a b.png");
  pid_t server = -1;
};

TEST_F(QxBackImgTest, LoadsAndCuts) {
  ASSERT_TRUE(StartLoading(picture));
  EXPECT_GT(folder.Read("ClipBoard.lane").size(), 60U * 40 * 3);
  testing::Save(folder.Path("Tmp.jpg"), testing::Waves(60, 40));
  const std::string out = folder.Path("out.png");
  ASSERT_TRUE(Send("cut|" + folder.Path("Tmp.jpg") + "|10|5.4|20|30|" + out + "|80"));
  const testing::Pixels cut = testing::Load(out);
  EXPECT_EQ(cut.width, 20);
  EXPECT_EQ(cut.height, 30);
  testing::Save(folder.Path("b.png"), testing::Waves(30, 20));
  ASSERT_TRUE(Send("load|" + folder.Path("b.png") + "|0"));
  EXPECT_TRUE(folder.Exists("ClipBoard.lane"));
}

TEST_F(QxBackImgTest, KnowsTheOtherFormsOfItsCommands) {
  ASSERT_TRUE(StartLoading(picture));
  for (const std::string& load : {"0|" + picture + "|load", "0|load|" + picture}) {
    std::filesystem::remove(folder.Path("ClipBoard.lane"));
    ASSERT_TRUE(Send(load));
    EXPECT_TRUE(folder.Exists("ClipBoard.lane")) << load;
  }
  const std::string out = folder.Path("out.png");
  ASSERT_TRUE(Send("80|" + picture + "|cut|10|5|20|30|" + out));
  const testing::Pixels cut = testing::Load(out);
  EXPECT_EQ(cut.width, 20);
  EXPECT_EQ(cut.height, 30);
  EXPECT_EQ(cut.At(0, 0), testing::Waves(60, 40).At(10, 5));
}

TEST_F(QxBackImgTest, AnswersWhatItCannotDo) {
  folder.Write("bad.jpg", "no picture");
  ASSERT_TRUE(StartLoading(folder.Path("bad.jpg")));
  EXPECT_FALSE(folder.Exists("ClipBoard.lane"));
  const std::string out = folder.Write("out.jpg", "old");
  for (const std::string& command :
       {std::string("nonsense"), std::string("|||"), "cut|/none.jpg|1|1|5|5|" + out + "|80",
        "cut|" + picture + "|x|1|5|5|" + out + "|80", "cut|" + picture + "|0|0|0|5|" + out + "|80",
        std::string(100'000, '|')}) {
    ASSERT_TRUE(Send(command)) << command.substr(0, 40);
  }
  ASSERT_TRUE(Send("load|" + picture + "|0"));
  EXPECT_TRUE(folder.Exists("ClipBoard.lane"));
}

TEST_F(QxBackImgTest, ThePictureOfAnEarlierLoadIsNoAnswer) {
  folder.Write("ClipBoard.lane", "an earlier picture");
  ASSERT_TRUE(StartLoading(folder.Path("none.png")));
  EXPECT_FALSE(folder.Exists("ClipBoard.lane"));
}

TEST_F(QxBackImgTest, ServesNoLongerThanItsFolder) {
  ASSERT_TRUE(StartLoading(picture));
  std::filesystem::remove_all(folder.Path());
  EXPECT_EQ(folder.Wait(server).exit, 0);
  server = -1;
}

TEST_F(QxBackImgTest, RefusesACallThatIsNone) {
  EXPECT_EQ(folder.Run("QxBackImg", {}).exit, 1);
  EXPECT_EQ(folder.Run("QxBackImg", {"a\tb"}).exit, 1);
}

}  // namespace
}  // namespace quillon::helpers
