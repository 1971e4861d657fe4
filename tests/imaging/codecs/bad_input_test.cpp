// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/path_text.h"
#include "imaging/byte_text.h"
#include "imaging/pictures.h"

namespace quillon::imaging {
namespace {

using namespace testing;
using host::Problem;
using vips::VImage;

// The bytes of one picture in every format that can be read.
class BadInput : public ServicesTest {
 protected:
  struct File {
    std::string name;
    std::string bytes;
  };

  void SetUp() override {
    const Sheet photo = PhotoLike(120, 100, 3);
    const VImage made = ToVips(photo);
    made.jpegsave(Path("a.jpg").c_str());
    made.jpegsave(Path("progressive.jpg").c_str(), VImage::option()->set("interlace", true));
    made.pngsave(Path("a.png").c_str());
    made.pngsave(Path("interlaced.png").c_str(), VImage::option()->set("interlace", true));
    made.gifsave(Path("a.gif").c_str());
    made.tiffsave(Path("plain.tif").c_str());
    made.tiffsave(Path("lzw.tif").c_str(), VImage::option()->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_LZW));
    made.tiffsave(Path("tiled.tif").c_str(),
                  VImage::option()->set("tile", true)->set("compression", VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE));
    ASSERT_TRUE(services.SaveImageToBmpFile(Load(Path("a.png")), Path("a.bmp")));
    ByteText psd;
    psd.Text("8BPS").Big16(1).Zeros(6).Big16(3).Big32(100).Big32(120).Big16(8).Big16(3).Zeros(12).Big16(0);
    for (int i = 0; i < 36000; ++i) psd.U8({photo.values[static_cast<std::size_t>(i)]});
    world.folder.Write("a.psd", psd.Bytes());
    for (const char* name : {"a.jpg", "progressive.jpg", "a.png", "interlaced.png", "a.gif", "plain.tif", "lzw.tif",
                             "tiled.tif", "a.bmp", "a.psd"}) {
      files.push_back({name, world.folder.Read(name)});
    }
  }

  // Runs every operation on a file. Each failure has a message, and none leaves an output or a draft.
  struct Outcome {
    Status load;
    Status crop;  // to png, the upper part
    Status jpeg;  // to jpeg, the whole
    Status preview;
  };
  Outcome TryAll(const std::string& path) {
    Outcome outcome;
    Image image;
    outcome.load = services.LoadImageFromFile(path, image);
    EXPECT_EQ(image.Empty(), !outcome.load);
    CropRequest request{
        .source = path, .destination = Path("out/crop.png"), .rect = {10, 10, 50, 40}, .encoder = Encoder::Png};
    outcome.crop = services.CropToFile(request);
    request.destination = Path("out/whole.jpg");
    request.rect = {0, 0, 120, 100};
    request.encoder = Encoder::Jpeg;
    outcome.jpeg = services.CropToFile(request);
    Services::Preview preview;
    outcome.preview = services.LoadPreview(path, {50, 50}, preview);
    ImageFacts facts;
    static_cast<void>(services.ImageInfo(path, facts));
    for (const Status* status : {&outcome.load, &outcome.crop, &outcome.jpeg, &outcome.preview}) {
      EXPECT_EQ(status->Why().empty(), static_cast<bool>(*status));
    }
    EXPECT_EQ(world.folder.Exists("out/crop.png"), static_cast<bool>(outcome.crop));
    EXPECT_EQ(world.folder.Exists("out/whole.jpg"), static_cast<bool>(outcome.jpeg));
    for (const std::string& name : world.folder.Names("out")) EXPECT_FALSE(host::IsDraftName(name)) << name;
    std::filesystem::remove(Path("out/crop.png"));
    std::filesystem::remove(Path("out/whole.jpg"));
    return outcome;
  }
  void ExpectFailure(const std::string& path, Problem problem) {
    const Outcome outcome = TryAll(path);
    for (const Status* status : {&outcome.load, &outcome.crop, &outcome.jpeg, &outcome.preview}) {
      EXPECT_EQ(status->GetProblem(), problem) << status->Why();
    }
  }

  std::vector<File> files;
};

TEST_F(BadInput, GoodFilesPass) {
  world.folder.Write("out/keep", "");
  for (const File& file : files) {
    SCOPED_TRACE(file.name);
    const Outcome outcome = TryAll(Path(file.name));
    EXPECT_TRUE(outcome.load && outcome.crop && outcome.jpeg && outcome.preview);
  }
}

TEST_F(BadInput, WhatIsNoPictureFileIsRefused) {
  world.folder.Write("out/keep", "");
  std::filesystem::create_directory(Path("x.jpg"));
  world.folder.Write("empty.png", "");
  world.folder.Write("text.jpg", "a text that calls itself a picture");
  world.folder.Write("zeros.bmp", std::string(5000, '\0'));
  ExpectFailure(Path("missing.jpg"), Problem::Missing);
  ExpectFailure(Path("x.jpg"), Problem::Unsupported);
  ExpectFailure(Path("text.jpg"), Problem::Unsupported);
  ExpectFailure(Path("zeros.bmp"), Problem::Unsupported);
  ExpectFailure("/dev/null", Problem::Unsupported);
  for (int size = 1; size < 20; ++size) {
    world.folder.Write("short", std::string(static_cast<std::size_t>(size), 'B'));
    ExpectFailure(Path("short"), Problem::Unsupported);
  }
  const Outcome empty = TryAll(Path("empty.png"));
  EXPECT_EQ(empty.load.Why(), "文件是空的");
  EXPECT_FALSE(empty.crop);
}

TEST_F(BadInput, TheWrongExtensionDoesNotMatter) {
  world.folder.Write("out/keep", "");
  const char* names[] = {"x.jpg", "x.png", "x.gif", "x.tif", "x.bmp", "x.psd", "x"};
  for (const File& file : files) {
    for (const char* name : names) {
      world.folder.Write(name, file.bytes);
      SCOPED_TRACE(file.name + " as " + name);
      const Outcome outcome = TryAll(Path(name));
      EXPECT_TRUE(outcome.load && outcome.crop && outcome.jpeg && outcome.preview);
    }
  }
}

// A truncated file is damaged, whatever part is requested, even if only its last byte is missing.
TEST_F(BadInput, CutFilesAreFound) {
  world.folder.Write("out/keep", "");
  for (const File& file : files) {
    const std::size_t size = file.bytes.size();
    std::vector<std::size_t> cuts = {9, 30, 60, 200};
    for (std::size_t i = 1; i < 16; ++i) cuts.push_back(size * i / 16);
    for (std::size_t lost = 1; lost <= 48; lost += lost < 16 ? 1 : 8) cuts.push_back(size - lost);
    for (const std::size_t cut : cuts) {
      SCOPED_TRACE(file.name + " " + std::to_string(cut) + " of " + std::to_string(size));
      world.folder.Write("cut", file.bytes.substr(0, cut));
      const Outcome outcome = TryAll(Path("cut"));
      EXPECT_EQ(outcome.load.GetProblem(), Problem::Damaged) << outcome.load.Why();
      EXPECT_EQ(outcome.crop.GetProblem(), Problem::Damaged) << outcome.crop.Why();
      EXPECT_EQ(outcome.jpeg.GetProblem(), Problem::Damaged) << outcome.jpeg.Why();
      EXPECT_EQ(outcome.preview.GetProblem(), Problem::Damaged) << outcome.preview.Why();
    }
  }
}

// Bytes that other programs append to a picture are ignored.
TEST_F(BadInput, BytesAfterTheEndAreHarmless) {
  world.folder.Write("out/keep", "");
  for (const File& file : files) {
    SCOPED_TRACE(file.name);
    world.folder.Write("more", file.bytes + std::string(3000, '\x2C'));
    const Outcome outcome = TryAll(Path("more"));
    EXPECT_TRUE(outcome.load && outcome.crop && outcome.jpeg && outcome.preview) << outcome.load.Why();
  }
}

// Flipped bits cause no crash, no endless loop and no partial file. Most are detected if the format has checksums.
TEST_F(BadInput, FlippedBitsNeverCrash) {
  world.folder.Write("out/keep", "");
  for (const File& file : files) {
    unsigned seed = 99;
    for (int round = 0; round < 30; ++round) {
      seed = seed * 1664525u + 1013904223u;
      std::string flipped = file.bytes;
      // Half of the flips hit the headers.
      const std::size_t at = (seed >> 8) % (round % 2 ? flipped.size() : std::min<std::size_t>(flipped.size(), 400));
      flipped[at] = static_cast<char>(flipped[at] ^ (1 << (seed >> 5 & 7)));
      world.folder.Write("flipped", flipped);
      SCOPED_TRACE(file.name + " byte " + std::to_string(at));
      TryAll(Path("flipped"));
    }
  }
}

TEST_F(BadInput, FlippedBitsOfCheckedDataAreFound) {
  world.folder.Write("out/keep", "");
  for (const char* name : {"a.png", "interlaced.png"}) {
    std::string bytes = world.folder.Read(name);
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 4);
    world.folder.Write("flipped.png", bytes);
    ExpectFailure(Path("flipped.png"), Problem::Damaged);
  }
}

TEST_F(BadInput, ADamagedSourceIsNotOverwrittenByItsOwnCut) {
  for (const File& file : files) {
    SCOPED_TRACE(file.name);
    const std::string cut = file.bytes.substr(0, file.bytes.size() / 2);
    world.folder.Write("source", cut);
    for (const Encoder encoder : {Encoder::Jpeg, Encoder::Png}) {
      EXPECT_FALSE(services.CropToFile(
          {.source = Path("source"), .destination = Path("source"), .rect = {0, 0, 50, 10}, .encoder = encoder}));
      EXPECT_TRUE(world.folder.Read("source") == cut);
    }
  }
}

TEST_F(BadInput, AbsurdHeadersAreRefusedBeforeAnythingIsHeld) {
  world.folder.Write("out/keep", "");
  const auto before = vips_tracked_get_mem_highwater();
  std::string png = world.folder.Read("a.png");
  png.replace(16, 8, "\x7F\xFF\xFF\xFF\x7F\xFF\xFF\xFF");
  world.folder.Write("absurd.png", png);
  std::string bmp = world.folder.Read("a.bmp");
  bmp.replace(18, 8, std::string("\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F", 8));
  world.folder.Write("absurd.bmp", bmp);
  std::string psd = world.folder.Read("a.psd");
  psd.replace(14, 8, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF");
  world.folder.Write("absurd.psd", psd);
  // One strip of grey with the largest sides that a TIFF can declare.
  ByteText tif;
  tif.Text("II*").Zeros(1).Little32(8).Little16(5);
  for (const auto& [tag, value] : {std::pair(256, 0x7FFFFFFF), {257, 0x7FFFFFFF}, {258, 8}, {262, 1}, {273, 8}}) {
    tif.Little16(tag).Little16(4).Little32(1).Little32(static_cast<std::uint32_t>(value));
  }
  tif.Little32(0);
  world.folder.Write("absurd.tif", tif.Bytes());
  for (const char* name : {"absurd.png", "absurd.bmp", "absurd.psd", "absurd.tif"}) {
    SCOPED_TRACE(name);
    const Outcome outcome = TryAll(Path(name));
    EXPECT_FALSE(outcome.load);
    EXPECT_FALSE(outcome.crop);
    EXPECT_FALSE(outcome.jpeg);
  }
  EXPECT_LT(vips_tracked_get_mem_highwater(), before + (std::size_t{64} << 20));
}

}  // namespace
}  // namespace quillon::imaging
