// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Damaged files and unusable folders, as callers of the program see them: each file gets a sentence, the others are
// cut, sources stay whole, nothing is left over, and the exit code shows it.
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <map>

#include "cli/program_fixture.h"
#include "host/files/files.h"
#include "host/testing/small_disk.h"
#include "imaging/little_files.h"

namespace quillon::cli {
namespace {

using host::testing::SmallDisk;

std::string Number(std::uint32_t value, int bytes, bool bigEnd) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * (bigEnd ? bytes - 1 - i : i)) & 0xFF);
  return text;
}

// The checksum at the end of a chunk of a png.
std::uint32_t Checksum(const std::string& bytes) {
  std::uint32_t sum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    sum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit) sum = (sum >> 1) ^ (sum & 1 ? 0xEDB88320 : 0);
  }
  return ~sum;
}

class BadInputTest : public ProgramTest {
 protected:
  // The picture in each format, by extension; made by the program itself.
  void SetUp() override {
    ProgramTest::SetUp();
    Picture("good.bmp");
    for (const char* type : {"jpg", "png", "gif", "tif", "bmp"}) {
      const std::string made = folder.Path("made");
      fs::create_directories(made);
      ASSERT_EQ(Run(Cut({"good.bmp"}, {"--out", made, "--set", std::string("CmbOutType=") + type})).exit, 0);
      pictures[type] = folder.Read(std::string("made/good.") + type);
    }
    fs::create_directories(folder.Path("in"));
  }

  // Cuts the file between two good ones.
  void CutBad(const std::string& name, const std::string& content) {
    SCOPED_TRACE(name);
    const std::string bad = folder.Write("in/" + name, content);
    const Ran ran = Run(Cut({Picture("in/0.bmp"), bad, Picture("in/9.bmp")}, {"--json"}));
    const Json file = FileEvent(ran, bad);
    ASSERT_EQ(file.value("result", ""), "none") << ran.out;
    EXPECT_FALSE(file.value("why", "").empty());
    EXPECT_EQ(ran.exit, 1);
    EXPECT_EQ(ran.signal, 0);
    ExpectTheOthers(ran);
    EXPECT_EQ(folder.Read("in/" + name), content);
    fs::remove(bad);
  }
  void ExpectTheOthers(const Ran& ran) {
    EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"0.jpg", "9.jpg"})) << ran.out;
    const Json end = Events(ran.out).back();
    EXPECT_EQ(end.value("written", 0), 2);
  }
  static Json FileEvent(const Ran& ran, const std::string& source) {
    for (const Json& event : EventsOf(ran.out, "file")) {
      if (event.at("source") == source) return event;
    }
    return {};
  }
  static int Sum(const Ran& ran) {
    const Json end = Events(ran.out).back();
    return end.value("written", 0) + end.value("none", 0) + end.value("skipped", 0);
  }
  std::string Patched(const std::string& type, std::size_t at, const std::string& bytes) {
    std::string whole = pictures[type];
    return whole.replace(at, bytes.size(), bytes);
  }

  std::map<std::string, std::string> pictures;
};

TEST_F(BadInputTest, EmptyAndAlien) {
  for (const char* type : {"jpg", "png", "gif", "tif", "bmp", "psd"}) {
    CutBad(std::string("empty.") + type, "");
    CutBad(std::string("text.") + type, "no picture");
  }
}

TEST_F(BadInputTest, TruncatedFormats) {
  for (const auto& [type, whole] : pictures) {
    for (const double shard : {0.02, 0.3, 0.7, 0.9}) {
      CutBad("cut." + type, whole.substr(0, static_cast<std::size_t>(static_cast<double>(whole.size()) * shard)));
    }
  }
}

TEST_F(BadInputTest, AbsurdSizes) {
  CutBad("huge.bmp", Patched("bmp", 18, Number(0x7FFFFFFF, 4, false) + Number(0x7FFFFFFF, 4, false)));
  CutBad("none.bmp", Patched("bmp", 18, Number(0, 4, false)));
  CutBad("flat.bmp", Patched("bmp", 22, Number(0, 4, false)));
  for (const std::uint32_t side : {0x7FFFFFFFu, 0u}) {
    std::string head = pictures["png"].substr(12, 17);
    head.replace(4, 8, Number(side, 4, true) + Number(side, 4, true));
    CutBad("side.png", Patched("png", 12, head + Number(Checksum(head), 4, true)));
  }
  const std::size_t frame = pictures["jpg"].find(std::string("\xFF\xC0", 2));
  ASSERT_NE(frame, std::string::npos);
  CutBad("huge.jpg", Patched("jpg", frame + 5, Number(0xFFFF, 2, true) + Number(0xFFFF, 2, true)));
  CutBad("none.jpg", Patched("jpg", frame + 5, Number(0, 2, true) + Number(0, 2, true)));
}

// A canvas of 4 gigapixels in a file of a few bytes.
TEST_F(BadInputTest, MorePixelsThanTheFileCanHold) {
  const std::string sides = Number(0xFFFF, 2, false) + Number(0xFFFF, 2, false);
  const std::string frame = std::string(",\0\0\0\0\1\0\1\0\0\2\2D\1\0;", 16);
  CutBad("claims.gif", "GIF89a" + sides + std::string("\x80\0\0\0\0\0\xFF\xFF\xFF", 9) + frame);
}

// Each of them is measured at once, even if its chain is endless or damaged, and the neighbours are cut.
TEST_F(BadInputTest, ChainsThatLeadNowhere) {
  using namespace imaging::testing;
  std::vector<std::string> files{Picture("in/0.bmp")};
  std::string self("II*\0\x08\0\0\0", 8);
  self += Little(42, 2) + std::string(504, '\0') + Little(8, 4) + "....";
  const std::pair<const char*, std::string> chains[] = {{"in/cyclic.tif", CyclicTiff(61, 43)},
                                                        {"in/self.tif", self},
                                                        {"in/pages.tif", TiffOfPages(4000, 61, 43)},
                                                        {"in/chunks.png", PngOfChunks(50'000, 61, 43)}};
  for (const auto& [name, content] : chains) files.push_back(folder.Write(name, content));
  files.push_back(Picture("in/9.bmp"));
  const Ran ran = Run(Cut(files, {"--json"}));
  EXPECT_EQ(ran.signal, 0);
  EXPECT_EQ(Sum(ran), 6) << ran.out;
  EXPECT_EQ(FileEvent(ran, files.front()).value("result", ""), "written");
  EXPECT_EQ(FileEvent(ran, files.back()).value("result", ""), "written");
  for (const auto& [name, content] : chains) EXPECT_EQ(folder.Read(name), content);
}

// Whatever a turned bit does, the program says what became of the file and leaves it alone.
TEST_F(BadInputTest, BitFlips) {
  for (const auto& [type, whole] : pictures) {
    std::vector<std::string> files{Picture("in/0.bmp")};
    std::map<std::string, std::string> contents;
    for (std::size_t i = 0; i < 12; ++i) {
      std::string flipped = whole;
      flipped[i * whole.size() / 12] ^= static_cast<char>(1 << i % 8);
      const std::string path = folder.Write("in/f" + std::to_string(i) + "." + type, flipped);
      contents[path] = flipped;
      files.push_back(path);
    }
    files.push_back(Picture("in/9.bmp"));
    const Ran ran = Run(Cut(files, {"--json"}));
    EXPECT_EQ(ran.signal, 0) << type;
    EXPECT_EQ(Sum(ran), 14) << type;
    std::size_t none = 0;
    for (const Json& file : EventsOf(ran.out, "file")) {
      const bool written = file.at("result") == "written";
      none += written ? 0 : 1;
      EXPECT_EQ(file.at("why").get<std::string>().empty(), written) << file;
      EXPECT_TRUE(!written || fs::exists(file.at("output").get<std::string>())) << file;
    }
    EXPECT_EQ(ran.exit, none > 0 ? 1 : 0);
    EXPECT_EQ(folder.Names("out").size(), 14 - none);
    for (const auto& [path, content] : contents) {
      EXPECT_EQ(folder.Read(path.substr(folder.Path().size() + 1)), content) << path;
    }
    fs::remove_all(folder.Path("in"));
    fs::remove_all(out);
    fs::create_directories(out);
  }
}

TEST_F(BadInputTest, AWrongExtensionIsCutByItsContent) {
  folder.Write("in/png.jpg", pictures["png"]);
  folder.Write("in/jpg.bmp", pictures["jpg"]);
  const Ran ran = Run(Cut({"in"}));
  EXPECT_EQ(ran.exit, 0) << ran.err;
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"jpg.jpg", "png.jpg"}));
}

TEST_F(BadInputTest, AFolderWithTheNameOfAPicture) {
  Picture("in/0.bmp");
  Picture("in/x.jpg/9.bmp");
  EXPECT_EQ(Run(Cut({"in"})).exit, 0);
  EXPECT_EQ(folder.Names("out"), (std::vector<std::string>{"0.jpg", "9.jpg"}));
}

TEST_F(BadInputTest, AFileThatMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "the administrator may read everything";
  const std::string bad = Picture("in/1.bmp");
  fs::permissions(bad, fs::perms::none);
  const Ran ran = Run(Cut({Picture("in/0.bmp"), bad, Picture("in/9.bmp")}, {"--json"}));
  EXPECT_EQ(FileEvent(ran, bad).value("result", ""), "none");
  EXPECT_EQ(ran.exit, 1);
  ExpectTheOthers(ran);
}

TEST_F(BadInputTest, ALinkThatLeadsToItself) {
  const std::string bad = folder.Path("in/1.jpg");
  fs::create_symlink(bad, bad);
  const Ran ran = Run(Cut({Picture("in/0.bmp"), bad, Picture("in/9.bmp")}, {"--json"}));
  EXPECT_EQ(FileEvent(ran, bad).value("why", ""), "链接太多或互相指向");
  EXPECT_EQ(ran.exit, 1);
  ExpectTheOthers(ran);
}

TEST_F(BadInputTest, AMissingOutputFolder) {
  const std::string picture = Picture("in/0.bmp");
  const Ran ran = Run(Cut({picture}, {"--json", "--out", folder.Path("nowhere")}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(FileEvent(ran, picture).value("result", ""), "none");
  EXPECT_THAT(FileEvent(ran, picture).value("why", ""), HasSubstr("输出目录不存在：" + folder.Path("nowhere")));
  EXPECT_FALSE(folder.Exists("nowhere"));
}

TEST_F(BadInputTest, AReadOnlyOutputFolder) {
  const SmallDisk disk(folder.Path("ro"), 16, SmallDisk::Access::ReadOnly);
  if (!disk.Mounted()) {
    if (geteuid() == 0) GTEST_SKIP() << "no disk can be mounted here: " << disk.Why();
    fs::permissions(folder.Path("ro"), fs::perms::owner_read | fs::perms::owner_exec);
  }
  const std::string picture = Picture("in/0.bmp");
  const Ran ran = Run(Cut({picture}, {"--json", "--out", folder.Path("ro")}));
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(FileEvent(ran, picture).value("result", ""), "none");
  EXPECT_FALSE(FileEvent(ran, picture).value("why", "").empty());
  EXPECT_TRUE(disk.Names().empty());
}

// The pipe fills up while nobody reads, so that the run cannot be over when the folder goes.
TEST_F(BadInputTest, AnOutputFolderThatGoesAway) {
  Pictures(400);
  BatchProcess process(Cut({"in"}, {"--json", "--trace"}), folder.Path());
  ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
  // The run may put one more file into it meanwhile.
  std::error_code error;
  do fs::remove_all(out, error);
  while (error);
  const Ran ran = process.Wait();
  EXPECT_EQ(ran.exit, 1);
  EXPECT_EQ(Sum(ran), 400);
  const Json end = Events(ran.out).back();
  EXPECT_GT(end.at("none"), 0);
  for (const Json& file : EventsOf(ran.out, "file")) {
    EXPECT_EQ(file.at("why").get<std::string>().empty(), file.at("result") == "written") << file;
  }
}

TEST_F(BadInputTest, AFullDisk) {
  const SmallDisk disk(folder.Path("small"));
  if (!disk.Mounted()) GTEST_SKIP() << "no disk can be mounted here: " << disk.Why();
  Pictures(30);
  disk.FillUntil(10);
  const Ran ran = Run(Cut({"in"}, {"--json", "--out", folder.Path("small"), "--set", "CmbOutType=bmp"}));
  EXPECT_EQ(ran.exit, 3);
  const auto boxes = EventsOf(ran.out, "box");
  const auto full = std::count_if(boxes.begin(), boxes.end(), [](const Json& box) {
    return box.at("text") == "/盘空间不足，请释放空间后重试保存！" && box.at("answer") == "Cancel";
  });
  EXPECT_EQ(full, 1);
  EXPECT_EQ(Sum(ran), 30);
  const Json end = Events(ran.out).back();
  EXPECT_EQ(end.at("none"), 1);
  EXPECT_EQ(disk.Names().size(), end.at("written").get<std::size_t>());
  ASSERT_FALSE(disk.Names().empty());
  const std::string whole = folder.Read("small/" + disk.Names().front());
  EXPECT_EQ(whole.size(), pictures["bmp"].size());
  for (const std::string& name : disk.Names()) EXPECT_EQ(folder.Read("small/" + name), whole) << name;
}

// Each source is as it was or the whole cut of it, whenever the program is killed; the next run clears what it left.
TEST_F(BadInputTest, KilledWhileSourcesAreReplaced) {
  const std::string before = BmpPicture(40, 30);
  const auto over = [&](std::vector<std::string> more) {
    more.insert(more.end(), {"--set", "ChOver=1", "--set", "TCutValue(0)=50"});
    return Cut({"in"}, more);
  };
  folder.Write("in/0.bmp", before);
  ASSERT_EQ(Run(over({})).exit, 0);
  const std::string after = folder.Read("in/0.bmp");
  ASSERT_NE(after, before);
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 300; ++i) folder.Write("in/" + std::to_string(i) + ".bmp", before);
    BatchProcess process(over({"--json"}), folder.Path());
    ASSERT_TRUE(process.ReadTo("\"event\":\"file\""));
    process.Signal(SIGKILL);
    EXPECT_EQ(process.Wait().signal, SIGKILL);
    int done = 0;
    for (int i = 0; i < 300; ++i) {
      const std::string now = folder.Read("in/" + std::to_string(i) + ".bmp");
      done += now == after ? 1 : 0;
      EXPECT_TRUE(now == before || now == after) << i;
    }
    EXPECT_GT(done, 0);
    EXPECT_LT(done, 300);
    for (const std::string& name : folder.Names("in")) EXPECT_TRUE(name.ends_with(".bmp") || host::IsDraftName(name));
    EXPECT_EQ(Run(Cut({"in/0.bmp"}, {"--set", "ChOver=1"})).exit, 0);
    EXPECT_EQ(folder.Names("in").size(), 300u) << "the drafts are gone";
  }
}

}  // namespace
}  // namespace quillon::cli
