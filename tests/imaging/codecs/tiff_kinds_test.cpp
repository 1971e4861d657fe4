// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Kinds of TIFF that libvips does not read.
#include <gtest/gtest.h>
#include <tiffio.h>

#include "imaging/byte_text.h"
#include "imaging/codecs/vips_loader.h"
#include "imaging/pictures.h"

namespace quillon::imaging::testing {
namespace {

constexpr int kWidth = 70;
constexpr int kHeight = 50;
constexpr int kTile = 32;
constexpr int kRowsPerStrip = 16;

struct Kind {
  int samples = 3;
  int bits = 8;
  int photometric = PHOTOMETRIC_RGB;
  int planes = PLANARCONFIG_CONTIG;
  int subsampling = 0;  // of YCbCr, in both directions
  bool alpha = false;   // the last sample is unassociated alpha
};

using TiffFile = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

class TiffKindsTest : public ServicesTest {
 protected:
  TiffFile Create(const std::string& name, const Kind& kind) {
    TiffFile tiff(TIFFOpen(Path(name).c_str(), "w"), TIFFClose);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, kWidth);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, kHeight);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, kind.samples);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, kind.photometric);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, kind.planes);
    TIFFSetField(tiff.get(), TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff.get(), TIFFTAG_XRESOLUTION, 300.0);
    TIFFSetField(tiff.get(), TIFFTAG_YRESOLUTION, 300.0);
    const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    if (kind.alpha) TIFFSetField(tiff.get(), TIFFTAG_EXTRASAMPLES, 1, &alpha);
    if (kind.subsampling > 0) TIFFSetField(tiff.get(), TIFFTAG_YCBCRSUBSAMPLING, kind.subsampling, kind.subsampling);
    return tiff;
  }

  // 8-bit samples in tiles with separate planes.
  std::string Tiles(const std::string& name, const Sheet& sheet, const Kind& kind) {
    const TiffFile tiff = Create(name, kind);
    TIFFSetField(tiff.get(), TIFFTAG_TILEWIDTH, kTile);
    TIFFSetField(tiff.get(), TIFFTAG_TILELENGTH, kTile);
    std::vector<unsigned char> tile(kTile * kTile);
    for (int plane = 0; plane < kind.samples; ++plane) {
      for (int top = 0; top < kHeight; top += kTile) {
        for (int left = 0; left < kWidth; left += kTile) {
          for (int i = 0; i < kTile * kTile; ++i) {
            const int x = std::min(left + i % kTile, kWidth - 1);
            const int y = std::min(top + i / kTile, kHeight - 1);
            tile[static_cast<std::size_t>(i)] = static_cast<unsigned char>(sheet.At(x, y, plane));
          }
          TIFFWriteTile(tiff.get(), tile.data(), static_cast<std::uint32_t>(left), static_cast<std::uint32_t>(top), 0,
                        static_cast<std::uint16_t>(plane));
        }
      }
    }
    return Path(name);
  }

  // Every strip is filled with the same bytes.
  std::string Strips(const std::string& name, const Kind& kind, const std::vector<unsigned char>& unit) {
    const TiffFile tiff = Create(name, kind);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, kRowsPerStrip);
    for (std::uint32_t strip = 0; strip < TIFFNumberOfStrips(tiff.get()); ++strip) {
      const int rows = std::min(kRowsPerStrip, kHeight - static_cast<int>(strip) * kRowsPerStrip);
      std::vector<unsigned char> bytes(
          static_cast<std::size_t>(TIFFVStripSize(tiff.get(), static_cast<std::uint32_t>(rows))));
      for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = unit[i % unit.size()];
      TIFFWriteEncodedStrip(tiff.get(), strip, bytes.data(), static_cast<tmsize_t>(bytes.size()));
    }
    return Path(name);
  }

  Status WhyNotRead(const std::string& path) {
    Image image;
    const Status opened = services.LoadImageFromFile(path, image);
    return opened ? services.SaveImageToPngFile(image, Path("read.png")) : opened;
  }
};

TEST_F(TiffKindsTest, TilesWithSeparatePlanes) {
  const Sheet sheet = PhotoLike(kWidth, kHeight, 3);
  const Kind kind{.planes = PLANARCONFIG_SEPARATE};
  const Image image = Load(Tiles("a.tif", sheet, kind));
  EXPECT_EQ(PixelsOf(image), sheet);
  EXPECT_EQ(services.GetImageResolution(image), 300);
}

TEST_F(TiffKindsTest, TilesWithASeparatePlaneOfAlpha) {
  Sheet sheet = PhotoLike(kWidth, kHeight, 4);
  for (std::size_t i = 3; i < sheet.values.size(); i += 4) sheet.values[i] = i % 8 == 3 ? 255 : 128;
  // The colours come back as they were, but for rounding of what half transparency hides.
  const Sheet read =
      PixelsOf(Load(Tiles("a.tif", sheet, {.samples = 4, .planes = PLANARCONFIG_SEPARATE, .alpha = true})));
  EXPECT_EQ(read.bands, 4);
  EXPECT_LE(Difference(read, sheet), 1);
}

TEST_F(TiffKindsTest, SubsampledYcbcrWithoutJpeg) {
  // Blocks of four Y, one Cb and one Cr: grey 120.
  const Kind kind{.photometric = PHOTOMETRIC_YCBCR, .subsampling = 2};
  const Sheet read = PixelsOf(Load(Strips("a.tif", kind, {120, 120, 120, 120, 128, 128})));
  EXPECT_EQ(read, Plain(kWidth, kHeight, {120, 120, 120}));
}

TEST_F(TiffKindsTest, YcbcrWithoutSubsampling) {
  // Pure red: Y 76, Cb 85, Cr 255.
  const Kind kind{.photometric = PHOTOMETRIC_YCBCR, .subsampling = 1};
  const Sheet read = PixelsOf(Load(Strips("a.tif", kind, {76, 85, 255})));
  EXPECT_LE(Difference(read, Plain(kWidth, kHeight, {254, 0, 0})), 2);
}

TEST_F(TiffKindsTest, YcbcrHoldsNotMoreThanItsBytes) {
  Strips("a.tif", {.photometric = PHOTOMETRIC_YCBCR, .subsampling = 2}, {120, 120, 120, 120, 128, 128});
  MemoryBytes bytes(world.folder.Read("a.tif"));
  EXPECT_TRUE(CanHold(Format::Tiff, bytes, {kWidth, kHeight}));
  EXPECT_FALSE(CanHold(Format::Tiff, bytes, {20'000, 20'000}));
}

TEST_F(TiffKindsTest, BitsThatCannotBeReadAreNamedInTheReason) {
  const Kind kinds[] = {{.samples = 1, .bits = 10, .photometric = PHOTOMETRIC_MINISBLACK},
                        {.samples = 1, .bits = 12, .photometric = PHOTOMETRIC_MINISBLACK},
                        {.bits = 12},
                        {.bits = 4},
                        {.bits = 2}};
  for (const Kind& kind : kinds) {
    const Status status = WhyNotRead(Strips("a.tif", kind, {1, 2, 3}));
    EXPECT_EQ(status.GetProblem(), host::Problem::Unsupported);
    EXPECT_EQ(status.Why(), "不支持的格式：每个通道 " + std::to_string(kind.bits) + " 位的 TIFF");
  }
}

// The JPEG of the first version of TIFF 6: the tags point to a whole JPEG stream.
TEST_F(TiffKindsTest, OldStyleJpeg) {
  Image photo = Load([&] {
    ToVips(Plain(kWidth, kHeight, {200, 120, 40})).pngsave(Path("photo.png").c_str());
    return Path("photo.png");
  }());
  ASSERT_TRUE(services.SaveImageToJpgFile(photo, Path("photo.jpg"), 95, Exif::Drop));
  const std::string jpeg = world.folder.Read("photo.jpg");
  constexpr unsigned kEntries = 12;
  constexpr unsigned kBits = 8 + 2 + kEntries * 12 + 4;
  constexpr unsigned kJpeg = kBits + 6;
  const auto length = static_cast<unsigned>(jpeg.size());
  ByteText text;
  const auto entry = [&](unsigned tag, unsigned type, unsigned count, unsigned value) {
    text.Little16(tag).Little16(type).Little32(count).Little32(value);
  };
  text.Text("II").Little16(42).Little32(8).Little16(kEntries);
  entry(TIFFTAG_IMAGEWIDTH, 4, 1, kWidth);
  entry(TIFFTAG_IMAGELENGTH, 4, 1, kHeight);
  entry(TIFFTAG_BITSPERSAMPLE, 3, 3, kBits);
  entry(TIFFTAG_COMPRESSION, 3, 1, COMPRESSION_OJPEG);
  entry(TIFFTAG_PHOTOMETRIC, 3, 1, PHOTOMETRIC_YCBCR);
  entry(TIFFTAG_STRIPOFFSETS, 4, 1, kJpeg);
  entry(TIFFTAG_SAMPLESPERPIXEL, 3, 1, 3);
  entry(TIFFTAG_ROWSPERSTRIP, 4, 1, kHeight);
  entry(TIFFTAG_STRIPBYTECOUNTS, 4, 1, length);
  entry(TIFFTAG_JPEGIFOFFSET, 4, 1, kJpeg);
  entry(TIFFTAG_JPEGIFBYTECOUNT, 4, 1, length);
  entry(TIFFTAG_YCBCRSUBSAMPLING, 3, 2, 1 | 1 << 16);
  text.Little32(0).Little16(8).Little16(8).Little16(8).Text(jpeg);
  world.folder.Write("old.tif", text.Bytes());
  EXPECT_LE(Difference(PixelsOf(Load(Path("old.tif"))), Plain(kWidth, kHeight, {200, 120, 40})), 4);
}

TEST_F(TiffKindsTest, ATruncatedOneIsDamaged) {
  const std::string path = Tiles("a.tif", PhotoLike(kWidth, kHeight, 3), {.planes = PLANARCONFIG_SEPARATE});
  const std::string whole = world.folder.Read("a.tif");
  // The directory stands at the end: the tiles it points to are overwritten by nothing.
  std::string holed = whole;
  holed.erase(100, 6000);
  world.folder.Write("a.tif", holed);
  EXPECT_FALSE(WhyNotRead(path));
}

TEST_F(TiffKindsTest, LimitsApply) {
  const std::string path = Tiles("a.tif", PhotoLike(kWidth, kHeight, 3), {.planes = PLANARCONFIG_SEPARATE});
  Services strict(world.files, world.host.programFolder, {}, {.side = kWidth - 1});
  Image image;
  EXPECT_EQ(strict.LoadImageFromFile(path, image).GetProblem(), host::Problem::TooLarge);
}

}  // namespace
}  // namespace quillon::imaging::testing
