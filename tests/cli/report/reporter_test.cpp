// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/reporter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "controls/values.h"
#include "controls/window.h"

namespace quillon::cli {
namespace {

// A stream into memory.
class Stream {
 public:
  Stream() : file_(open_memstream(&text_, &size_)) {}
  ~Stream() {
    std::fclose(file_);
    std::free(text_);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  std::FILE* File() const { return file_; }
  std::string Text() const {
    std::fflush(file_);
    return {text_, size_};
  }

 private:
  char* text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* file_;
};

Progress Running(std::size_t done, std::size_t planned, double seconds) {
  return {true, done, planned, seconds, "正在处理"};
}

TEST(ProgressText, HasRateAndTimeLeft) {
  EXPECT_EQ(ProgressText(Running(12, 300, 0.5)), "处理中 12/300  4%  24.0 张/秒  剩余 0:12");
  EXPECT_EQ(ProgressText(Running(1, 10000, 10)), "处理中 1/10000  0%  0.1 张/秒  剩余 27:46:30");
  EXPECT_EQ(ProgressText(Running(300, 300, 3)), "处理中 300/300  100%  100.0 张/秒  剩余 0:00");
}

TEST(ProgressText, LeavesOutWhatIsNotKnown) {
  EXPECT_EQ(ProgressText(Running(0, 300, 2)), "处理中 0/300  0%  0.0 张/秒");
  EXPECT_EQ(ProgressText(Running(0, 300, 0)), "处理中 0/300  0%  0.0 张/秒");
  EXPECT_EQ(ProgressText(Running(50, 0, 2)), "处理中 50  25.0 张/秒");
  EXPECT_EQ(ProgressText({false, 0, 0, 0, "添加文件列表中..."}), "添加文件列表中...");
}

TEST(ProgressText, SurvivesMoreDoneThanPlanned) {
  EXPECT_EQ(ProgressText(Running(4, 2, 2)), "处理中 4/2  200%  2.0 张/秒  剩余 0:00");
}

struct Print {
  Event event;
  std::string text;
};

Event Control(const std::string& value, const std::string& text, bool enabled, std::vector<std::string> items,
              FieldValue min, FieldValue max) {
  return {EventKind::Print,
          {{"control", std::string("Form1.X")},
           {"value", value},
           {"text", text},
           {"enabled", enabled},
           {"visible", true},
           {"items", std::move(items)},
           {"min", std::move(min)},
           {"max", std::move(max)}}};
}

TEST(PrintText, ShowsWhatTheControlHas) {
  EXPECT_EQ(PrintText(Control("5", "5", true, {}, {}, {})), "Form1.X = 5\n");
  EXPECT_EQ(PrintText(Control("1", "png", true, {"jpg", "png"}, {}, {})), "Form1.X = 1（png）\n    选项：jpg、png\n");
  EXPECT_EQ(PrintText(Control("80", "80", false, {}, 30.0, 99.0)), "Form1.X = 80  不可用\n    范围：30 到 99\n");
}

TEST(PrintText, ShowsAnOpenRange) {
  EXPECT_EQ(PrintText(Control("5", "5", true, {}, 0.0, {})), "Form1.X = 5\n    范围：不小于 0\n");
  EXPECT_EQ(PrintText(Control("5", "5", true, {}, {}, 9.5)), "Form1.X = 5\n    范围：不大于 9.5\n");
}

TEST(TextReporter, ListsAControlOnOneLine) {
  controls::Window window("Form1", "");
  controls::CheckBox box(window, "ChOver", {.caption = "覆盖\t原文件"}, true);
  Stream out;
  Stream err;
  TextReporter(out.File(), err.File(), Terminal::No).List(box);
  EXPECT_EQ(out.Text(), "Form1.ChOver\tCheckBox\t1\t覆盖?原文件\n");
}

TEST(PrintText, LetsNoControlCharacterThrough) {
  EXPECT_EQ(PrintText(Control("a\x1B[2J\nb", "a\x1B[2J\nb", true, {}, {}, {})), "Form1.X = a?[2J?b\n");
}

TEST(TextReporter, PrintsControlsOnOut) {
  Stream out;
  Stream err;
  TextReporter reporter(out.File(), err.File(), Terminal::No);
  reporter.Report(Control("5", "5", true, {}, {}, {}));
  EXPECT_EQ(out.Text(), "Form1.X = 5\n");
  EXPECT_EQ(err.Text(), "");
}

TEST(TextReporter, SumsUpWithTheFilesThatHaveNoOutput) {
  Stream out;
  Stream err;
  TextReporter reporter(out.File(), err.File(), Terminal::No);
  reporter.Report(FileEvent({1, "/a.jpg", "/o/a.jpg", job::Result::Written, ""}));
  reporter.Report(FileEvent({2, "/b\n.jpg", "", job::Result::None, "文件已损坏"}));
  reporter.Report(FileEvent({3, "/c.jpg", "", job::Result::Skipped, "目录已处理"}));
  reporter.Report(BeepEvent());
  reporter.Finish({1, 1, 1, 2.04, false});
  EXPECT_EQ(out.Text(), "");
  EXPECT_EQ(err.Text(),
            "没有输出：/b?.jpg：文件已损坏\n略过：/c.jpg：目录已处理\n写出 1，没有输出 1，略过 1，用时 2.0 秒\n");
}

TEST(TextReporter, SaysWhenARunWasStopped) {
  Stream out;
  Stream err;
  TextReporter reporter(out.File(), err.File(), Terminal::No);
  reporter.Finish({0, 0, 0, 0, true});
  EXPECT_EQ(err.Text(), "写出 0，没有输出 0，略过 0，用时 0.0 秒，已中止\n");
}

TEST(TextReporter, IsSilentIfNothingRan) {
  Stream out;
  Stream err;
  TextReporter reporter(out.File(), err.File(), Terminal::No);
  reporter.Finish({});
  EXPECT_EQ(err.Text(), "");
}

TEST(TextReporter, DrawsItsLineOnATerminalOnly) {
  Stream out;
  Stream err;
  Stream plain;
  TextReporter onTerminal(out.File(), err.File(), Terminal::Yes);
  TextReporter elsewhere(out.File(), plain.File(), Terminal::No);
  for (TextReporter* reporter : {&onTerminal, &elsewhere}) {
    reporter->Show({false, 0, 0, 0, "一"});
    reporter->Show({false, 0, 0, 0, "一"});
    reporter->Show({false, 0, 0, 0, "二"});
    reporter->Finish({});
  }
  EXPECT_EQ(err.Text(), "一\r\x1B[K二\r\x1B[K");
  EXPECT_EQ(plain.Text(), "");
}

TEST(JsonReporter, WritesEachEventAtOnce) {
  Stream out;
  Stream err;
  JsonReporter reporter(out.File(), err.File());
  reporter.Report(BeepEvent());
  EXPECT_EQ(out.Text(), "{\"event\":\"beep\"}\n");
  reporter.Report(TitleEvent("Form1", "x"));
  EXPECT_EQ(out.Text(), "{\"event\":\"beep\"}\n{\"event\":\"title\",\"text\":\"x\",\"window\":\"Form1\"}\n");
}

// A device that is always full.
TEST(JsonReporter, ReportsEventsThatAreLost) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  std::setvbuf(full, nullptr, _IONBF, 0);
  Stream err;
  JsonReporter reporter(full, err.File());
  EXPECT_FALSE(reporter.EventsLost());
  reporter.Report(BeepEvent());
  reporter.Report(BeepEvent());
  EXPECT_TRUE(reporter.EventsLost());
  EXPECT_EQ(err.Text(), "quillon-batch: 标准输出无法写入（磁盘空间不足），以后的事件没有写出\n");
  std::fclose(full);
}

// A stream whose writes fail for a while, as those to a pipe do when a signal comes or when it is full and does not
// block.
struct ShakyStream {
  static ssize_t Write(void* cookie, const char* data, std::size_t size) {
    auto* stream = static_cast<ShakyStream*>(cookie);
    const int call = stream->calls++ % 3;
    if (call < 2) {
      errno = call == 0 ? EINTR : EAGAIN;
      return 0;
    }
    const std::size_t part = std::min<std::size_t>(size, 7);
    stream->text.append(data, part);
    return static_cast<ssize_t>(part);
  }

  int calls = 0;
  std::string text;
};

TEST(JsonReporter, RepeatsWritesThatOnlyFailForTheMoment) {
  ShakyStream shaky;
  std::FILE* out = fopencookie(&shaky, "w", {nullptr, &ShakyStream::Write, nullptr, nullptr});
  ASSERT_NE(out, nullptr);
  std::setvbuf(out, nullptr, _IONBF, 0);
  Stream err;
  JsonReporter reporter(out, err.File());
  reporter.Report(BeepEvent());
  EXPECT_EQ(shaky.text, "{\"event\":\"beep\"}\n");
  EXPECT_FALSE(reporter.EventsLost());
  EXPECT_EQ(err.Text(), "");
  std::fclose(out);
}

TEST(WorkerReporter, LeavesTitlesOut) {
  Stream out;
  Stream err;
  WorkerReporter reporter(out.File(), err.File());
  reporter.Report(TitleEvent("Form1", "x"));
  reporter.Report(BeepEvent());
  EXPECT_EQ(out.Text(), "{\"event\":\"beep\"}\n");
}

}  // namespace
}  // namespace quillon::cli
