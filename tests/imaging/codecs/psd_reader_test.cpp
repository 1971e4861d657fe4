// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/codecs/readers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "imaging/byte_text.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using testing::ByteText;

struct Parts {
  int version = 1;
  int channels = 3;
  int width = 2;
  int height = 1;
  int bits = 8;
  int mode = 3;
  std::string colours = {};
  std::string resources = {};
  std::string layers = {};
  int packing = 0;
  std::string pixels = {};
};

std::string Psd(const Parts& parts) {
  ByteText file;
  file.Text("8BPS").Big16(static_cast<unsigned>(parts.version)).Zeros(6);
  file.Big16(static_cast<unsigned>(parts.channels)).Big32(static_cast<unsigned>(parts.height));
  file.Big32(static_cast<unsigned>(parts.width)).Big16(static_cast<unsigned>(parts.bits));
  file.Big16(static_cast<unsigned>(parts.mode));
  file.Big32(static_cast<unsigned>(parts.colours.size())).Text(parts.colours);
  file.Big32(static_cast<unsigned>(parts.resources.size())).Text(parts.resources);
  if (parts.version == 2) file.Big32(0);
  file.Big32(static_cast<unsigned>(parts.layers.size())).Text(parts.layers);
  return file.Big16(static_cast<unsigned>(parts.packing)).Text(parts.pixels).Bytes();
}

Status Read(const std::string& file, std::vector<int>& out, const Limits& limits = {}) {
  std::shared_ptr<RowSource> rows;
  if (Status status = OpenPsd(std::make_shared<MemoryBytes>(file), limits, rows); !status) return status;
  const RowFacts& facts = rows->Facts();
  std::vector<unsigned char> row(static_cast<std::size_t>(facts.size.width * facts.PixelBytes()));
  for (int y = 0; y < facts.size.height; ++y) {
    if (Status status = rows->ReadSpan(y, 0, facts.size.width, row.data()); !status) return status;
    for (std::size_t i = 0; i < row.size(); i += static_cast<std::size_t>(facts.bits / 8)) {
      std::uint16_t deep = row[i];
      if (facts.bits == 16) std::memcpy(&deep, &row[i], 2);
      out.push_back(deep);
    }
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

const std::string kPlanes = ByteText().U8({1, 2, 3, 4, 5, 6}).Bytes();

TEST(PsdReader, InterleavesTheChannels) {
  EXPECT_EQ(ReadWhole(Psd({.pixels = kPlanes})), (std::vector<int>{1, 3, 5, 2, 4, 6}));
}

TEST(PsdReader, LeavesOutFurtherChannelsAndPassesOverLayers) {
  EXPECT_EQ(ReadWhole(Psd({.channels = 5, .layers = "some layers", .pixels = kPlanes + "abcd"})),
            (std::vector<int>{1, 3, 5, 2, 4, 6}));
}

TEST(PsdReader, ReadsSixteenBits) {
  EXPECT_EQ(
      ReadWhole(Psd({.channels = 1, .bits = 16, .mode = 1, .pixels = ByteText().Big16(258).Big16(65535).Bytes()})),
      (std::vector<int>{258, 65535}));
}

TEST(PsdReader, InkIsTurnedRound) {
  EXPECT_EQ(ReadWhole(Psd({.channels = 4, .width = 1, .mode = 4, .pixels = ByteText().U8({255, 0, 155, 250}).Bytes()})),
            (std::vector<int>{0, 255, 100, 5}));
}

TEST(PsdReader, ReadsBitmapIndexedAndDuotone) {
  EXPECT_EQ(ReadWhole(Psd({.channels = 1, .width = 10, .bits = 1, .mode = 0, .pixels = "\x80\x40"})),
            (std::vector<int>{0, 255, 255, 255, 255, 255, 255, 255, 255, 0}));
  std::string palette(768, '\0');
  palette[7] = 10;
  palette[256 + 7] = 20;
  palette[512 + 7] = 30;
  EXPECT_EQ(
      ReadWhole(Psd({.channels = 1, .width = 2, .mode = 2, .colours = palette, .pixels = std::string("\0\7", 2)})),
      (std::vector<int>{0, 0, 0, 10, 20, 30}));
  EXPECT_EQ(ReadWhole(Psd({.channels = 1, .mode = 8, .colours = "any", .pixels = "\x21\x22"})),
            (std::vector<int>{33, 34}));
}

// Three channels of two rows. Each row of five pixels is packed in a different way.
Parts Packed() {
  const std::string rows[] = {
      ByteText().U8({0xFC, 7}).Bytes(),              // five of 7
      ByteText().U8({4, 1, 2, 3, 4, 5}).Bytes(),     // five as they are
      ByteText().U8({0xFF, 9, 2, 1, 2, 3}).Bytes(),  // two of 9, three as they are
      ByteText().U8({0x80, 0xFC, 8}).Bytes(),        // a code without meaning, five of 8
      ByteText().U8({0xFE, 6, 0xFF, 5}).Bytes(),     // three of 6, two of 5
      ByteText().U8({0, 4, 0xFD, 3}).Bytes(),        // one 4, four of 3
  };
  ByteText lengths;
  std::string data;
  for (const std::string& row : rows) {
    lengths.Big16(static_cast<unsigned>(row.size()));
    data += row;
  }
  return {.width = 5, .height = 2, .packing = 1, .pixels = lengths.Bytes() + data};
}

TEST(PsdReader, UnpacksRows) {
  EXPECT_EQ(ReadWhole(Psd(Packed())), (std::vector<int>{7, 9, 6, 7, 9, 6, 7, 1, 6, 7, 2, 5, 7, 3, 5,  //
                                                        1, 8, 4, 2, 8, 3, 3, 8, 3, 4, 8, 3, 5, 8, 3}));
}

TEST(PsdReader, ReadsTheLargeForm) {
  const std::string row = ByteText().U8({0xFF, 9}).Bytes();
  Parts parts{.version = 2, .channels = 1, .mode = 1, .packing = 1};
  parts.pixels = ByteText().Big32(2).Text(row).Bytes();
  EXPECT_EQ(ReadWhole(Psd(parts)), (std::vector<int>{9, 9}));
}

TEST(PsdReader, ReadsPartsOfRows) {
  std::shared_ptr<RowSource> rows;
  ASSERT_TRUE(OpenPsd(std::make_shared<MemoryBytes>(Psd(Packed())), {}, rows));
  unsigned char span[6];
  ASSERT_TRUE(rows->ReadSpan(1, 3, 2, span));
  EXPECT_EQ(std::vector<int>(span, span + 6), (std::vector<int>{4, 8, 3, 5, 8, 3}));
}

std::string Resource(int id, const std::string& name, const std::string& data) {
  ByteText text;
  text.Text("8BIM").Big16(static_cast<unsigned>(id)).U8({static_cast<int>(name.size())}).Text(name);
  if (name.size() % 2 == 0) text.Zeros(1);
  text.Big32(static_cast<unsigned>(data.size())).Text(data);
  if (data.size() % 2 == 1) text.Zeros(1);
  return text.Bytes();
}

TEST(PsdReader, ReadsResolutionAndProfile) {
  const std::string resolution =
      ByteText().Big32(300 << 16).Big16(1).Big16(1).Big32(300 << 16).Big16(1).Big16(1).Bytes();
  const std::string resources =
      Resource(1000, "odd", "abc") + Resource(1005, "", resolution) + Resource(1039, "even", "a profile");
  std::shared_ptr<RowSource> rows;
  ASSERT_TRUE(OpenPsd(std::make_shared<MemoryBytes>(Psd({.resources = resources, .pixels = kPlanes})), {}, rows));
  EXPECT_EQ(rows->Facts().dpi, 300);
  EXPECT_EQ(rows->Facts().profile, "a profile");
  // Resources after a malformed one are ignored; the picture is still read.
  EXPECT_EQ(ReadWhole(Psd({.resources = "nonsense" + resources, .pixels = kPlanes})),
            (std::vector<int>{1, 3, 5, 2, 4, 6}));
}

TEST(PsdReader, RefusesWhatItCannotRead) {
  struct Case {
    const char* name;
    Parts parts;
    Problem problem;
  };
  const std::string some(4096, '\0');
  const Case cases[] = {
      {"version", {.version = 3, .pixels = some}, Problem::Damaged},
      {"no channels", {.channels = 0, .pixels = some}, Problem::Damaged},
      {"too few channels", {.channels = 2, .pixels = some}, Problem::Damaged},
      {"too few inks", {.channels = 3, .mode = 4, .pixels = some}, Problem::Damaged},
      {"too many channels", {.channels = 57, .pixels = some}, Problem::Damaged},
      {"no width", {.width = 0, .pixels = some}, Problem::Damaged},
      {"no height", {.height = 0, .pixels = some}, Problem::Damaged},
      {"absurd sides", {.width = -1, .height = -1, .pixels = some}, Problem::TooLarge},
      {"more than the file has", {.width = 30000, .height = 30000, .pixels = some}, Problem::Damaged},
      {"more rows than the table has",
       {.width = 30000, .height = 30000, .packing = 1, .pixels = some},
       Problem::Damaged},
      {"32 bits", {.bits = 32, .pixels = some}, Problem::Unsupported},
      {"odd depth", {.bits = 9, .pixels = some}, Problem::Damaged},
      {"1 bit of colour", {.bits = 1, .pixels = some}, Problem::Damaged},
      {"Lab", {.mode = 9, .pixels = some}, Problem::Unsupported},
      {"multichannel", {.mode = 7, .pixels = some}, Problem::Unsupported},
      {"unknown mode", {.mode = 5, .pixels = some}, Problem::Damaged},
      {"no palette", {.channels = 1, .mode = 2, .pixels = some}, Problem::Damaged},
      {"zip", {.packing = 2, .pixels = some}, Problem::Unsupported},
      {"unknown packing", {.packing = 4, .pixels = some}, Problem::Damaged},
      {"rows of no length", {.packing = 1, .pixels = some}, Problem::Damaged},
  };
  for (const Case& c : cases) EXPECT_EQ(ProblemOf(Psd(c.parts)), c.problem) << c.name;
}

TEST(PsdReader, PackedRowsMustFillTheirWidth) {
  struct Case {
    const char* name;
    std::string row;
  };
  for (const Case& c :
       {Case{"too long", ByteText().U8({0xFE, 1}).Bytes()}, Case{"too short", ByteText().U8({0, 1}).Bytes()},
        Case{"cut off", ByteText().U8({1, 1}).Bytes()}, Case{"a code alone", "\xFF"}}) {
    Parts parts{.channels = 1, .mode = 1, .packing = 1};
    parts.pixels = ByteText().Big16(static_cast<unsigned>(c.row.size())).Text(c.row).Text("extras").Bytes();
    EXPECT_EQ(ProblemOf(Psd(parts)), Problem::Damaged) << c.name;
  }
}

TEST(PsdReader, EveryCutOfAFileIsFound) {
  for (const std::string& file :
       {Psd({.resources = Resource(1005, "", "12345678"), .pixels = kPlanes}), Psd(Packed())}) {
    for (std::size_t size = 0; size < file.size(); ++size) {
      EXPECT_NE(ProblemOf(file.substr(0, size)), Problem::None) << size << " of " << file.size();
    }
  }
}

}  // namespace
}  // namespace quillon::imaging
