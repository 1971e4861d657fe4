// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_cut.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/faults.h"
#include "imaging/gif/gif_film.h"
#include "imaging/little_files.h"
#include "imaging/measure/frame_count.h"
#include "imaging/pixels/geometry.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using namespace testing;

struct Cut {
  Status status;
  std::string bytes;
};

Cut CutOf(const std::string& source, base::Rect window, const Limits& limits = {}) {
  Cut cut;
  MemoryBytes bytes(source);
  cut.status = CutGif(bytes, window, limits, [&](const void* data, std::size_t size) {
    cut.bytes.append(static_cast<const char*>(data), size);
    return Status::Ok();
  });
  return cut;
}

std::vector<std::uint32_t> Part(const Shown& shown, base::Size screen, base::Rect window) {
  std::vector<std::uint32_t> part;
  for (int y = window.top; y < window.top + window.height; ++y) {
    const auto row = shown.pixels.begin() + static_cast<std::ptrdiff_t>(y) * screen.width + window.left;
    part.insert(part.end(), row, row + window.width);
  }
  return part;
}

// Every frame of the result, as a player draws it, is the window of that frame of the source.
void ExpectCut(const std::string& source, base::Rect window) {
  const Cut cut = CutOf(source, window);
  ASSERT_TRUE(cut.status) << cut.status.Why();
  const auto before = Play(source);
  const auto after = Play(cut.bytes);
  ASSERT_TRUE(before && after);
  const base::Rect visible = Intersection(window, {0, 0, before->screen.width, before->screen.height});
  EXPECT_EQ(after->screen, (base::Size{visible.width, visible.height}));
  ASSERT_EQ(after->frames.size(), before->frames.size());
  for (std::size_t i = 0; i < before->frames.size(); ++i) {
    EXPECT_EQ(after->frames[i].pixels, Part(before->frames[i], before->screen, visible)) << "frame " << i;
    EXPECT_EQ(after->frames[i].delay, before->frames[i].delay) << "frame " << i;
  }
  EXPECT_EQ(after->comments, before->comments);
  EXPECT_EQ(after->applications, before->applications);
}

TEST(GifCut, CutsEveryFrameOfAnyFilm) {
  for (unsigned seed = 1; seed <= 400; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const Film film = RandomFilm(random);
    const auto pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    const int left = pick(0, film.screen.width - 1);
    const int top = pick(0, film.screen.height - 1);
    ExpectCut(FilmBytes(film),
              {left, top, pick(1, film.screen.width - left + 3), pick(1, film.screen.height - top + 3)});
    if (HasFailure()) break;
  }
}

TEST(GifCut, CutsAFilmOfManyCodes) {
  std::mt19937 random(5);
  for (const int colours : {2, 16, 256}) {
    Film film{.screen = {300, 200}, .tableBits = 8};
    FilmFrame noise = PlainFrame({0, 0, 300, 200}, 0);
    for (unsigned char& index : noise.indices)
      index = static_cast<unsigned char>(random() % static_cast<unsigned>(colours));
    FilmFrame both = noise;  // the second half is plain, so that a dictionary of noise serves it badly
    std::fill(both.indices.begin() + 30'000, both.indices.end(), static_cast<unsigned char>(1));
    film.frames = {noise, both, noise};
    ExpectCut(FilmBytes(film), {0, 0, 300, 200});
    ExpectCut(FilmBytes(film), {7, 11, 251, 180});
  }
}

TEST(GifCut, KeepsWhatIsNoPicture) {
  Film film{.screen = {8, 6}, .tableBits = 2};
  film.extensions = Application("NETSCAPE2.0", std::string("\1\5\0", 3)) + Comment("made by hand");
  film.frames = {PlainFrame({0, 0, 8, 6}, 1, 7), PlainFrame({2, 2, 2, 2}, 2, 0), PlainFrame({0, 0, 8, 6}, 3, 65535)};
  const std::string source = FilmBytes(film);
  ExpectCut(source, {2, 1, 4, 4});
  const Cut cut = CutOf(source, {2, 1, 4, 4});
  EXPECT_NE(cut.bytes.find(film.extensions), std::string::npos);
  EXPECT_NE(cut.bytes.find(FilmTable(2, 0)), std::string::npos);
}

TEST(GifCut, LeavesAPixelOfAFrameOutside) {
  Film film{.screen = {20, 10}, .tableBits = 1};
  FilmFrame outside = PlainFrame({10, 0, 10, 10}, 1, 33);
  outside.disposal = 2;
  FilmFrame bare = outside;
  bare.control = false;
  film.frames = {PlainFrame({0, 0, 20, 10}, 1), outside, bare, PlainFrame({0, 0, 1, 1}, 0)};
  ExpectCut(FilmBytes(film), {0, 0, 5, 5});
  const auto played = Play(CutOf(FilmBytes(film), {0, 0, 5, 5}).bytes);
  ASSERT_TRUE(played);
  EXPECT_EQ(played->frames[1].delay, 33);
  EXPECT_EQ(played->frames[1].disposal, 1);
}

TEST(GifCut, CutsOffWhatLiesOutsideTheScreen) {
  Film film{.screen = {8, 6}, .tableBits = 2, .frames = {PlainFrame({6, 4, 9, 9}, 1)}};
  ExpectCut(FilmBytes(film), {4, 2, 100, 100});
  EXPECT_EQ(CutOf(FilmBytes(film), {8, 0, 4, 4}).status.GetProblem(), Problem::Other);
  EXPECT_EQ(CutOf(FilmBytes(film), {0, 0, 0, 4}).status.GetProblem(), Problem::Other);
  EXPECT_EQ(CutOf(FilmBytes(film), {-5, -5, 5, 5}).status.Why(), fault::EmptyRectangle().Why());
  film.screen = {0, 0};
  EXPECT_EQ(CutOf(FilmBytes(film), {0, 0, 4, 4}).status.Why(), fault::EmptyRectangle().Why());
}

TEST(GifCut, KeepsAnIndexThatTheTableDoesNotHave) {
  Film film{.screen = {8, 6}, .tableBits = 2, .frames = {PlainFrame({0, 0, 8, 6}, 200)}};
  film.frames.front().transparent = 200;
  ExpectCut(FilmBytes(film), {1, 1, 4, 4});
  film.frames.front().area = {8, 6, 8, 6};  // outside: the pixel that stays has that index too
  ExpectCut(FilmBytes(film), {1, 1, 4, 4});
}

// --- Bad input.

std::string Small() {
  return FilmBytes(
      Film{.screen = {8, 6}, .tableBits = 2, .frames = {PlainFrame({0, 0, 8, 6}, 1), PlainFrame({1, 1, 4, 4}, 2)}});
}

TEST(GifCut, NamesWhatIsNoGif) {
  EXPECT_EQ(CutOf("", {0, 0, 4, 4}).status.Why(), fault::EmptyFile().Why());
  EXPECT_EQ(CutOf("GIF", {0, 0, 4, 4}).status.Why(), "这不是 GIF 文件");
  EXPECT_EQ(CutOf(Png(8, 6, ""), {0, 0, 4, 4}).status.Why(), "这不是 GIF 文件，内容是 PNG");
  EXPECT_EQ(CutOf("\xFF\xD8\xFF\xE0 a picture", {0, 0, 4, 4}).status.Why(), "这不是 GIF 文件，内容是 JPEG");
}

// A file may end only between two blocks, after a frame.
TEST(GifCut, FindsEveryCutOff) {
  const std::string whole = Small();
  const std::size_t head = 13 + 12;
  const std::size_t first = head + FilmBytes(PlainFrame({0, 0, 8, 6}, 1), 1).size();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    const Cut cut = CutOf(whole.substr(0, size), {1, 1, 4, 4});
    EXPECT_EQ(static_cast<bool>(cut.status), size == first || size + 1 == whole.size());
    if (cut.status) continue;
    EXPECT_EQ(cut.status.GetProblem(), size < 6 && size > 0 ? Problem::Unsupported : Problem::Damaged);
    EXPECT_FALSE(cut.status.Why().empty());
  }
  EXPECT_EQ(CutOf(whole.substr(0, 20), {1, 1, 4, 4}).status.Why(), "GIF 文件不完整：文件头或颜色表中断");
  EXPECT_EQ(CutOf(whole.substr(0, head), {1, 1, 4, 4}).status.Why(), "GIF 文件里没有任何一帧");
  EXPECT_EQ(CutOf(whole.substr(0, whole.size() - 4), {1, 1, 4, 4}).status.Why(), "GIF 第 2 帧的数据中断，文件不完整");
  EXPECT_EQ(CutOf(whole.substr(0, whole.size() - 1), {1, 1, 4, 4}).bytes, CutOf(whole, {1, 1, 4, 4}).bytes);
}

TEST(GifCut, RefusesAFrameWithoutTable) {
  Film film{.screen = {8, 6}, .frames = {PlainFrame({0, 0, 8, 6}, 1)}};
  EXPECT_EQ(CutOf(FilmBytes(film), {1, 1, 4, 4}).status.Why(), "GIF 第 1 帧没有颜色表");
}

TEST(GifCut, RefusesImpossibleCodeSizes) {
  const std::string whole = Small();
  const std::size_t codeSize = 13 + 12 + 8 + 10;
  ASSERT_EQ(whole[codeSize], 8);
  for (const int bits : {0, 9, 12, 255}) {
    std::string bad = whole;
    bad[codeSize] = static_cast<char>(bits);
    EXPECT_EQ(CutOf(bad, {1, 1, 4, 4}).status.Why(), "GIF 第 1 帧的编码位数无效（" + std::to_string(bits) + "）");
  }
}

TEST(GifCut, CutsALargeScreenOfSmallFrames) {
  Film film{.screen = {65535, 65535}, .tableBits = 2};
  for (int i = 0; i < 50; ++i) film.frames.push_back(PlainFrame({1300 * i, 1300 * i, 2, 1}, 1, i));
  const Cut cut = CutOf(FilmBytes(film), {0, 0, 65535, 65535});
  ASSERT_TRUE(cut.status) << cut.status.Why();
  EXPECT_LE(cut.bytes.size(), FilmBytes(film).size());
}

// The frame would need 64 KB of pixels and more; the file has some bytes.
TEST(GifCut, RefusesAFrameThatTheFileCannotHold) {
  FilmFrame frame = PlainFrame({0, 0, 2, 2}, 1);
  std::string bytes = FilmBytes(Film{.screen = {60000, 60000}, .tableBits = 2, .frames = {frame}});
  const std::size_t side = 13 + 12 + 8 + 5;
  bytes.replace(side, 4, testing::Little(60000, 2) + testing::Little(60000, 2));
  EXPECT_EQ(CutOf(bytes, {0, 0, 4, 4}).status.Why(), "GIF 第 1 帧的尺寸超过文件所能容纳的数据");
  bytes.replace(side, 4, testing::Little(600, 2) + testing::Little(20, 2));
  EXPECT_EQ(CutOf(bytes, {0, 0, 4, 4}).status.GetProblem(), Problem::Damaged);
}

TEST(GifCut, CutsAHundredThousandFrames) {
  constexpr int kFrames = 100'000;
  const Film empty{.screen = {8, 6}, .tableBits = 2, .end = ""};
  for (const base::Rect area : {base::Rect{1, 1, 2, 2}, base::Rect{6, 4, 2, 2}}) {
    const std::string frame = FilmBytes(PlainFrame(area, 1), 1);
    std::string film = FilmBytes(empty);
    for (int i = 0; i < kFrames; ++i) film += frame;
    const Cut cut = CutOf(film, {0, 0, 4, 4});
    ASSERT_TRUE(cut.status) << cut.status.Why();
    MemoryBytes bytes(cut.bytes);
    int frames = 0;
    EXPECT_TRUE(CountFrames(bytes, frames));
    EXPECT_EQ(frames, kFrames);
  }
}

TEST(GifCut, AcceptsAFrameWithoutPixels) {
  Film film{.screen = {8, 6}, .tableBits = 2, .frames = {PlainFrame({0, 0, 8, 6}, 1), PlainFrame({0, 0, 0, 3}, 1, 9)}};
  const Cut cut = CutOf(FilmBytes(film), {0, 0, 4, 4});
  ASSERT_TRUE(cut.status) << cut.status.Why();
  const auto played = Play(cut.bytes);
  ASSERT_TRUE(played);
  EXPECT_EQ(played->frames[1].delay, 9);
  EXPECT_EQ(played->frames[1].pixels, played->frames[0].pixels);
}

TEST(GifCut, SkipsZerosBetweenBlocksAndPlainTexts) {
  const std::string text = "!\x01\x0C" + std::string(12, '\1') + "\2hi" + std::string(1, '\0');
  Film film{.screen = {8, 6},
            .tableBits = 2,
            .extensions = std::string(3, '\0') + text,
            .frames = {PlainFrame({0, 0, 8, 6}, 1)}};
  const Cut cut = CutOf(FilmBytes(film), {0, 0, 8, 6});
  ASSERT_TRUE(cut.status) << cut.status.Why();
  EXPECT_EQ(cut.bytes.find("\2hi"), std::string::npos);
  film.extensions = "?";
  EXPECT_EQ(CutOf(FilmBytes(film), {0, 0, 8, 6}).status.GetProblem(), Problem::Damaged);
}

TEST(GifCut, LimitsTheMemoryOfInterlacedFrames) {
  Film film{.screen = {80, 60}, .tableBits = 2, .frames = {PlainFrame({0, 0, 80, 60}, 1)}};
  film.frames.front().interlaced = true;
  Limits limits;
  limits.pixelsInMemory = 1000;
  EXPECT_TRUE(CutOf(FilmBytes(film), {0, 0, 40, 25}, limits).status);
  EXPECT_EQ(CutOf(FilmBytes(film), {0, 0, 41, 25}, limits).status.GetProblem(), Problem::TooLarge);
}

// --- Faults.

TEST(GifCut, ReturnsEveryFailureOfItsOutput) {
  std::mt19937 random(3);
  Film film{.screen = {300, 300}, .tableBits = 8};
  film.frames.assign(4, PlainFrame({0, 0, 300, 300}, 1));
  for (FilmFrame& frame : film.frames) {
    for (unsigned char& index : frame.indices) index = static_cast<unsigned char>(random());
  }
  const std::string source = FilmBytes(film);
  int blocks = 0;
  for (int failing = 0; failing <= blocks; ++failing) {
    int calls = 0;
    MemoryBytes bytes(source);
    const Status status = CutGif(bytes, {0, 0, 300, 300}, {}, [&](const void*, std::size_t) {
      return ++calls == failing ? Status(Problem::DiskFull, "磁盘已满") : Status::Ok();
    });
    EXPECT_EQ(status.DiskFull(), failing > 0);
    if (failing == 0) blocks = calls;
    if (failing > 0) {
      EXPECT_EQ(calls, failing);
    }
  }
  EXPECT_GT(blocks, 3);
}

// Bytes of which one read fails.
class FailingBytes final : public quillon::imaging::Bytes {
 public:
  FailingBytes(const std::string& content, int failing) : content_(content), failing_(failing) {}
  std::uint64_t Size() const override { return content_.Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
    return ++reads_ != failing_ && content_.ReadAt(offset, out, size);
  }
  int Reads() const { return reads_; }

 private:
  MemoryBytes content_;
  int failing_;
  int reads_ = 0;
};

TEST(GifCut, ReturnsEveryFailureOfItsInput) {
  Film film{.screen = {300, 300}, .tableBits = 8};
  film.frames.assign(4, PlainFrame({0, 0, 300, 300}, 1));
  const std::string source = FilmBytes(film);
  const auto ignore = [](const void*, std::size_t) { return Status::Ok(); };
  FailingBytes whole(source, 0);
  ASSERT_TRUE(CutGif(whole, {0, 0, 4, 4}, {}, ignore));
  ASSERT_GT(whole.Reads(), 5);
  for (int failing = 1; failing <= whole.Reads(); ++failing) {
    FailingBytes bytes(source, failing);
    const Status status = CutGif(bytes, {0, 0, 4, 4}, {}, ignore);
    EXPECT_FALSE(status) << failing;
    EXPECT_FALSE(status.Why().empty());
  }
}

}  // namespace
}  // namespace quillon::imaging
