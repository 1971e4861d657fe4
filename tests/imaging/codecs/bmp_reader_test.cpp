// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/readers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "imaging/byte_text.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::ByteText;

struct Parts {
  int headerSize = 40;
  int width = 0;
  int height = 0;
  int bits = 24;
  int packing = 0;
  int colours = 0;
  int perMetre = 0;
  std::string extra = {};  // masks and palette
  std::string pixels = {};
};

std::string Bmp(const Parts& parts) {
  ByteText header;
  header.Little32(static_cast<unsigned>(parts.headerSize));
  if (parts.headerSize == 12) {
    header.Little16(static_cast<unsigned>(parts.width)).Little16(static_cast<unsigned>(parts.height));
    header.Little16(1).Little16(static_cast<unsigned>(parts.bits));
  } else {
    header.Little32(static_cast<unsigned>(parts.width)).Little32(static_cast<unsigned>(parts.height));
    header.Little16(1).Little16(static_cast<unsigned>(parts.bits)).Little32(static_cast<unsigned>(parts.packing));
    header.Little32(0).Little32(static_cast<unsigned>(parts.perMetre)).Little32(0);
    header.Little32(static_cast<unsigned>(parts.colours)).Little32(0);
    // Longer headers contain the masks.
    if (parts.headerSize > 40)
      header.Text(parts.extra).Zeros(static_cast<std::size_t>(parts.headerSize) - 40 - parts.extra.size());
  }
  const std::string afterHeader = parts.headerSize > 40 ? "" : parts.extra;
  const std::size_t start = 14 + header.Size() + afterHeader.size();
  ByteText file;
  file.Text("BM").Little32(static_cast<unsigned>(start + parts.pixels.size())).Little32(0);
  file.Little32(static_cast<unsigned>(start)).Text(header.Bytes()).Text(afterHeader).Text(parts.pixels);
  return file.Bytes();
}

Status Read(const std::string& file, std::vector<int>& out, const Limits& limits = {}) {
  std::shared_ptr<RowSource> rows;
  if (Status status = OpenBmp(std::make_shared<MemoryBytes>(file), limits, rows); !status) return status;
  const base::Size size = rows->Facts().size;
  std::vector<unsigned char> row(static_cast<std::size_t>(size.width) * 3);
  for (int y = 0; y < size.height; ++y) {
    if (Status status = rows->ReadSpan(y, 0, size.width, row.data()); !status) return status;
    out.insert(out.end(), row.begin(), row.end());
  }
  return Status::Ok();
}

std::vector<int> ReadWhole(const std::string& file) {
  std::vector<int> out;
  const Status status = Read(file, out);
  EXPECT_TRUE(status) << status.Why();
  return out;
}

Problem ProblemOf(const std::string& file, const Limits& limits = {}) {
  std::vector<int> out;
  const Status status = Read(file, out, limits);
  EXPECT_EQ(status.Why().empty(), static_cast<bool>(status));
  return status.GetProblem();
}

// 2 x 2: red, green / blue, white. Rows are stored from the bottom up and padded to 4 bytes.
Parts Plain24() {
  return {.width = 2,
          .height = 2,
          .pixels = ByteText().U8({255, 0, 0, 255, 255, 255, 0, 0}).U8({0, 0, 255, 0, 255, 0, 0, 0}).Bytes()};
}
const std::vector<int> kFourColours = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
const std::string kBlackRedGreenWhite =
    ByteText().U8({0, 0, 0, 0}).U8({0, 0, 255, 0}).U8({0, 255, 0, 0}).U8({255, 255, 255, 0}).Bytes();

TEST(BmpReader, ReadsTwentyFourBits) { EXPECT_EQ(ReadWhole(Bmp(Plain24())), kFourColours); }

TEST(BmpReader, ReadsTopDownRows) {
  Parts parts = Plain24();
  parts.height = -2;
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255, 0}));
}

TEST(BmpReader, AcceptsALastRowWithoutItsPadding) {
  std::string file = Bmp(Plain24());
  file.resize(file.size() - 2);
  EXPECT_EQ(ReadWhole(file), kFourColours);
}

TEST(BmpReader, ReadsOneBitWithPalette) {
  const std::string palette = ByteText().U8({10, 20, 30, 0}).U8({40, 50, 60, 0}).Bytes();
  // 1010 0000 01: ten pixels.
  const Parts parts{.width = 10, .height = 1, .bits = 1, .extra = palette, .pixels = std::string("\xA0\x40\0\0", 4)};
  const std::vector<int> pixels = ReadWhole(Bmp(parts));
  const std::vector<int> index = {1, 0, 1, 0, 0, 0, 0, 0, 0, 1};
  ASSERT_EQ(pixels.size(), 30u);
  for (std::size_t x = 0; x < 10; ++x) {
    EXPECT_EQ(pixels[x * 3], index[x] ? 60 : 30) << x;
    EXPECT_EQ(pixels[x * 3 + 1], index[x] ? 50 : 20) << x;
    EXPECT_EQ(pixels[x * 3 + 2], index[x] ? 40 : 10) << x;
  }
}

TEST(BmpReader, ReadsTwoAndFourAndEightBitsWithPalette) {
  struct Case {
    int bits;
    std::string pixels;
  };
  // Indices 1, 2, 3 of black, red, green, white.
  for (const Case& c : {Case{2, std::string("\x6C\0\0\0", 4)}, Case{4, std::string("\x12\x30\0\0", 4)},
                        Case{8, std::string("\1\2\3\0", 4)}}) {
    const Parts parts{
        .width = 3, .height = 1, .bits = c.bits, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = c.pixels};
    EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{255, 0, 0, 0, 255, 0, 255, 255, 255})) << c.bits;
  }
}

TEST(BmpReader, AnIndexBeyondThePaletteIsBlack) {
  const Parts parts{.width = 1,
                    .height = 1,
                    .bits = 8,
                    .colours = 4,
                    .extra = kBlackRedGreenWhite,
                    .pixels = std::string("\x09\0\0\0", 4)};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{0, 0, 0}));
}

TEST(BmpReader, ReadsSixteenBitsAsFiveFiveFive) {
  // 31,0,0; 0,16,0; 0,0,1.
  const Parts parts{.width = 3,
                    .height = 1,
                    .bits = 16,
                    .pixels = ByteText().Little16(0x7C00).Little16(0x0200).Little16(0x0001).Little16(0).Bytes()};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{255, 0, 0, 0, 132, 0, 0, 0, 8}));
}

TEST(BmpReader, ReadsBitFieldsAfterTheShortHeader) {
  const std::string masks = ByteText().Little32(0xF800).Little32(0x07E0).Little32(0x001F).Bytes();
  const Parts parts{.width = 2,
                    .height = 1,
                    .bits = 16,
                    .packing = 3,
                    .extra = masks,
                    .pixels = ByteText().Little16(0xFFFF).Little16(0x0400).Bytes()};
  // 32 of 63 greens: 129.5 is rounded up.
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{255, 255, 255, 0, 130, 0}));
}

TEST(BmpReader, ReadsBitFieldsInTheLongHeader) {
  // Ten bits a colour, and an alpha mask that is ignored.
  const std::string masks =
      ByteText().Little32(0x3FF00000).Little32(0x000FFC00).Little32(0x000003FF).Little32(0xC0000000).Bytes();
  const Parts parts{.headerSize = 108,
                    .width = 2,
                    .height = 1,
                    .bits = 32,
                    .packing = 3,
                    .extra = masks,
                    .pixels = ByteText().Little32(0x3FF00000).Little32(0x00080001).Bytes()};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{255, 0, 0, 0, 128, 0}));
}

TEST(BmpReader, ReadsThirtyTwoBitsWithoutAlpha) {
  const Parts parts{.width = 1, .height = 1, .bits = 32, .pixels = std::string("\1\2\3\0", 4)};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{3, 2, 1}));
}

TEST(BmpReader, ReadsTheFirstHeaderOfOs2) {
  const std::string palette = ByteText().U8({0, 0, 0}).U8({0, 0, 255}).Bytes();
  const Parts parts{
      .headerSize = 12, .width = 2, .height = 1, .bits = 1, .extra = palette, .pixels = std::string("\x40\0\0\0", 4)};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{0, 0, 0, 255, 0, 0}));
}

TEST(BmpReader, UnpacksRle8) {
  // Bottom row: three of 1, then the literal 2, 3, 1 (padded). Top row: one step right, then two of 3, end.
  const std::string data = ByteText().U8({3, 1, 0, 3, 2, 3, 1, 0, 0, 0}).U8({0, 2, 1, 0, 2, 3, 0, 1}).Bytes();
  const Parts parts{
      .width = 6, .height = 2, .bits = 8, .packing = 1, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = data};
  const std::vector<int> black = {0, 0, 0}, red = {255, 0, 0}, green = {0, 255, 0}, white = {255, 255, 255};
  std::vector<int> expected;
  for (const auto* colour : {&black, &white, &white, &black, &black, &black, &red, &red, &red, &green, &white, &red}) {
    expected.insert(expected.end(), colour->begin(), colour->end());
  }
  EXPECT_EQ(ReadWhole(Bmp(parts)), expected);
}

TEST(BmpReader, UnpacksRleFromTheTop) {
  const std::string data = ByteText().U8({2, 1, 0, 0}).U8({2, 2, 0, 1}).Bytes();
  Parts parts{
      .width = 2, .height = -2, .bits = 8, .packing = 1, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = data};
  const std::vector<int> redOverGreen = {255, 0, 0, 255, 0, 0, 0, 255, 0, 0, 255, 0};
  EXPECT_EQ(ReadWhole(Bmp(parts)), redOverGreen);
  parts.bits = 4;
  parts.packing = 2;
  parts.pixels = ByteText().U8({2, 0x11, 0, 0}).U8({2, 0x22, 0, 1}).Bytes();
  EXPECT_EQ(ReadWhole(Bmp(parts)), redOverGreen);
}

TEST(BmpReader, UnpacksRle4) {
  // Three of 1,2,1; literal of three 3,3,2 in two bytes; end.
  const std::string data = ByteText().U8({3, 0x12, 0, 3, 0x33, 0x20, 0, 1}).Bytes();
  const Parts parts{
      .width = 6, .height = 1, .bits = 4, .packing = 2, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = data};
  const std::vector<int> pixels = ReadWhole(Bmp(parts));
  EXPECT_EQ(pixels, (std::vector<int>{255, 0, 0, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255, 0, 255, 0}));
}

TEST(BmpReader, DropsRlePixelsBeyondARow) {
  const std::string data = ByteText().U8({9, 1, 0, 1}).Bytes();
  const Parts parts{
      .width = 2, .height = 1, .bits = 8, .packing = 1, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = data};
  EXPECT_EQ(ReadWhole(Bmp(parts)), (std::vector<int>{255, 0, 0, 255, 0, 0}));
}

TEST(BmpReader, RleMustReachItsEnd) {
  struct Case {
    const char* name;
    std::string data;
    bool whole;
  };
  const Case cases[] = {
      {"no end mark, all rows filled", ByteText().U8({2, 1, 0, 0, 2, 1}).Bytes(), true},
      {"no end mark, row missing", ByteText().U8({2, 1, 0, 0}).Bytes(), false},
      {"literal cut off", ByteText().U8({0, 4, 1, 1}).Bytes(), false},
      {"move cut off", ByteText().U8({0, 2, 1}).Bytes(), false},
      {"rows above the picture", ByteText().U8({0, 0, 0, 0, 2, 1, 0, 1}).Bytes(), false},
      {"move above the picture", ByteText().U8({0, 2, 0, 9, 0, 1}).Bytes(), false},
      {"nothing at all", "", false},
  };
  for (const Case& c : cases) {
    const Parts parts{
        .width = 2, .height = 2, .bits = 8, .packing = 1, .colours = 4, .extra = kBlackRedGreenWhite, .pixels = c.data};
    EXPECT_EQ(ProblemOf(Bmp(parts)), c.whole ? Problem::None : Problem::Damaged) << c.name;
  }
}

TEST(BmpReader, ReadsPartsOfRows) {
  const Parts parts{.width = 8,
                    .height = 1,
                    .bits = 2,
                    .colours = 4,
                    .extra = kBlackRedGreenWhite,
                    .pixels = std::string("\x1B\xE4\0\0", 4)};
  std::shared_ptr<RowSource> rows;
  ASSERT_TRUE(OpenBmp(std::make_shared<MemoryBytes>(Bmp(parts)), {}, rows));
  std::vector<unsigned char> span(9);
  ASSERT_TRUE(rows->ReadSpan(0, 3, 3, span.data()));  // indices 0 1 2 [3 3 2] 1 0
  EXPECT_EQ(span, (std::vector<unsigned char>{255, 255, 255, 255, 255, 255, 0, 255, 0}));
}

TEST(BmpReader, ReadsTheResolution) {
  for (const auto& [perMetre, dpi] :
       {std::pair{11811, 300}, {10000, 254}, {2835, 72}, {0, 0}, {-5, 0}, {2000000000, 0}}) {
    Parts parts = Plain24();
    parts.perMetre = perMetre;
    std::shared_ptr<RowSource> rows;
    ASSERT_TRUE(OpenBmp(std::make_shared<MemoryBytes>(Bmp(parts)), {}, rows));
    EXPECT_EQ(rows->Facts().dpi, dpi) << perMetre;
  }
}

TEST(BmpReader, RefusesWhatContradictsItself) {
  struct Case {
    const char* name;
    Parts parts;
    Problem problem;
  };
  const std::string some(4096, '\0');
  const Case cases[] = {
      {"no width", {.width = 0, .height = 2, .pixels = some}, Problem::Damaged},
      {"negative width", {.width = -2, .height = 2, .pixels = some}, Problem::Damaged},
      {"no height", {.width = 2, .height = 0, .pixels = some}, Problem::Damaged},
      {"lowest height", {.width = 2, .height = INT32_MIN, .pixels = some}, Problem::TooLarge},
      {"absurd sides", {.width = 2000000000, .height = 2000000000, .pixels = some}, Problem::TooLarge},
      {"more pixels than the file has", {.width = 400000, .height = 9999, .pixels = some}, Problem::Damaged},
      {"odd depth", {.width = 2, .height = 2, .bits = 7, .pixels = some}, Problem::Damaged},
      {"no depth", {.width = 2, .height = 2, .bits = 0, .pixels = some}, Problem::Damaged},
      {"rle8 of 24 bits", {.width = 2, .height = 2, .bits = 24, .packing = 1, .pixels = some}, Problem::Damaged},
      {"rle4 of 8 bits", {.width = 2, .height = 2, .bits = 8, .packing = 2, .pixels = some}, Problem::Damaged},
      {"rle top-down", {.width = 2, .height = -2, .bits = 8, .packing = 1, .pixels = some}, Problem::Damaged},
      {"fields of 24 bits", {.width = 2, .height = 2, .bits = 24, .packing = 3, .pixels = some}, Problem::Damaged},
      {"unknown packing", {.width = 2, .height = 2, .packing = 77, .pixels = some}, Problem::Damaged},
      {"jpeg inside", {.width = 2, .height = 2, .packing = 4, .pixels = some}, Problem::Unsupported},
      {"png inside", {.width = 2, .height = 2, .packing = 5, .pixels = some}, Problem::Unsupported},
      {"os/2 fax",
       {.headerSize = 64, .width = 2, .height = 2, .bits = 1, .packing = 3, .pixels = some},
       Problem::Unsupported},
      {"header of no known size", {.headerSize = 4000, .width = 2, .height = 2, .pixels = some}, Problem::Damaged},
  };
  for (const Case& c : cases) EXPECT_EQ(ProblemOf(Bmp(c.parts)), c.problem) << c.name;
}

TEST(BmpReader, ABlankRlePictureMayNotClaimMoreThanItCanHold) {
  const Parts parts{.width = 30000,
                    .height = 30000,
                    .bits = 8,
                    .packing = 1,
                    .colours = 4,
                    .extra = kBlackRedGreenWhite,
                    .pixels = std::string("\0\1", 2)};
  EXPECT_EQ(ProblemOf(Bmp(parts)), Problem::Damaged);
  Limits tight;
  tight.memory = 100;
  const Parts small{.width = 11,
                    .height = 10,
                    .bits = 8,
                    .packing = 1,
                    .colours = 4,
                    .extra = kBlackRedGreenWhite,
                    .pixels = std::string("\0\1", 2)};
  EXPECT_EQ(ProblemOf(Bmp(small), tight), Problem::TooLarge);
}

TEST(BmpReader, EveryCutOfAFileIsFound) {
  const std::string palette = kBlackRedGreenWhite;
  const std::string files[] = {
      Bmp({.width = 3, .height = 3, .pixels = std::string(36, 'x')}),
      Bmp({.width = 4, .height = 2, .bits = 8, .colours = 4, .extra = palette, .pixels = std::string(8, '\1')}),
      Bmp({.width = 2,
           .height = 2,
           .bits = 8,
           .packing = 1,
           .colours = 4,
           .extra = palette,
           .pixels = ByteText().U8({2, 1, 0, 0, 2, 2}).Bytes()}),
  };
  for (const std::string& file : files) {
    const std::size_t padding = file.size() == 90 ? 3 : 0;  // of the last of the 9-byte rows
    for (std::size_t size = 0; size + padding < file.size(); ++size) {
      EXPECT_NE(ProblemOf(file.substr(0, size)), Problem::None) << size << " of " << file.size();
    }
  }
}

TEST(BmpReader, AWrongPixelOffsetIsDamage) {
  for (const unsigned offset : {1u, 20u, 53u, 4000u, 0xFFFFFFFFu}) {
    std::string file = Bmp(Plain24());
    file.replace(10, 4, ByteText().Little32(offset).Bytes());
    EXPECT_EQ(ProblemOf(file), Problem::Damaged) << offset;
  }
}

}  // namespace
}  // namespace quillon::imaging
