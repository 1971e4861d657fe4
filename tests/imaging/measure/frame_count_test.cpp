// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "imaging/measure/frame_count.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include "host/posix/posix_disk.h"
#include "imaging/little_files.h"
#include "imaging/scratch_folder.h"
#include "imaging/services.h"

namespace quillon::imaging {
namespace {

using host::Problem;
using namespace testing;

int Counted(const std::string& content) {
  MemoryBytes bytes(content);
  int frames = 0;
  const Status status = CountFrames(bytes, frames);
  EXPECT_TRUE(status) << status.Why();
  return frames;
}

Problem Refused(const std::string& content) {
  MemoryBytes bytes(content);
  int frames = -1;
  const Status status = CountFrames(bytes, frames);
  EXPECT_EQ(frames, -1);
  EXPECT_FALSE(status.Why().empty());
  return status.GetProblem();
}

// A gif with a comment, and that many frames, each of which has a local table; the trailer is left out.
std::string Film(int frames) {
  std::string film = std::string("GIF89a\4\0\4\0\x80\0\0", 13) + std::string(6, 'c') + std::string("!\xFE\2,;\0", 6);
  for (int i = 0; i < frames; ++i) {
    film +=
        std::string("!\xF9\4\0\1\0\0\0,\0\0\0\0\4\0\4\0\x81", 18) + std::string(12, ',') + std::string("\2\1,\0", 4);
  }
  return film;
}

TEST(FrameCount, CountsTheImagesOfAGif) {
  EXPECT_EQ(Counted(Gif(61, 43)), 1);
  EXPECT_EQ(Counted(Film(3) + ";"), 3);
  EXPECT_EQ(Counted(Film(100'000) + ";"), 100'000);
  EXPECT_EQ(Counted(Film(3) + std::string(5, '\0') + ";,,,"), 3);
}

TEST(FrameCount, CountsUpToTheBreakOfAGif) {
  EXPECT_EQ(Counted(Film(3)), 3);
  EXPECT_EQ(Counted(Film(3).substr(0, Film(3).size() - 2)), 3);
  EXPECT_EQ(Counted(Film(2) + ",\1\2"), 2);
  EXPECT_EQ(Counted(Film(2) + "rubbish"), 2);
  EXPECT_EQ(Refused(Film(0) + ";"), Problem::Damaged);
  EXPECT_EQ(Refused("GIF89a"), Problem::Damaged);
}

TEST(FrameCount, CountsTheDirectoriesOfATiff) {
  EXPECT_EQ(Counted(Tiff(false, 6, 4, 72, 2)), 1);
  EXPECT_EQ(Counted(Tiff(true, 6, 4, 72, 2)), 1);
  EXPECT_EQ(Counted(BigTiff(false, 72)), 1);
  EXPECT_EQ(Counted(BigTiff(true, 72)), 1);
  EXPECT_EQ(Counted(TiffOfPages(8, 61, 43)), 8);
  EXPECT_EQ(Counted(TiffOfPages(70'000, 61, 43)), 70'000);
}

TEST(FrameCount, FollowsNoDirectoryOfATiffTwice) {
  EXPECT_EQ(Counted(CyclicTiff(6, 4)), 1);
  std::string ring = TiffOfPages(5, 61, 43);
  ring.replace(ring.size() - 4, 4, Little(8 + 2 * (2 + 3 * 12 + 4), 4));  // back to the third page
  EXPECT_EQ(Counted(ring), 5);
}

TEST(FrameCount, CountsUpToTheBreakOfATiff) {
  const std::string tiff = TiffOfPages(8, 61, 43);
  EXPECT_EQ(Counted(tiff.substr(0, tiff.size() - 10)), 7);
  EXPECT_EQ(Refused(tiff.substr(0, 12)), Problem::Damaged);
  EXPECT_EQ(Refused(std::string("II*\0\xFF\xFF\xFF\xFF", 8)), Problem::Damaged);
  EXPECT_EQ(Refused(std::string("II*\0\0\0\0\0", 8)), Problem::Damaged);
}

TEST(FrameCount, ReadsTheFramesThatAPngStates) {
  EXPECT_EQ(Counted(Png(61, 43, "")), 1);
  EXPECT_EQ(Counted(Png(61, 43, Chunk("acTL", Big(12, 4) + Big(0, 4)))), 12);
  EXPECT_EQ(Counted(Png(61, 43, Chunk("acTL", Big(0, 4) + Big(0, 4)))), 1);
  EXPECT_EQ(Counted(Png(61, 43, Chunk("tEXt", "acTL") + Chunk("acTL", Big(0xFFFFFFFF, 4) + Big(0, 4)))), 0x7FFFFFFF);
  const std::string png = Png(61, 43, "");
  EXPECT_EQ(Refused(png.substr(0, 20)), Problem::Damaged);
  EXPECT_EQ(Refused(Png(61, 43, std::string("\xFF\xFF\xFF\xFF") + "tEXt")), Problem::Damaged);
}

TEST(FrameCount, LooksAtTheContentAlone) {
  EXPECT_EQ(Counted(Bmp(6, 4, 2835)), 1);
  EXPECT_EQ(Refused("no picture at all"), Problem::Unsupported);
  EXPECT_EQ(Refused(""), Problem::Damaged);
}

TEST(FrameCount, IsAnOperationOfTheServices) {
  const ScratchFolder folder;
  host::posix::PosixDisk disk;
  host::Files files(disk);
  Services services(files, folder.Path("."));
  int frames = 0;
  ASSERT_TRUE(services.FramesIn(folder.Put("a.tif", TiffOfPages(8, 61, 43)), frames));
  EXPECT_EQ(frames, 8);
  EXPECT_EQ(services.FramesIn(folder.Path("none.gif"), frames).GetProblem(), Problem::Missing);
  EXPECT_EQ(services.FramesIn(folder.Path("."), frames).GetProblem(), Problem::Unsupported);
  EXPECT_EQ(frames, 8);
}

TEST(PngAlpha, IsASampleOrATransparentColour) {
  const auto alpha = [](const std::string& content) {
    MemoryBytes bytes(content);
    return PngHasAlpha(bytes);
  };
  // The head of a png of that colour type, with a chunk of that name before the pixels and one after them.
  const auto png = [](char type, const char* before, const char* after) {
    const std::string head = Big(4, 4) + Big(4, 4) + std::string({8, type, 0, 0, 0});
    return "\x89PNG\r\n\x1a\n" + Chunk("IHDR", head) + Chunk(before, "12") + Chunk("IDAT", "") + Chunk(after, "12");
  };
  EXPECT_FALSE(alpha(png(0, "tEXt", "tRNS")));
  EXPECT_FALSE(alpha(png(2, "tEXt", "tRNS")));
  EXPECT_TRUE(alpha(png(2, "tRNS", "tEXt")));
  EXPECT_FALSE(alpha(png(3, "tEXt", "tEXt")));
  EXPECT_TRUE(alpha(png(3, "tRNS", "tEXt")));
  EXPECT_TRUE(alpha(png(4, "tEXt", "tEXt")));
  EXPECT_TRUE(alpha(png(6, "tEXt", "tEXt")));
  EXPECT_FALSE(alpha(png(2, "tEXt", "tEXt").substr(0, 40)));
  EXPECT_FALSE(alpha(Gif(61, 43)));
  EXPECT_FALSE(alpha("no"));
}

}  // namespace
}  // namespace quillon::imaging
