// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Plain cuts from PNG to PNG, against the whole picture as libvips decodes it.
#include "imaging/png/png_cut.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include <lcms2.h>

#include "imaging/io/bytes.h"
#include "imaging/pictures.h"
#include "imaging/pixels/geometry.h"
#include "imaging/png/png_chunks.h"
#include "imaging/png_maker.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using vips::VImage;

// The picture with four samples of 8 bits, as libvips decodes it.
Sheet AsRgba(const std::string& path) {
  const VImage loaded = LoadPlainly(path);
  const int shift = loaded.format() == VIPS_FORMAT_USHORT ? 8 : 0;
  const Sheet whole = FromVips(loaded);
  const bool grey = whole.bands <= 2;
  const bool alpha = whole.bands % 2 == 0;
  Sheet rgba{whole.width, whole.height, 4, {}};
  for (int y = 0; y < whole.height; ++y) {
    for (int x = 0; x < whole.width; ++x) {
      for (int b = 0; b < 3; ++b) rgba.values.push_back(whole.At(x, y, grey ? 0 : b) >> shift);
      rgba.values.push_back(alpha ? whole.At(x, y, whole.bands - 1) >> shift : 255);
    }
  }
  return rgba;
}

// The rectangle of a picture with alpha, with zeros outside.
Sheet Window(const Sheet& rgba, base::Rect rect) {
  Sheet window{rect.width, rect.height, 4, {}};
  for (int y = rect.top; y < rect.top + rect.height; ++y) {
    for (int x = rect.left; x < rect.left + rect.width; ++x) {
      const bool inside = x >= 0 && y >= 0 && x < rgba.width && y < rgba.height;
      const std::vector<int> pixel = inside ? rgba.Pixel(x, y) : std::vector<int>(4, 0);
      window.values.insert(window.values.end(), pixel.begin(), pixel.end());
    }
  }
  return window;
}

class PngCutTest : public ServicesTest {
 protected:
  PngCutRequest Cut(const std::string& source, base::Rect rect) const {
    return {.source = Path(source), .destination = Path("out.png"), .drawing = {.rect = rect}};
  }
  Status Try(const std::string& content, base::Rect rect) {
    world.folder.Write("in.png", content);
    return services.PngCut(Cut("in.png", rect));
  }
  void ExpectAsWholeDecode(const std::string& content, base::Rect rect) {
    const Status cut = Try(content, rect);
    ASSERT_TRUE(cut) << cut.Why();
    const Sheet out = ReadPlainly(Path("out.png"));
    EXPECT_EQ(out.bands, 4);
    EXPECT_EQ(Difference(out, Window(AsRgba(Path("in.png")), rect)), 0);
    std::filesystem::remove(Path("out.png"));
  }
  void ExpectFailure(const std::string& content, base::Rect rect, Problem problem = Problem::Damaged) {
    const Status cut = Try(content, rect);
    EXPECT_EQ(cut.GetProblem(), problem) << cut.Why();
    EXPECT_FALSE(cut.Why().empty());
    EXPECT_FALSE(world.folder.Exists("out.png"));
    EXPECT_EQ(world.folder.Read("in.png"), content);
  }
};

constexpr base::Rect kInside{7, 5, 30, 20};

// Colour type and bits.
class PngKinds : public PngCutTest, public ::testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(PngKinds, AreCutAsWholeDecode) {
  const auto [type, bits] = GetParam();
  for (const bool interlaced : {false, true}) {
    SCOPED_TRACE(interlaced ? "interlaced" : "plain");
    const std::string png = MakePng({.type = type, .bits = bits, .interlaced = interlaced});
    ExpectAsWholeDecode(png, kInside);
    ExpectAsWholeDecode(png, {0, 0, 61, 43});
    ExpectAsWholeDecode(png, {60, 42, 1, 1});
    ExpectAsWholeDecode(png, {-5, 30, 90, 40});
  }
}

TEST_P(PngKinds, KeepTheirTransparency) {
  const auto [type, bits] = GetParam();
  PngKind kind{.type = type, .bits = bits};
  const int most = (1 << bits) - 1;
  if (type == 3) kind.alphas = {0, 100};
  if (type == 0) kind.key = {most / 2};
  if (type == 2) kind.key = {most / 3, most / 2, most};
  for (const bool interlaced : {false, true}) {
    kind.interlaced = interlaced;
    ExpectAsWholeDecode(MakePng(kind), kInside);
  }
}

INSTANTIATE_TEST_SUITE_P(All, PngKinds,
                         ::testing::Values(std::tuple(0, 1), std::tuple(0, 2), std::tuple(0, 4), std::tuple(0, 8),
                                           std::tuple(0, 16), std::tuple(2, 8), std::tuple(2, 16), std::tuple(3, 1),
                                           std::tuple(3, 2), std::tuple(3, 4), std::tuple(3, 8), std::tuple(4, 8),
                                           std::tuple(4, 16), std::tuple(6, 8), std::tuple(6, 16)));

TEST_F(PngCutTest, WhatLiesOutsideIsTransparent) {
  for (const bool interlaced : {false, true}) {
    const std::string png = MakePng({.interlaced = interlaced});
    for (const base::Rect& rect : {base::Rect{-10, 5, 30, 20}, base::Rect{50, 5, 30, 20}, base::Rect{7, -10, 30, 20},
                                   base::Rect{7, 35, 30, 20}, base::Rect{-10, -10, 90, 70}, base::Rect{-30, 5, 30, 20},
                                   base::Rect{61, 5, 30, 20}, base::Rect{7, -20, 30, 20}, base::Rect{7, 43, 30, 20},
                                   base::Rect{1 << 30, 1 << 30, 3, 3}, base::Rect{-(1 << 30), -(1 << 30), 3, 3}}) {
      SCOPED_TRACE(::testing::Message() << rect.left << " " << rect.top);
      ExpectAsWholeDecode(png, rect);
    }
  }
}

TEST_F(PngCutTest, A16BitKeyIsComparedWithAllBits) {
  // Pixels that differ from the key in their lowest bit only are opaque.
  const std::string png = MakePng({.type = 2, .bits = 16, .key = {0x1234, 0x5678, 0x9ABC}});
  ASSERT_TRUE(Try(png, {0, 0, 61, 43}));
  const Sheet out = ReadPlainly(Path("out.png"));
  EXPECT_EQ(out.Pixel(3, 1), (std::vector<int>{0x12, 0x56, 0x9A, 0}));
  EXPECT_EQ(out.Pixel(5, 1), (std::vector<int>{0x12, 0x56, 0x9A, 255}));
}

TEST_F(PngCutTest, ProfileDensityAndOrientationGoAlong) {
  VImage made = ToVips(PhotoLike(61, 43, 3)).copy(VImage::option()->set("xres", 300 / 25.4)->set("yres", 150 / 25.4));
  const std::string profile = ProfileFor("RGB ");
  vips_image_set_blob_copy(made.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  made.pngsave(Path("plain.png").c_str());
  const std::string oriented =
      WithChunks(world.folder.Read("plain.png"), "IDAT", PngChunkOf("eXIf", ExifWithThumbnail(6)));
  ASSERT_TRUE(Try(oriented, {10, 10, 90, 20}));
  const VImage out = LoadPlainly(Path("out.png"));
  std::size_t size = 0;
  const void* kept = out.get_blob(VIPS_META_ICC_NAME, &size);
  EXPECT_EQ(std::string(static_cast<const char*>(kept), size), profile);
  EXPECT_EQ(std::lround(out.xres() * 25.4), 300);
  EXPECT_EQ(std::lround(out.yres() * 25.4), 150);
  EXPECT_EQ(vips_image_get_orientation(out.get_image()), 6);
  const std::string bytes = world.folder.Read("out.png");
  EXPECT_EQ(bytes.find("THUMB"), std::string::npos);
  const auto chunk = [](const std::string& png, const char* type) { return png.substr(ChunkAt(png, type), 21); };
  EXPECT_EQ(chunk(bytes, "pHYs"), chunk(oriented, "pHYs"));
}

TEST_F(PngCutTest, AnUnknownUnitOfTheDensityStaysUnknown) {
  const std::string chunk = PngChunkOf("pHYs", std::string("\0\0\0\2\0\0\0\1\0", 9));
  ASSERT_TRUE(Try(WithChunks(MakePng({}), "IDAT", chunk), kInside));
  EXPECT_NE(world.folder.Read("out.png").find(chunk), std::string::npos);
  ASSERT_TRUE(Try(MakePng({}), kInside));
  EXPECT_EQ(world.folder.Read("out.png").find("pHYs"), std::string::npos);
}

// A profile for grey that is proportional to light.
std::string LinearGrey() {
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, 1.0);
  const cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  cmsFreeToneCurve(curve);
  return bytes;
}

TEST_F(PngCutTest, GreyWithAProfileBecomesWhatTheScreenShows) {
  for (const int type : {0, 4}) {
    world.folder.Write("grey.png", MakePng({.type = type}));
    const Sheet stored = ReadPlainly(Path("grey.png"));
    VImage grey = LoadPlainly(Path("grey.png")).copy();
    const std::string profile = LinearGrey();
    vips_image_set_blob_copy(grey.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
    grey.pngsave(Path("in.png").c_str());
    ASSERT_TRUE(services.PngCut(Cut("in.png", {0, 0, 61, 43})));
    EXPECT_EQ(LoadPlainly(Path("out.png")).get_typeof(VIPS_META_ICC_NAME), 0U);
    const Sheet out = ReadPlainly(Path("out.png"));
    for (int x = 0; x < 61; ++x) {
      const double light = stored.At(x, 20) / 255.0;
      const double shown = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
      EXPECT_NEAR(out.At(x, 20), shown * 255, 1.5) << stored.At(x, 20);
      EXPECT_EQ(out.At(x, 20, 3), type == 4 ? stored.At(x, 20, 1) : 255);
    }
  }
}

TEST_F(PngCutTest, AProfileThatCannotBeUsedIsDropped) {
  VImage grey = ToVips(PhotoLike(61, 43, 1), VIPS_INTERPRETATION_B_W).copy();
  const std::string profile = ProfileFor("GRAY");
  vips_image_set_blob_copy(grey.get_image(), VIPS_META_ICC_NAME, profile.data(), profile.size());
  grey.pngsave(Path("in.png").c_str());
  ExpectAsWholeDecode(world.folder.Read("in.png"), kInside);
}

TEST_F(PngCutTest, ASourceIsReplacedByItsOwnCut) {
  world.folder.Write("in.png", MakePng({}));
  const Sheet expected = Window(AsRgba(Path("in.png")), kInside);
  PngCutRequest request = Cut("in.png", kInside);
  request.destination = request.source;
  ASSERT_TRUE(services.PngCut(request));
  EXPECT_EQ(Difference(ReadPlainly(Path("in.png")), expected), 0);
}

TEST_F(PngCutTest, HoldsFewRowsAndOfInterlacedOnesTheNeeded) {
  // The limit of memory is that of the held rows: 200 rows of 300 pixels of three bytes do not fit, 40 do.
  Limits limits;
  limits.memory = 300 * 3 * 60;
  const auto cut = [&](bool interlaced, base::Rect rect) {
    auto bytes = std::make_shared<MemoryBytes>(MakePng({.size = {300, 200}, .interlaced = interlaced}));
    MemoryDraft draft([](std::int64_t) { return Status::Ok(); });
    return CutPng(bytes, rect, limits, draft).GetProblem();
  };
  EXPECT_EQ(cut(false, {0, 0, 300, 200}), Problem::None);
  EXPECT_EQ(cut(true, {0, 0, 300, 200}), Problem::TooLarge);
  EXPECT_EQ(cut(true, {0, 100, 300, 40}), Problem::None);
}

TEST_F(PngCutTest, DamageAnywhereIsFound) {
  for (const bool interlaced : {false, true}) {
    const std::string png = MakePng({.interlaced = interlaced});
    const std::size_t data = ChunkAt(png, "IDAT");
    for (const std::size_t length :
         {data + 4, data + 9, data + 500, png.size() - 30, png.size() - 12, png.size() - 1}) {
      ExpectFailure(png.substr(0, length), {0, 0, 61, 2});
      ExpectFailure(png.substr(0, length), {0, 0, 61, 43});
    }
    // A flipped bit below the cut.
    std::string flipped = png;
    flipped[png.size() - 40] ^= 4;
    ExpectFailure(flipped, {0, 0, 61, 2});
    ExpectFailure(flipped, {0, 0, 61, 43});
  }
}

// Whatever the bytes of a file with right checksums say, a cut ends, and what it has written is complete.
TEST_F(PngCutTest, FlippedBitsWithRightChecksums) {
  unsigned random = 1;
  const auto next = [&](std::size_t below) {
    random = random * 1664525U + 1013904223U;
    return static_cast<std::size_t>(random >> 8) % below;
  };
  for (const auto& [type, bits] : {std::pair(0, 1), {0, 16}, {2, 8}, {3, 2}, {3, 8}, {4, 8}, {6, 16}}) {
    for (int i = 0; i < 200; ++i) {
      std::string png = MakePng({.size = {23, 17}, .type = type, .bits = bits, .interlaced = i % 2 == 0});
      for (std::size_t flips = 1 + next(3); flips > 0; --flips) {
        // The sides stay, so that no picture is large.
        png[24 + next(png.size() - 24)] ^= static_cast<char>(1U << next(8));
      }
      MemoryDraft draft([](std::int64_t) { return Status::Ok(); });
      const Status cut = CutPng(std::make_shared<MemoryBytes>(WithRightChecksums(png)), {-2, 3, 20, 30}, {}, draft);
      EXPECT_EQ(cut.Why().empty(), static_cast<bool>(cut));
      MemoryBytes written(draft.Release());
      EXPECT_TRUE(!cut || IsPngComplete(written));
    }
  }
}

TEST_F(PngCutTest, WrongChecksumsAreDamage) {
  const std::string plain = MakePng({.type = 3, .alphas = {9}});
  const std::string text = PngChunkOf("tEXt", std::string("Title\0some words", 16));
  const std::string density = PngChunkOf("pHYs", std::string("\0\0\x2E\x23\0\0\x2E\x23\1", 9));
  const std::string png = WithChunks(WithChunks(plain, "IDAT", text + density), "IEND", PngChunkOf("tIME", "1234567"));
  ExpectAsWholeDecode(png, kInside);
  for (const char* type : {"IHDR", "PLTE", "tRNS", "tEXt", "pHYs", "IDAT", "tIME"}) {
    SCOPED_TRACE(type);
    ExpectFailure(WithWrongChecksum(png, type), kInside);
  }
}

TEST_F(PngCutTest, PalettesThatAreMissingOrTooShort) {
  const std::string rows(43 * 62, '\0');
  ExpectFailure(PngOfRows({61, 43}, 8, 3, "", rows), kInside);
  std::string beyond = rows;
  beyond[62 * 10 + 20] = 2;
  const std::string two = PngChunkOf("PLTE", "abcdef");
  ExpectAsWholeDecode(PngOfRows({61, 43}, 8, 3, two, rows), kInside);
  ExpectFailure(PngOfRows({61, 43}, 8, 3, two, beyond), kInside);
  ExpectFailure(PngOfRows({61, 43}, 8, 3, PngChunkOf("PLTE", "abcd"), rows), kInside);
}

TEST_F(PngCutTest, RowsThatEndEarly) {
  ExpectFailure(PngOfRows({61, 43}, 8, 0, "", std::string(20 * 62, '\0')), kInside);
}

TEST_F(PngCutTest, NarrowAndLongPictures) {
  std::string rows(2 * 500000, '\0');
  for (std::size_t y = 0; y < 500000; ++y) rows[2 * y + 1] = static_cast<char>(y % 251);
  const std::string png = PngOfRows({1, 500000}, 8, 0, "", rows);
  ASSERT_TRUE(Try(png, {0, 499990, 2, 20}));
  const Sheet out = ReadPlainly(Path("out.png"));
  EXPECT_EQ(out.Pixel(0, 9), (std::vector<int>{499999 % 251, 499999 % 251, 499999 % 251, 255}));
  EXPECT_EQ(out.Pixel(1, 9), (std::vector<int>{0, 0, 0, 0}));
  EXPECT_EQ(out.Pixel(0, 10), (std::vector<int>{0, 0, 0, 0}));
  std::filesystem::remove(Path("out.png"));
  ExpectFailure(PngOfRows({1, 500001}, 8, 0, "", "x"), {0, 0, 1, 1}, Problem::TooLarge);
}

TEST_F(PngCutTest, BombsAreRefusedByTheLengthOfTheFile) {
  const std::string bomb = PngOfRows({12000, 12000}, 8, 2, "", std::string(42'000'000, '\0'));
  ASSERT_LT(bomb.size(), 45'000U);
  ExpectFailure(bomb, {0, 0, 10, 10});
  ExpectFailure(bomb, {0, 11000, 10, 10});
}

TEST_F(PngCutTest, AnyAmountOfTextIsSkipped) {
  std::string chunks;
  const std::string block = PngChunkOf("tEXt", std::string("Comment\0", 8) + std::string(4'000'000, 'x'));
  for (int i = 0; i < 25; ++i) chunks += block;
  world.folder.Write("plain.png", MakePng({}));
  ASSERT_TRUE(Try(WithChunks(MakePng({}), "IDAT", chunks), kInside));
  EXPECT_EQ(Difference(ReadPlainly(Path("out.png")), Window(AsRgba(Path("plain.png")), kInside)), 0);
  EXPECT_LT(world.folder.Read("out.png").size(), 10'000U);
}

TEST_F(PngCutTest, OfAnAnimationTheFirstFrameIsCutButNotOverTheSource) {
  const std::string animated = WithChunks(MakePng({}), "IDAT", PngChunkOf("acTL", std::string("\0\0\0\3\0\0\0\0", 8)));
  ExpectAsWholeDecode(animated, kInside);
  PngCutRequest request = Cut("in.png", kInside);
  request.destination = request.source;
  const Status over = services.PngCut(request);
  EXPECT_EQ(over.GetProblem(), Problem::Unsupported);
  EXPECT_EQ(over.Why(), "源文件有 3 帧，裁剪只取第一帧，未覆盖");
  // Nor by way of a work file.
  request.destination = Path("app/Tmp.gif");
  request.finalName = request.source;
  EXPECT_EQ(services.PngCut(request).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(world.folder.Read("in.png"), animated);
}

TEST_F(PngCutTest, RectanglesThatAreRefused) {
  const std::string png = MakePng({});
  ExpectFailure(png, {0, 0, 0, 5}, Problem::Other);
  ExpectFailure(png, {0, 0, 5, -1}, Problem::Other);
  ExpectFailure(png, {0, 0, 500001, 1}, Problem::TooLarge);
  ExpectFailure("", kInside);
  ExpectFailure("a text", kInside, Problem::Unsupported);
  EXPECT_EQ(services.PngCut(Cut("missing.png", kInside)).GetProblem(), Problem::Missing);
  std::filesystem::create_directory(Path("folder.png"));
  EXPECT_EQ(services.PngCut(Cut("folder.png", kInside)).GetProblem(), Problem::Unsupported);
}

TEST_F(PngCutTest, AFailedWriteLeavesNothing) {
  world.folder.Write("in.png", MakePng({.size = {300, 300}}));
  world.folder.Write("out.png", "older");
  for (const int error : {ENOSPC, EIO}) {
    world.faults.Clear();
    world.faults.Set({.call = host::testing::DiskCall::Write, .nth = 1, .error = error, .pathHolds = ""});
    const Status cut = services.PngCut(Cut("in.png", {0, 0, 300, 300}));
    EXPECT_EQ(world.faults.Fired(), 1);
    EXPECT_FALSE(cut);
    EXPECT_EQ(cut.DiskFull(), error == ENOSPC) << cut.Why();
    EXPECT_EQ(world.folder.Read("out.png"), "older");
  }
  world.faults.Clear();
  EXPECT_TRUE(services.PngCut(Cut("in.png", kInside)));
}

TEST(PngChunks, AFileOfManyEmptyChunksEnds) {
  std::string png = MakePng({});
  std::string empty;
  for (int i = 0; i < 50000; ++i) empty += PngChunkOf("quLn", "");
  MemoryBytes bytes(WithChunks(png, "IEND", empty));
  EXPECT_TRUE(IsPngComplete(bytes));
  EXPECT_TRUE(HasPngChecksums(bytes, PngChunks::kFirst, 0));
}

}  // namespace
}  // namespace quillon::imaging
