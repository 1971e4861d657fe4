// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/jpeg/jpeg_head.h"

#include <gtest/gtest.h>

#include <string>

#include "imaging/metadata/exif_block.h"

namespace quillon::imaging {
namespace {

std::string Segment(int marker, const std::string& payload) {
  const std::size_t length = payload.size() + 2;
  std::string out = {'\xFF', static_cast<char>(marker), static_cast<char>(length >> 8), static_cast<char>(length)};
  return out + payload;
}

const std::string kStart = "\xFF\xD8";
const std::string kScan = "\xFF\xDA";
const std::string kExifName = std::string("Exif\0\0", 6);

std::string Jfif(int unit, int x, int y) {
  return Segment(0xE0, std::string("JFIF\0\1\1", 7) + std::string{static_cast<char>(unit), static_cast<char>(x >> 8),
                                                                  static_cast<char>(x), static_cast<char>(y >> 8),
                                                                  static_cast<char>(y), 0, 0});
}

TEST(JpegHeadTest, ReadsWhatStandsBeforeThePicture) {
  const std::string icc = std::string("ICC_PROFILE\0\1\1", 14) + "profile";
  const std::string bytes =
      kStart + Jfif(1, 300, 299) + Segment(0xE1, "http://other") + Segment(0xE1, kExifName + "first") +
      Segment(0xE1, kExifName + "second") + Segment(0xE2, icc) + Segment(0xE2, "MPF") +
      Segment(0xEE, std::string("Adobe\0d\0\0\0\0\0", 12)) + "\xFF\xFF" + Segment(0xDB, "table") + kScan + "data";
  JpegHead head;
  ASSERT_EQ(ParseJpegHead(bytes, head), HeadState::Complete);
  EXPECT_TRUE(head.jfif);
  EXPECT_EQ(head.unit, JpegHead::Unit::Inch);
  EXPECT_EQ(head.densityX, 300);
  EXPECT_EQ(head.densityY, 299);
  EXPECT_TRUE(head.adobe);
  EXPECT_EQ(head.exif, "first");
  ASSERT_EQ(head.icc.size(), 1u);
  EXPECT_EQ(head.icc[0], icc);
  EXPECT_EQ(head.Dpi(), 300);
}

TEST(JpegHeadTest, EveryBeginningAsksForMore) {
  const std::string bytes = kStart + Jfif(1, 300, 300) + Segment(0xFE, "comment") + kScan;
  for (std::size_t size = 3; size < bytes.size(); ++size) {
    JpegHead head;
    EXPECT_EQ(ParseJpegHead(std::string_view(bytes).substr(0, size), head), HeadState::More) << size;
  }
}

TEST(JpegHeadTest, Refusals) {
  JpegHead head;
  EXPECT_EQ(ParseJpegHead("", head), HeadState::NotJpeg);
  EXPECT_EQ(ParseJpegHead("\xFF\xD8", head), HeadState::NotJpeg);
  EXPECT_EQ(ParseJpegHead("GIF89a", head), HeadState::NotJpeg);
  EXPECT_EQ(ParseJpegHead("\xFF\xD8\xFF\xD9", head), HeadState::Broken);
  EXPECT_EQ(ParseJpegHead(std::string_view("\xFF\xD8\xFF\xE0\0\1", 6), head), HeadState::Broken);
}

TEST(JpegHeadTest, Dpi) {
  struct Case {
    std::string segments;
    int dpi;
  };
  const std::string exif = Segment(0xE1, kExifName + MinimalExif(1, 240));
  const Case cases[] = {{"", 0},
                        {Jfif(1, 72, 72), 72},
                        {Jfif(2, 118, 118), 300},  // 299.72
                        {Jfif(2, 100, 100), 254},
                        {Jfif(0, 1, 1), 0},
                        {Jfif(0, 1, 1) + exif, 240},
                        {Jfif(1, 0, 0) + exif, 240},
                        {Jfif(1, 72, 72) + exif, 72},
                        {exif, 240}};
  for (const Case& c : cases) {
    const std::string bytes = kStart + c.segments + kScan;
    JpegHead head;
    if (c.segments.empty()) {
      EXPECT_EQ(head.Dpi(), 0);
      continue;
    }
    ASSERT_EQ(ParseJpegHead(bytes, head), HeadState::Complete);
    EXPECT_EQ(head.Dpi(), c.dpi);
  }
}

}  // namespace
}  // namespace quillon::imaging
