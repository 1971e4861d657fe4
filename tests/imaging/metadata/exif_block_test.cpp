// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/metadata/exif_block.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace quillon::imaging {
namespace {

// Writes TIFF structures by hand, in either byte order.
class TiffWriter {
 public:
  explicit TiffWriter(bool big) : big_(big) { bytes_ = big ? std::string("MM\0\x2A", 4) : std::string("II\x2A\0", 4); }

  TiffWriter& Short(unsigned value) { return Number(value, 2); }
  TiffWriter& Long(unsigned value) { return Number(value, 4); }
  TiffWriter& Text(const std::string& text) {
    bytes_ += text;
    return *this;
  }
  TiffWriter& Entry(unsigned tag, unsigned type, unsigned count, unsigned value) {
    Short(tag).Short(type).Long(count);
    // A SHORT is stored in the first two of the four bytes.
    return type == 3 && count == 1 ? Short(value).Short(0) : Long(value);
  }
  std::size_t Size() const { return bytes_.size(); }
  const std::string& Bytes() const { return bytes_; }

 private:
  TiffWriter& Number(unsigned value, int size) {
    for (int i = 0; i < size; ++i) {
      const int shift = 8 * (big_ ? size - 1 - i : i);
      bytes_.push_back(static_cast<char>(value >> shift & 0xFF));
    }
    return *this;
  }

  bool big_;
  std::string bytes_;
};

unsigned Get(const std::string& bytes, std::size_t at, int size) {
  unsigned value = 0;
  for (int i = 0; i < size; ++i) {
    const std::size_t from = at + static_cast<std::size_t>(bytes[0] == 'M' ? i : size - 1 - i);
    value = value << 8 | static_cast<unsigned char>(bytes[from]);
  }
  return value;
}

const std::string kThumbnail = std::string("\xFF\xD8\xFF\xDB", 4) + "THUMBNAIL" + std::string("\xFF\xD9", 2);
const std::string kPreview = std::string("\xFF\xD8\xFF\xE0", 4) + "PREVIEW" + std::string("\xFF\xD9", 2);

// A block as cameras write it. Offsets of its pieces:
constexpr std::size_t kWidthValue = 18;
constexpr std::size_t kNextDirectory = 82;
constexpr std::size_t kXResolution = 86;
constexpr std::size_t kYResolution = 94;
constexpr std::size_t kUnitValue = 66;
constexpr std::size_t kDetails = 102;
constexpr std::size_t kPixelXValue = kDetails + 2 + 8;
constexpr std::size_t kPixelYValue = kDetails + 2 + 12 + 8;
constexpr std::size_t kMakerNote = 144;

struct Camera {
  std::string bytes;
  std::size_t second = 0;     // thumbnail directory
  std::size_t thumbnail = 0;  // its picture
};

Camera MakeCamera(bool big, const std::string& trailer = {}) {
  const std::string note = "NOTE" + kPreview + "END!";
  Camera camera;
  camera.second = kMakerNote + note.size();
  camera.thumbnail = camera.second + 2 + 2 * 12 + 4;
  const auto at = [](std::size_t offset) { return static_cast<unsigned>(offset); };
  TiffWriter w(big);
  w.Long(8).Short(6);
  w.Entry(0x0100, 4, 1, 4000);
  w.Entry(0x0112, 3, 1, 6);
  w.Entry(0x011A, 5, 1, at(kXResolution));
  w.Entry(0x011B, 5, 1, at(kYResolution));
  w.Entry(0x0128, 3, 1, 3);
  w.Entry(0x8769, 4, 1, at(kDetails));
  w.Long(at(camera.second));
  w.Long(1000).Long(10).Long(2000).Long(20);  // 100 dots per centimetre
  w.Short(3);
  w.Entry(0xA002, 4, 1, 4000);
  w.Entry(0xA003, 3, 1, 3000);
  w.Entry(0x927C, 7, at(note.size()), at(kMakerNote));
  w.Long(0).Text(note);
  w.Short(2);
  w.Entry(0x0201, 4, 1, at(camera.thumbnail));
  w.Entry(0x0202, 4, 1, at(kThumbnail.size()));
  w.Long(0).Text(kThumbnail).Text(trailer);
  camera.bytes = w.Bytes();
  return camera;
}

class JpegExifTest : public ::testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(ByteOrders, JpegExifTest, ::testing::Bool());

TEST_P(JpegExifTest, Facts) {
  const ExifFacts facts = ReadExif(MakeCamera(GetParam()).bytes);
  EXPECT_EQ(facts.orientation, 6);
  EXPECT_EQ(facts.dpi, 254);  // 100 dots per centimetre
}

TEST_P(JpegExifTest, DimensionsArePutRightAndNothingElseMoves) {
  const Camera camera = MakeCamera(GetParam());
  const std::string cut = CutExif(camera.bytes, {640, 480}, 0);
  EXPECT_EQ(Get(cut, kWidthValue, 4), 640u);
  EXPECT_EQ(Get(cut, kPixelXValue, 4), 640u);
  EXPECT_EQ(Get(cut, kPixelYValue, 2), 480u);
  EXPECT_EQ(ReadExif(cut).orientation, 6);
  EXPECT_EQ(ReadExif(cut).dpi, 254);
  EXPECT_EQ(cut.substr(kMakerNote, 4), "NOTE");
  EXPECT_EQ(cut.substr(kMakerNote + 4 + kPreview.size(), 4), "END!");
}

TEST_P(JpegExifTest, ResolutionIsPutRightWhenGiven) {
  const std::string cut = CutExif(MakeCamera(GetParam()).bytes, {640, 480}, 300);
  EXPECT_EQ(Get(cut, kXResolution, 4), 300u);
  EXPECT_EQ(Get(cut, kXResolution + 4, 4), 1u);
  EXPECT_EQ(Get(cut, kYResolution, 4), 300u);
  EXPECT_EQ(Get(cut, kYResolution + 4, 4), 1u);
  EXPECT_EQ(Get(cut, kUnitValue, 2), 2u);
  EXPECT_EQ(ReadExif(cut).dpi, 300);
}

TEST_P(JpegExifTest, ThumbnailAndPreviewAreGone) {
  const Camera camera = MakeCamera(GetParam());
  const std::string cut = CutExif(camera.bytes, {640, 480}, 0);
  EXPECT_EQ(cut.find("THUMBNAIL"), std::string::npos);
  EXPECT_EQ(cut.find("PREVIEW"), std::string::npos);
  EXPECT_EQ(Get(cut, kNextDirectory, 4), 0u);
  EXPECT_EQ(cut.size(), camera.thumbnail);  // it was the end of the block
}

TEST_P(JpegExifTest, ThumbnailInTheMiddleIsBlankedInPlace) {
  const Camera camera = MakeCamera(GetParam(), "EXTRAS");
  const std::string cut = CutExif(camera.bytes, {640, 480}, 0);
  EXPECT_EQ(cut.size(), camera.bytes.size());
  EXPECT_EQ(cut.substr(camera.thumbnail), std::string(kThumbnail.size(), '\0') + "EXTRAS");
}

TEST_P(JpegExifTest, UncompressedThumbnailAndSubdirectoriesAreBlanked) {
  TiffWriter w(GetParam());
  w.Long(8).Short(1).Entry(0x014A, 4, 1, 26).Long(64);  // one subdirectory; the next directory is at 64
  w.Short(2).Entry(0x0201, 4, 1, 56).Entry(0x0202, 4, 1, 6).Long(0).Text("SUBPIC..");
  w.Short(2).Entry(0x0111, 4, 1, 94).Entry(0x0117, 4, 1, 5).Long(0).Text("STRIPS");
  ASSERT_EQ(w.Size(), 100u);
  const std::string cut = CutExif(w.Bytes(), {1, 1}, 0);
  EXPECT_EQ(cut.substr(56, 8), std::string(6, '\0') + "..");
  EXPECT_EQ(cut.size(), 94u);
  EXPECT_EQ(Get(cut, 22, 4), 0u);
  EXPECT_EQ(Get(cut, 14, 4), 0u);  // the entry has no values any more
}

TEST_P(JpegExifTest, PreviewThatDoesNotEndIsCutOff) {
  TiffWriter w(GetParam());
  w.Long(8).Short(0).Long(0).Text("\xFF\xD8\xFF\xE1 preview");
  EXPECT_EQ(CutExif(w.Bytes(), {1, 1}, 0).size(), 14u);
}

TEST_P(JpegExifTest, EveryTruncationAndEveryByteIsSurvived) {
  const std::string bytes = MakeCamera(GetParam()).bytes;
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    EXPECT_LE(CutExif(bytes.substr(0, size), {5, 5}, 72).size(), size);
    ReadExif(bytes.substr(0, size));
  }
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const int value : {0, 1, 0x7F, 0x80, 0xFF}) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(value);
      EXPECT_LE(CutExif(changed, {5, 5}, 72).size(), bytes.size());
      const ExifFacts facts = ReadExif(changed);
      EXPECT_GE(facts.orientation, 1);
      EXPECT_LE(facts.orientation, 8);
    }
  }
}

TEST_P(JpegExifTest, DirectoriesThatLeadInCirclesEnd) {
  TiffWriter w(GetParam());
  w.Long(8).Short(1).Entry(0x0112, 3, 1, 3).Long(8);
  const std::string cut = CutExif(w.Bytes(), {1, 1}, 0);
  EXPECT_EQ(ReadExif(cut).orientation, 3);
}

TEST(JpegExifPlainTest, NoTiffStructureIsLeftOut) {
  EXPECT_TRUE(CutExif("", {1, 1}, 0).empty());
  EXPECT_TRUE(CutExif("neither order", {1, 1}, 0).empty());
  EXPECT_TRUE(CutExif(std::string("MM\0\x2A\0\0\xFF\0", 8), {1, 1}, 0).empty());
  EXPECT_EQ(ReadExif("neither order").orientation, 1);
  EXPECT_EQ(ReadExif("").dpi, 0);
}

TEST(JpegExifPlainTest, OddValuesAreNotUsed) {
  TiffWriter w(true);
  w.Long(8).Short(2).Entry(0x0112, 3, 1, 9).Entry(0x011A, 5, 1, 38).Long(0).Long(72).Long(0);
  EXPECT_EQ(ReadExif(w.Bytes()).orientation, 1);
  EXPECT_EQ(ReadExif(w.Bytes()).dpi, 0);  // divided by zero
}

TEST(JpegExifPlainTest, Minimal) {
  EXPECT_TRUE(MinimalExif(1, 0).empty());
  for (const int orientation : {1, 2, 8}) {
    for (const int dpi : {0, 72, 65535}) {
      const ExifFacts facts = ReadExif(MinimalExif(orientation, dpi));
      EXPECT_EQ(facts.orientation, orientation);
      EXPECT_EQ(facts.dpi, dpi);
    }
  }
  // One entry, then the end of the directories.
  EXPECT_EQ(MinimalExif(6, 0), std::string("MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 26));
}

}  // namespace
}  // namespace quillon::imaging
