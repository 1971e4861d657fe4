// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <memory>

#include "helpers/helper_process.h"
#include "helpers/media_info/media_info_report.h"
#include "helpers/pictures.h"
#include "helpers/runtime/sandbox.h"
#include "host/posix/posix_companion.h"
#include "imaging/little_files.h"
#include "imaging/measure/measure.h"

namespace quillon::helpers {
namespace {

using host::Companion;
using host::Problem;
using host::Status;

TEST(MeasureReportTest, SizeIsTheTextBetweenTheLabels) {
  struct Case {
    std::wstring report;
    bool good;
    base::Size size;
  };
  const Case cases[] = {
      {L"Width   : 300 pixels\nHeight  : 200 pixels\n", true, {300, 200}},
      {L"Image\nFormat : JPEG\nWidth : 3 840 pixels\nHeight : 2\u00A0400 pixels\n", true, {3840, 2400}},
      {L"Width : 1 234 567 pixels\nHeight : 1 pixels", true, {1234567, 1}},
      {L"Height : 5 pixels\nWidth : 7 pixels\nHeight : 9 pixels\n", true, {7, 9}},
      {L"Width : 7 pixels\n", false, {}},
      {L"Width : 7\nHeight : 9\n", false, {}},
      {L"Width : pixels\nHeight : 9 pixels", false, {}},
      {L"Width : 12x pixels\nHeight : 9 pixels", false, {}},
      {L"Width : 99999999999 pixels\nHeight : 9 pixels", false, {}},
      {L"Format : JPEG\n", false, {}},
      {L"", false, {}}};
  for (const Case& c : cases) {
    base::Size size;
    EXPECT_EQ(SizeFromReport(c.report, size), c.good);
    EXPECT_EQ(size, c.size);
  }
}

// MediaInfo in this process, as the yardstick of the header readers.
class HeaderAgreement : public ::testing::Test {
 protected:
  // The size that MediaInfo reports; {0, 0} if none.
  base::Size Reported(const std::string& path) {
    base::Size size;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_GE(file, 0) << path;
    static_cast<void>(report_.Measure(file, size));
    close(file);
    return size;
  }

  static imaging::HeaderFacts Header(const std::string& path) {
    std::shared_ptr<imaging::FileBytes> bytes;
    EXPECT_TRUE(imaging::FileBytes::Open(path, bytes));
    imaging::HeaderFacts facts;
    EXPECT_EQ(imaging::ReadHeader(*bytes, facts), imaging::HeaderKind::Known) << path;
    return facts;
  }

  void ExpectAgreement(const std::string& path) {
    const base::Size reported = Reported(path);
    ASSERT_FALSE(reported.Empty()) << path;
    EXPECT_EQ(Header(path).size, reported) << path;
  }

  HelperFolder app_;
  MediaInfoReport report_;
};

TEST_F(HeaderAgreement, OfPicturesOfTheImageLibrary) {
  const auto check = [&](const std::string& name, const testing::Pixels& pixels) {
    testing::Save(app_.Path(name), pixels);
    ExpectAgreement(app_.Path(name.substr(0, name.find('['))));
  };
  for (const int bands : {1, 3}) {
    const testing::Pixels pixels = testing::Waves(61, 43, bands);
    for (const char* name :
         {"a.jpg", "p.jpg[interlace]", "a.tif", "l.tif[compression=lzw]", "d.tif[compression=deflate]",
          "k.tif[compression=packbits]", "j.tif[compression=jpeg]", "t.tif[tile,tile-width=16,tile-height=16]",
          "pyr.tif[tile,tile-width=16,tile-height=16,pyramid]",
          "sub.tif[tile,tile-width=16,tile-height=16,pyramid,subifd]", "cm.tif[resunit=cm]", "a.png",
          "i.png[interlace]", "a.gif"}) {
      check(name, pixels);
    }
  }
  check("cmyk.jpg", testing::Waves(61, 43, 4));
}

TEST_F(HeaderAgreement, OfHeadersMadeByteByByte) {
  using namespace imaging::testing;
  for (const std::string& bytes :
       {Bmp(61, 43, 2835), Png(1200, 44, Chunk("pHYs", Big(11811, 4) + Big(11811, 4) + Big(1, 1))), Gif(320, 99),
        Tiff(false, 61, 43, 300, 2), Tiff(true, 61, 43, 300, 3), Tiff(true, 310, 170, 300, 1), TiffOfPages(5, 61, 43),
        PngOfChunks(50, 61, 43)}) {
    ExpectAgreement(app_.Write("header", bytes));
  }
}

class CompanionTest : public ::testing::Test {
 protected:
  void SetUp() override {
    helper_ = host::posix::StartCompanion(BuiltHelper("MediaInfoT"));
    ASSERT_NE(helper_, nullptr);
  }

  Status Ask(const std::string& path, double seconds = kLong, const Companion::KeepWaiting& keepWaiting = {}) {
    return helper_->Ask(path, seconds, keepWaiting, answer_);
  }

  static constexpr double kLong = 600;
  HelperFolder app_;
  std::unique_ptr<Companion> helper_;
  std::string answer_;
};

TEST_F(CompanionTest, AnswersManyFiles) {
  const std::string picture = app_.Write("a.tga", imaging::testing::Tga(61, 43));
  const std::string text = app_.Write("a.txt", "no picture at all");
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(Ask(picture));
    EXPECT_EQ(answer_, "61 43");
    ASSERT_TRUE(Ask(text));
    EXPECT_EQ(answer_, "none");
  }
  EXPECT_EQ(Ask(app_.Path("missing")).GetProblem(), Problem::Missing);
  EXPECT_TRUE(helper_->Alive());
  ASSERT_TRUE(Ask(picture)) << "a file that cannot be opened does not end it";
}

// A file on which a companion would work for ever.
class SilentCompanionTest : public CompanionTest {
 protected:
  void SetUp() override {
    const std::string program = app_.Write("Silent.dll", "#!/bin/sh\nexec sleep 1000\n");
    ASSERT_EQ(chmod(program.c_str(), 0700), 0);
    helper_ = host::posix::StartCompanion(program);
    ASSERT_NE(helper_, nullptr);
    file_ = app_.Write("a.tga", "x");
  }

  std::string file_;
};

TEST_F(SilentCompanionTest, AFileThatNeverEndsEndsTheHelperAlone) {
  constexpr double kShort = 0.2;
  EXPECT_EQ(Ask(file_, kShort).GetProblem(), Problem::Other);
  EXPECT_FALSE(helper_->Alive());
  EXPECT_EQ(Ask(file_).GetProblem(), Problem::Other) << "at once";
}

TEST_F(SilentCompanionTest, AStopEndsTheWait) {
  int rounds = 0;
  EXPECT_EQ(Ask(file_, kLong, [&] { return ++rounds < 3; }).GetProblem(), Problem::Stopped);
  EXPECT_EQ(rounds, 3);
  EXPECT_FALSE(helper_->Alive());
}

// Its directory is its own successor, on which MediaInfo by itself never ends.
TEST_F(CompanionTest, ATiffThatLeadsInACircleIsAnswered) {
  const std::string circle = app_.Write("a.tif", imaging::testing::CyclicTiff(61, 43));
  ASSERT_TRUE(Ask(circle));
  EXPECT_TRUE(helper_->Alive());
}

TEST(CompanionStart, AMissingProgramIsNothing) {
  EXPECT_EQ(host::posix::StartCompanion("/nowhere/MediaInfoT.dll"), nullptr);
}

// Runs act in a process of its own after everything else was blocked. Returns its exit code.
int ExitAfterBlock(const std::function<bool()>& act) {
  const pid_t process = fork();
  if (process == 0) {
    BlockEverythingElse();
    _exit(act() ? 0 : 1);
  }
  int status = -1;
  waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(BlockEverythingElse, LeavesNoFileNoProcessAndNoNetwork) {
  const auto denied = [](long result) { return result < 0 && errno == EACCES; };
  EXPECT_EQ(ExitAfterBlock([&] { return denied(open("/dev/null", O_RDONLY)); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(open("/tmp/made", O_WRONLY | O_CREAT, 0600)); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(unlink("/tmp/nothing")); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(socket(AF_UNIX, SOCK_STREAM, 0)); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(fork()); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(execl("/bin/true", "true", nullptr)); }), 0);
  EXPECT_EQ(ExitAfterBlock([&] { return denied(kill(getppid(), 0)); }), 0);
  EXPECT_EQ(ExitAfterBlock([] { return std::string(100'000, 'x').size() == 100'000; }), 0) << "memory remains";
}

}  // namespace
}  // namespace quillon::helpers
