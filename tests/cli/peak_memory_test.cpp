// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A picture that is too large for memory is never held there as a whole, whatever is made of it.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cli/batch_process.h"

namespace quillon::cli {
namespace {

using Bytes = std::vector<int>;

// A marker segment of a jpeg.
std::string Segment(char marker, const Bytes& content) {
  const std::size_t length = content.size() + 2;
  std::string text{'\xFF', marker, static_cast<char>(length >> 8), static_cast<char>(length & 0xFF)};
  for (const int byte : content) text += static_cast<char>(byte);
  return text;
}

// A Huffman table that holds nothing but the value 0, as one bit: no difference, or the end of a block.
Bytes OneBitTable(int id) {
  Bytes table(18, 0);
  table[0] = id;
  table[1] = 1;
  return table;
}

// A grey jpeg of three channels at full resolution, whose sides are multiples of 16. All bits of its pixels are 0, so
// that it is made in no time and its file is small.
std::string LargeJpeg(int width, int height) {
  constexpr int kBlock = 8;
  constexpr int kChannels = 3;
  constexpr int kBitsOfBlock = 2;  // no difference, end of the block
  Bytes quantization(65, 1);
  quantization[0] = 0;
  const Bytes frame{8, height >> 8, height & 0xFF, width >> 8, width & 0xFF, kChannels, 1, 0x11, 0, 2, 0x11,
                    0, 3,           0x11,          0};
  const std::size_t blocks = static_cast<std::size_t>(width / kBlock) * static_cast<std::size_t>(height / kBlock);
  return "\xFF\xD8" + Segment('\xDB', quantization) + Segment('\xC0', frame) + Segment('\xC4', OneBitTable(0x00)) +
         Segment('\xC4', OneBitTable(0x10)) + Segment('\xDA', {kChannels, 1, 0, 2, 0, 3, 0, 0, 63, 0}) +
         std::string(blocks * kChannels * kBitsOfBlock / 8, '\0') + "\xFF\xD9";
}

class PeakMemoryTest : public ::testing::Test {
 protected:
  // 128 million pixels: 384 MB, and above what the program holds in memory.
  static constexpr int kWidth = 16000;
  static constexpr int kHeight = 8000;

  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer needs memory of its own";
#endif
    picture = folder.Write("in/large.jpg", LargeJpeg(kWidth, kHeight));
    folder.Write("out/.keep", "");
  }

  // Runs the program over the picture and returns the most memory that it has held at once, in MB. It cannot end before
  // that is read: what it prints at last is longer than its pipe.
  int PeakOf(std::vector<std::string> steps) {
    std::vector<std::string> all{"--json", "--out", folder.Path("out"), picture};
    all.insert(all.end(), steps.begin(), steps.end());
    for (int i = 0; i < 40; ++i) all.insert(all.end(), {"--print", "CmbCutMode"});
    BatchProcess process(all, folder.Path(), ErrorsTo::File, OutTo::SmallPipe);
    EXPECT_TRUE(process.ReadTo(R"("event":"print")"));
    const int peak = process.PeakMemory();
    const Ran ran = process.Wait();
    EXPECT_EQ(ran.exit, 0) << ran.out << ran.err;
    return peak;
  }

  host::testing::TempFolder folder;
  std::string picture;
};

TEST_F(PeakMemoryTest, ATurnByARightAngleHoldsAFractionOfThePicture) {
  const int peak =
      PeakOf({"--open", "FBaseOpt", "--set", "FBaseOpt.CmbRotate=5", "--set", "FBaseOpt.TAngle=90", "--set", "ChCutA=0",
              "--set", "TCutValue(0)=10", "--set", "TCutValue(2)=10", "--click", "menuNormalCut"});
  EXPECT_EQ(folder.Names("out").size(), 2U);
  EXPECT_GT(peak, 0);
  EXPECT_LE(peak, 160);
}

TEST_F(PeakMemoryTest, TwentyRegionsHoldAFractionOfThePicture) {
  std::string list = "R\r\n";
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 5; ++column) {
      const int top = row * kHeight / 4;
      const int left = column * kWidth / 5;
      const auto margin = [](int value) { return std::to_string(value); };
      list += margin(top) + "\t" + margin(left) + "\t" + margin(kWidth - left - 1000) + "\t" +
              margin(kHeight - top - 800) + "\r\n";
    }
  }
  const std::string regions = folder.Write("20.clt", list);
  const int peak = PeakOf({"--open", "FMultCut", "--answer", "导入=" + regions, "--click", "FMultCut.CmdInput",
                           "--answer", "新建文件夹=No", "--answer", "打开输出目录=No", "--click", "FMultCut.CmdOk"});
  EXPECT_EQ(folder.Names("out").size(), 21U);
  EXPECT_GT(peak, 0);
  EXPECT_LE(peak, 107);
}

}  // namespace
}  // namespace quillon::cli
