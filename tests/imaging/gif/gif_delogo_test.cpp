// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/gif/gif_delogo.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "imaging/faults.h"
#include "imaging/gif/gif_film.h"

namespace quillon::imaging {
namespace {

using namespace testing;

struct Painted {
  Status status;
  std::string bytes;
};

Painted PaintedOf(const std::string& source, base::Rect region, const Limits& limits = {}) {
  Painted painted;
  MemoryBytes bytes(source);
  painted.status = RemoveLogo(bytes, region, limits, [&](const void* data, std::size_t size) {
    painted.bytes.append(static_cast<const char*>(data), size);
    return Status::Ok();
  });
  return painted;
}

bool Inside(base::Rect rect, int x, int y) {
  return x >= rect.left && x < rect.left + rect.width && y >= rect.top && y < rect.top + rect.height;
}

std::uint32_t At(const Played& played, std::size_t frame, int x, int y) {
  return played.frames[frame].pixels[static_cast<std::size_t>(y * played.screen.width + x)];
}

// Returns the film after its logo was removed. Everything outside the region must have stayed.
std::optional<Played> Removed(const std::string& source, base::Rect region) {
  const Painted painted = PaintedOf(source, region);
  EXPECT_TRUE(painted.status) << painted.status.Why();
  const auto before = Play(source);
  const auto after = Play(painted.bytes);
  if (!before || !after || before->frames.size() != after->frames.size()) {
    ADD_FAILURE() << "not the same film";
    return std::nullopt;
  }
  EXPECT_EQ(after->screen, before->screen);
  EXPECT_EQ(after->applications, before->applications);
  for (std::size_t i = 0; i < before->frames.size(); ++i) {
    EXPECT_EQ(after->frames[i].delay, before->frames[i].delay);
    EXPECT_EQ(after->frames[i].disposal, before->frames[i].disposal);
    for (int y = 0; y < before->screen.height; ++y) {
      for (int x = 0; x < before->screen.width; ++x) {
        if (!Inside(region, x, y)) {
          EXPECT_EQ(At(*after, i, x, y), At(*before, i, x, y)) << i << ": " << x << " " << y;
        }
      }
    }
  }
  return after;
}

// A film of one colour with a logo of another.
Film Logo(base::Rect logo) {
  Film film{.screen = {20, 16}, .tableBits = 2, .frames = {PlainFrame({0, 0, 20, 16}, 1)}};
  for (int y = logo.top; y < logo.top + logo.height; ++y) {
    for (int x = logo.left; x < logo.left + logo.width; ++x) {
      film.frames[0].indices[static_cast<std::size_t>(y * 20 + x)] = 2;
    }
  }
  return film;
}

TEST(GifDelogo, LeavesEverythingOutsideTheRegion) {
  for (unsigned seed = 1; seed <= 200 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Film film = RandomFilm(random);
    film.screen.width += 2;
    const auto pick = [&](int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); };
    const int left = pick(1, film.screen.width - 1);
    const int top = pick(0, film.screen.height - 1);
    Removed(FilmBytes(film), {left, top, pick(1, film.screen.width), pick(1, film.screen.height)});
  }
}

TEST(GifDelogo, PaintsTheColourAroundTheRegion) {
  for (const base::Rect logo : {base::Rect{5, 4, 6, 5}, base::Rect{0, 0, 4, 4}, base::Rect{16, 12, 4, 4}}) {
    Film film = Logo(logo);
    film.extensions = Application("NETSCAPE2.0", std::string("\1\0\0", 3));
    film.frames.push_back(PlainFrame({logo.left, logo.top, 2, 2}, 2));  // the logo again, in a part of the region
    film.frames.push_back(film.frames[0]);
    film.frames.back().interlaced = true;
    film.frames.push_back(PlainFrame({9, 15, 2, 1}, 3));  // elsewhere
    const auto after = Removed(FilmBytes(film), logo);
    ASSERT_TRUE(after);
    const std::uint32_t around = At(*after, 0, 12, 2);
    for (std::size_t i = 0; i < after->frames.size(); ++i) {
      for (int y = logo.top; y < logo.top + logo.height; ++y) {
        for (int x = logo.left; x < logo.left + logo.width; ++x) EXPECT_EQ(At(*after, i, x, y), around);
      }
    }
  }
}

// Left of the region is one colour, right of it another; above and below is one pixel of each.
TEST(GifDelogo, MixesTheColoursAroundTheRegion) {
  Film film{.screen = {7, 1}, .tableBits = 2, .frames = {PlainFrame({0, 0, 7, 1}, 2)}};
  film.frames[0].indices = {0, 2, 2, 2, 2, 2, 3};
  const auto after = Removed(FilmBytes(film), {1, 0, 5, 1});
  ASSERT_TRUE(after);
  const std::string table = FilmTable(2, 0);
  for (int x = 1; x <= 5; ++x) {
    for (int channel = 0; channel < 3; ++channel) {
      const auto sample = [&](int index) {
        return static_cast<double>(static_cast<unsigned char>(table[static_cast<std::size_t>(index * 3 + channel)]));
      };
      const double wanted = (sample(0) * (6 - x) + sample(3) * x) / 6;
      EXPECT_NEAR(At(*after, 0, x, 0) >> (8 * channel) & 0xFF, wanted, 0.51) << x;
    }
  }
}

TEST(GifDelogo, FindsTheNearestColourIfNoEntryIsFree) {
  Film film{.screen = {40, 10}, .tableBits = 8, .frames = {PlainFrame({0, 0, 40, 10}, 0)}};
  for (std::size_t i = 0; i < film.frames[0].indices.size(); ++i) {
    film.frames[0].indices[i] = static_cast<unsigned char>(i);
  }
  const auto after = Removed(FilmBytes(film), {30, 8, 4, 1});
  ASSERT_TRUE(after);
  const auto before = Play(FilmBytes(film));
  for (int x = 30; x < 34; ++x) {
    const auto& pixels = before->frames[0].pixels;
    EXPECT_NE(std::find(pixels.begin(), pixels.end(), At(*after, 0, x, 8)), pixels.end());
  }
}

// Nothing is around the logo, so that nobody knows its colour.
TEST(GifDelogo, ClearsALogoWithoutColoursAround) {
  for (const bool control : {false, true}) {
    Film film{.screen = {20, 16}, .tableBits = 2, .frames = {PlainFrame({5, 4, 3, 3}, 2)}};
    film.frames[0].control = control;
    film.frames.push_back(PlainFrame({0, 0, 2, 2}, 1));
    const auto after = Removed(FilmBytes(film), {4, 3, 6, 6});
    ASSERT_TRUE(after);
    for (const std::size_t frame : {0, 1}) {
      for (int y = 4; y < 7; ++y) {
        for (int x = 5; x < 8; ++x) EXPECT_EQ(At(*after, frame, x, y), 0U);
      }
    }
  }
}

TEST(GifDelogo, ReportsALogoThatItCannotClear) {
  // The frame begins in the region and goes on beyond the screen, with all colours there.
  Film film{.screen = {10, 10}, .tableBits = 8, .frames = {PlainFrame({6, 0, 40, 20}, 0)}};
  for (std::size_t i = 0; i < film.frames[0].indices.size(); ++i) {
    film.frames[0].indices[i] = static_cast<unsigned char>(i);
  }
  film.frames[0].control = false;
  const Painted painted = PaintedOf(FilmBytes(film), {4, 0, 6, 10});
  EXPECT_EQ(painted.status.Why(), "GIF 第 1 帧的图标周围没有颜色，颜色表也没有空位，去不掉图标");
}

TEST(GifDelogo, CopiesAFrameThatDoesNotTouchTheRegion) {
  Film film = Logo({0, 0, 2, 2});
  film.frames.push_back(PlainFrame({10, 10, 5, 5}, 3));
  film.frames.back().tableBits = 3;
  const std::string last = FilmBytes(film.frames.back(), 2);
  const Painted painted = PaintedOf(FilmBytes(film), {0, 0, 2, 2});
  const std::string head = last.substr(0, 8 + 10 + 24);
  EXPECT_NE(painted.bytes.find(head), std::string::npos);
}

TEST(GifDelogo, RefusesARegionWithoutSurroundings) {
  const std::string film = FilmBytes(Logo({0, 0, 2, 2}));
  EXPECT_EQ(PaintedOf(film, {0, 0, 0, 2}).status.Why(), fault::EmptyRectangle().Why());
  EXPECT_EQ(PaintedOf(film, {20, 0, 2, 2}).status.Why(), fault::EmptyRectangle().Why());
  EXPECT_EQ(PaintedOf(film, {0, 0, 20, 16}).status.Why(), "要去掉的图标占满了整个画面");
  EXPECT_EQ(PaintedOf(film.substr(0, film.size() - 9), {0, 0, 2, 2}).status.Why(), "GIF 第 1 帧的数据中断，文件不完整");
}

TEST(GifDelogo, LimitsItsMemory) {
  Limits limits;
  limits.pixelsInMemory = 100;
  EXPECT_EQ(PaintedOf(FilmBytes(Logo({0, 0, 2, 2})), {0, 0, 2, 2}, limits).status.GetProblem(),
            host::Problem::TooLarge);
  limits.pixelsInMemory = 320;
  EXPECT_TRUE(PaintedOf(FilmBytes(Logo({0, 0, 2, 2})), {0, 0, 2, 2}, limits).status);
}

}  // namespace
}  // namespace quillon::imaging
