// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "host/posix/posix_disk.h"
#include "imaging/gif/gif_cut.h"
#include "imaging/gif/gif_delogo.h"
#include "imaging/gif/gif_film.h"
#include "imaging/scratch_folder.h"
#include "imaging/services.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using namespace testing;

class GifServices : public ::testing::Test {
 protected:
  std::string Read(const std::string& name) {
    std::string content;
    EXPECT_TRUE(files_.ReadFile(folder_.Path(name), content));
    return content;
  }

  ScratchFolder folder_;
  host::posix::PosixDisk disk_;
  host::Files files_{disk_};
  Services services_{files_, folder_.Path(".")};
  const std::string film_ = FilmBytes(
      Film{.screen = {8, 6}, .tableBits = 2, .frames = {PlainFrame({0, 0, 8, 6}, 1), PlainFrame({1, 1, 4, 4}, 2)}});
};

TEST_F(GifServices, CutsTheFramesOfAFile) {
  const std::string source = folder_.Put("a.gif", film_);
  ASSERT_TRUE(services_.CropFrames({.source = source, .destination = folder_.Path("out.gif"), .rect = {1, 1, 4, 4}}));
  const auto cut = Play(Read("out.gif"));
  ASSERT_TRUE(cut);
  EXPECT_EQ(cut->screen, (base::Size{4, 4}));
  EXPECT_EQ(cut->frames.size(), 2U);
  EXPECT_EQ(Read("a.gif"), film_);
}

TEST_F(GifServices, PaintsOverAPartOfAFile) {
  const std::string source = folder_.Put("a.gif", film_);
  ASSERT_TRUE(
      services_.PaintOverFrames({.source = source, .destination = folder_.Path("out.gif"), .rect = {1, 1, 4, 4}}));
  const auto painted = Play(Read("out.gif"));
  ASSERT_TRUE(painted);
  EXPECT_EQ(painted->frames[1].pixels, painted->frames[0].pixels);
}

TEST_F(GifServices, KeepsABackupOfAReplacedSource) {
  const std::string source = folder_.Put("a.gif", film_);
  ASSERT_TRUE(services_.CropFrames({.source = source, .destination = source, .rect = {1, 1, 4, 4}}));
  EXPECT_EQ(Read("a.gif.bak"), film_);
  EXPECT_LT(Read("a.gif").size(), film_.size());
}

TEST_F(GifServices, LeavesTheOldResultWhenItFails) {
  const std::string old = folder_.Put("out.gif", "old");
  const auto crop = [&](const std::string& source) {
    return services_.CropFrames({.source = source, .destination = old, .rect = {1, 1, 4, 4}});
  };
  EXPECT_EQ(crop(folder_.Put("a.gif", film_.substr(0, 60))).Why(), "GIF 第 1 帧的数据中断，文件不完整");
  EXPECT_EQ(crop(folder_.Path("none.gif")).GetProblem(), Problem::Missing);
  EXPECT_EQ(crop(folder_.Path(".")).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(crop(folder_.Put("empty.gif", "")).GetProblem(), Problem::Damaged);
  EXPECT_EQ(Read("out.gif"), "old");
}

// Any byte of a film may be wrong: the film is changed, or a reason is given. What is written can be changed again.
TEST(GifDamage, GivesAReason) {
  for (unsigned seed = 1; seed <= 500 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::string film = FilmBytes(RandomFilm(random));
    for (unsigned count = random() % 4 + 1; count > 0; --count)
      film[random() % film.size()] = static_cast<char>(random());
    for (const auto operation : {CutGif, RemoveLogo}) {
      std::string changed;
      const auto run = [&](const std::string& content, std::string& out) {
        MemoryBytes bytes(content);
        return operation(bytes, {2, 1, 9, 7}, {}, [&](const void* data, std::size_t size) {
          out.append(static_cast<const char*>(data), size);
          return Status::Ok();
        });
      };
      const Status status = run(film, changed);
      EXPECT_EQ(status.Why().empty(), static_cast<bool>(status));
      if (!status) continue;
      MemoryBytes whole(changed);
      EXPECT_TRUE(CutGif(whole, {0, 0, 65535, 65535}, {}, [](const void*, std::size_t) { return Status::Ok(); }));
    }
  }
}

}  // namespace
}  // namespace quillon::imaging
