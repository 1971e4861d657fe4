// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/measure.h"

#include <gtest/gtest.h>

#include "imaging/jpeg_maker.h"
#include "imaging/little_files.h"

#include <jpeglib.h>

namespace quillon::imaging {
namespace {

using namespace testing;

// Counts the reads and the bytes that they fetch.
class CountedBytes final : public Bytes {
 public:
  explicit CountedBytes(std::string content) : bytes_(std::move(content)) {}
  std::uint64_t Size() const override { return bytes_.Size(); }
  bool ReadAt(std::uint64_t offset, void* out, std::size_t size) override {
    ++reads;
    fetched += size;
    return bytes_.ReadAt(offset, out, size);
  }

  int reads = 0;
  std::uint64_t fetched = 0;

 private:
  MemoryBytes bytes_;
};

base::Size SizeOf(const std::string& content) {
  MemoryBytes bytes(content);
  HeaderFacts facts;
  EXPECT_EQ(ReadHeader(bytes, facts), HeaderKind::Known);
  return facts.size;
}

std::string Jpeg(std::vector<std::pair<int, std::string>> segments) {
  MakeOptions options;
  options.jfif = false;
  options.segments = std::move(segments);
  return MakeJpeg(TestPicture({61, 43}, options.colours), options);
}

std::string Psd(int version, unsigned width, unsigned height) {
  return "8BPS" + Big(static_cast<unsigned long>(version), 2) + std::string(6, '\0') + Big(3, 2) + Big(height, 4) +
         Big(width, 4) + Big(8, 2) + Big(3, 2);
}

TEST(HeaderReader, SidesOfEachFormat) {
  constexpr base::Size kSize{61, 43};
  EXPECT_EQ(SizeOf(Jpeg({})), kSize);
  EXPECT_EQ(SizeOf(Png(61, 43, "")), kSize);
  EXPECT_EQ(SizeOf(Gif(61, 43)), kSize);
  EXPECT_EQ(SizeOf(Bmp(61, 43, 0)), kSize);
  EXPECT_EQ(SizeOf(Tiff(false, 61, 43, 72, 2)), kSize);
  EXPECT_EQ(SizeOf(Tiff(true, 61, 43, 72, 2)), kSize);
  EXPECT_EQ(SizeOf(Psd(1, 61, 43)), kSize);
  EXPECT_EQ(SizeOf(Psd(2, 61, 43)), kSize);
}

TEST(HeaderReader, BmpsOfAllAges) {
  const std::string core = "BM" + Little(0, 8) + Little(26, 4) + Little(12, 4) + Little(61, 2) + Little(43, 2) +
                           Little(1, 2) + Little(24, 2);
  EXPECT_EQ(SizeOf(core), (base::Size{61, 43}));
  std::string topDown = Bmp(61, 43, 0);
  topDown.replace(22, 4, Little(static_cast<unsigned long>(-43), 4));
  EXPECT_EQ(SizeOf(topDown), (base::Size{61, 43}));
}

TEST(HeaderReader, SidesThatNoPictureHasAreNoSize) {
  std::string negative = Bmp(61, 43, 0);
  negative.replace(18, 4, Little(static_cast<unsigned long>(-61), 4));
  for (const std::string& content :
       {Png(0, 43, ""), Png(61, 0, ""), Png(-1, 43, ""), Gif(0, 43), negative, Bmp(61, 0, 0), Tiff(false, 0, 43, 72, 2),
        Psd(1, 0, 43), Psd(1, 61, 0x80000000), std::string("\x89PNG\r\n\x1A\n"), std::string("GIF89a=\0+", 9),
        std::string("BM"), std::string("II*\0\x08\0\0\0", 8), std::string("8BPS"), Jpeg({}).substr(0, 30)}) {
    EXPECT_EQ(SizeOf(content), base::Size{}) << content.substr(0, 8);
  }
}

TEST(HeaderReader, OtherKinds) {
  for (const std::string& content : {std::string(), std::string("x"), Tga(61, 43), std::string("RIFF....WEBPVP8 ")}) {
    MemoryBytes bytes(content);
    HeaderFacts facts;
    EXPECT_EQ(ReadHeader(bytes, facts), HeaderKind::Other);
    EXPECT_EQ(facts.size, base::Size{});
  }
  // Such a frame may hold every other row of its picture.
  MemoryBytes video(Jpeg({{JPEG_APP0, std::string("AVI1\1", 5) + std::string(9, '\0')}}));
  HeaderFacts facts;
  EXPECT_EQ(ReadHeader(video, facts), HeaderKind::Other);
}

TEST(HeaderReader, SegmentsBeforeTheFrame) {
  const std::string thumbnail = std::string("Exif\0\0", 6) + MakeJpeg(TestPicture({9, 7}, Colours::YCbCr), {});
  EXPECT_EQ(SizeOf(Jpeg({{JPEG_APP0 + 1, thumbnail}})), (base::Size{61, 43}));
  std::vector<std::pair<int, std::string>> many(40, {JPEG_APP0 + 2, std::string(65000, 'p')});
  EXPECT_EQ(SizeOf(Jpeg(many)), (base::Size{61, 43}));
}

TEST(HeaderReader, TheResolutionOfAPngMayFollowLargeChunks) {
  const std::string resolution = Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + "\x01");
  MemoryBytes bytes(Png(61, 43, Chunk("iCCP", std::string(3'000'000, 'p')) + resolution));
  HeaderFacts facts;
  ReadHeader(bytes, facts);
  EXPECT_EQ(facts.dpi, 300);
}

TEST(HeaderReader, AFewReadsAreEnough) {
  const std::string big(std::size_t{1} << 20, 'x');
  for (const std::string& content : {Jpeg({}) + big, Png(61, 43, "") + big, Gif(61, 43) + big, Bmp(61, 43, 0) + big,
                                     Tiff(false, 61, 43, 72, 2) + big, Psd(1, 61, 43) + big}) {
    CountedBytes bytes(content);
    HeaderFacts facts;
    ReadHeader(bytes, facts);
    EXPECT_EQ(facts.size, (base::Size{61, 43}));
    EXPECT_EQ(bytes.reads, 1);
    EXPECT_LE(bytes.fetched, BlockBytes::kBlock);
  }
}

// Chains that lead in circles or have no end are not followed.
TEST(HeaderReader, TheLengthOfChainsDoesNotMatter) {
  constexpr int kPages = 4000;
  constexpr int kChunks = 200'000;
  constexpr int kMostReads = 20;
  std::string largeChunks;
  for (int i = 0; i < 100; ++i) largeChunks += Chunk("quLn", std::string(BlockBytes::kBlock, 'x'));
  for (const std::string& content :
       {CyclicTiff(61, 43), TiffOfPages(kPages, 61, 43), PngOfChunks(kChunks, 61, 43), Png(61, 43, largeChunks)}) {
    CountedBytes bytes(content);
    HeaderFacts facts;
    EXPECT_EQ(ReadHeader(bytes, facts), HeaderKind::Known);
    EXPECT_EQ(facts.size, (base::Size{61, 43}));
    EXPECT_LE(bytes.reads, kMostReads);
  }
  // A directory at the header itself, whose entries are whatever stands there.
  std::string self("II*\0\x08\0\0\0", 8);
  self += Little(42, 2) + std::string(504, '\0') + Little(8, 4) + "....";
  EXPECT_EQ(self.size(), 522U);
  EXPECT_EQ(SizeOf(self), base::Size{});
}

}  // namespace
}  // namespace quillon::imaging
