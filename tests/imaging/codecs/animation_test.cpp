// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/animation.h"

#include <gtest/gtest.h>

#include "imaging/pictures.h"
#include "imaging/pixels/picture.h"

namespace quillon::imaging::testing {
namespace {

class AnimationTest : public ServicesTest {
 protected:
  std::string Png(const std::string& name, const Sheet& sheet) {
    auto data = std::make_unique<ImageData>();
    data->picture.pixels = ToVips(sheet);
    EXPECT_TRUE(services.SaveImageToPngFile(Image(std::move(data)), Path(name)));
    return Path(name);
  }

  Status Write(const std::vector<Frame>& frames, base::Size canvas) {
    reported.clear();
    return world.files.Save(Path("out.gif"), [&](host::Draft& draft) {
      return WriteAnimation(
          world.files, frames, canvas, {}, [&](int done) { reported.push_back(done); }, draft);
    });
  }

  vips::VImage Film() { return vips::VImage::gifload(Path("out.gif").c_str(), vips::VImage::option()->set("n", -1)); }

  std::vector<int> reported;
};

TEST_F(AnimationTest, HasEveryFrameWithItsTimeAndReportsProgress) {
  const std::vector<Frame> frames = {{.path = Png("1.png", Plain(6, 4, {255, 0, 0})), .milliseconds = 200},
                                     {.path = Png("2.png", Plain(6, 4, {0, 255, 0})), .milliseconds = 50},
                                     {.path = Png("3.png", Plain(6, 4, {0, 0, 255})), .milliseconds = 1000}};
  ASSERT_TRUE(Write(frames, {6, 4}));
  const vips::VImage film = Film();
  EXPECT_EQ(film.get_int("n-pages"), 3);
  EXPECT_EQ(film.get_int("page-height"), 4);
  EXPECT_EQ(film.get_array_int("delay"), (std::vector<int>{200, 50, 1000}));
  EXPECT_EQ(film.get_int("loop"), 0);
  const Sheet shown = FromVips(film);
  EXPECT_EQ(shown.Pixel(1, 1), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(shown.Pixel(1, 5), (std::vector<int>{0, 255, 0, 255}));
  EXPECT_EQ(shown.Pixel(1, 9), (std::vector<int>{0, 0, 255, 255}));
  EXPECT_EQ(reported, (std::vector<int>{0, 1, 2, 3}));
}

TEST_F(AnimationTest, LaysAFrameAtItsPlaceOnNothing) {
  ASSERT_TRUE(Write({{.path = Png("1.png", Plain(2, 2, {255, 0, 0})), .left = 3, .top = 1}}, {6, 4}));
  const Sheet shown = FromVips(Film());
  ASSERT_EQ(shown.bands, 4);
  EXPECT_EQ(shown.Pixel(3, 1), (std::vector<int>{255, 0, 0, 255}));
  EXPECT_EQ(shown.Pixel(2, 1)[3], 0);
  EXPECT_EQ(shown.Pixel(3, 3)[3], 0);
}

TEST_F(AnimationTest, FailsWithoutAFileIfAFrameIsMissingOrDamaged) {
  const std::string good = Png("1.png", Plain(6, 4, {255, 0, 0}));
  EXPECT_EQ(Write({{.path = good}, {.path = Path("none.png")}}, {6, 4}).GetProblem(), host::Problem::Missing);
  world.folder.Write("bad.png", world.folder.Read("1.png").substr(0, 60));
  EXPECT_FALSE(Write({{.path = good}, {.path = Path("bad.png")}}, {6, 4}));
  EXPECT_FALSE(Write({}, {6, 4}));
  EXPECT_FALSE(Write({{.path = good}}, {0, 4}));
  EXPECT_EQ(Write({{.path = good}}, {70000, 4}).GetProblem(), host::Problem::TooLarge);
  EXPECT_FALSE(world.folder.Exists("out.gif"));
}

}  // namespace
}  // namespace quillon::imaging::testing
