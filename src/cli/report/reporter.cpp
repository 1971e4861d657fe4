// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/reporter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/utf8.h"
#include "cli/report/json_io.h"
#include "cli/workers/worker_lines.h"

namespace quillon::cli {
namespace {

// Names of files may contain control characters; on a terminal they could move the cursor or worse.
std::string Shown(const std::string& text) {
  std::string shown = base::DisplayText(text);
  for (char& c : shown) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = '?';
  }
  return shown;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : "、") + Shown(text);
  return all;
}

std::string NumberOf(const Event& event, const std::string& name) {
  const FieldValue* value = event.Find(name);
  const auto* number = value ? std::get_if<double>(value) : nullptr;
  return number ? base::NumberText(*number) : std::string();
}

bool FlagOf(const Event& event, const std::string& name) {
  const FieldValue* value = event.Find(name);
  const auto* flag = value ? std::get_if<bool>(value) : nullptr;
  return flag && *flag;
}

const char* KindName(controls::Kind kind) {
  switch (kind) {
    case controls::Kind::CheckBox:
      return "CheckBox";
    case controls::Kind::Option:
      return "Option";
    case controls::Kind::TextBox:
      return "TextBox";
    case controls::Kind::ComboBox:
      return "ComboBox";
    case controls::Kind::Button:
      return "Button";
    case controls::Kind::Menu:
      return "Menu";
    case controls::Kind::Label:
      return "Label";
    case controls::Kind::Frame:
      return "Frame";
    case controls::Kind::ColourBox:
      return "ColourBox";
    case controls::Kind::Slider:
      return "Slider";
    case controls::Kind::Grid:
      return "Grid";
  }
  return "";
}

std::string RangeText(const std::string& min, const std::string& max) {
  if (min.empty() && max.empty()) return {};
  if (max.empty()) return "不小于 " + min;
  if (min.empty()) return "不大于 " + max;
  return min + " 到 " + max;
}

// The most lines about files without output. Nobody reads more, and the memory of a long run must not grow.
constexpr std::size_t kMostLines = 1000;

// Returns "0:08" or "1:02:03". Seconds are rounded up, so that the time left is 0:00 only at the end.
std::string TimeText(double seconds) {
  const auto whole = static_cast<long>(std::ceil(seconds));
  if (whole >= 3600) return fmt::format("{}:{:02}:{:02}", whole / 3600, whole / 60 % 60, whole % 60);
  return fmt::format("{}:{:02}", whole / 60, whole % 60);
}

}  // namespace

void Reporter::Report(const Event& event) {
  if (event.kind == EventKind::Box) lastBox_ = event.Text("text");
  Write(event);
}

void JsonReporter::Write(const Event& event) { WriteLine(JsonLine(event)); }

void WorkerReporter::Show(const Progress& progress) {
  if (progress.running) WriteLine(ProgressLine(progress));
}

void WorkerReporter::FileStarted(const std::string& source) { WriteLine(StartedLine(source)); }

void WorkerReporter::StaleOutputLeft(const std::string& path) { WriteLine(StaleOutputLine(path)); }

void WorkerReporter::JournalOpened(const host::JobPart& part) { WriteLine(JournalLine(part)); }

void WorkerReporter::JournalDone(const host::JobPart& part) { WriteLine(JournalDoneLine(part)); }

void WorkerReporter::Write(const Event& event) {
  if (event.kind != EventKind::Title) JsonReporter::Write(event);
}

std::string ProgressText(const Progress& progress) {
  if (!progress.running) return progress.status;
  const double rate = progress.seconds > 0 ? static_cast<double>(progress.done) / progress.seconds : 0;
  if (progress.planned == 0) return fmt::format("处理中 {}  {:.1f} 张/秒", progress.done, rate);
  std::string text = fmt::format("处理中 {}/{}  {}%  {:.1f} 张/秒", progress.done, progress.planned,
                                 progress.done * 100 / progress.planned, rate);
  const std::size_t left = progress.planned - std::min(progress.done, progress.planned);
  if (rate > 0) text += "  剩余 " + TimeText(static_cast<double>(left) / rate);
  return text;
}

std::string PrintText(const Event& print) {
  const std::string value = print.Text("value");
  const std::string text = print.Text("text");
  std::string lines = Shown(print.Text("control")) + " = " + Shown(value);
  if (text != value) lines += "（" + Shown(text) + "）";
  if (!FlagOf(print, "enabled")) lines += "  不可用";
  if (!FlagOf(print, "visible")) lines += "  不可见";
  lines += "\n";
  const auto* items = std::get_if<std::vector<std::string>>(print.Find("items"));
  if (items && !items->empty()) lines += "    选项：" + Joined(*items) + "\n";
  const std::string range = RangeText(NumberOf(print, "min"), NumberOf(print, "max"));
  if (!range.empty()) lines += "    范围：" + range + "\n";
  return lines;
}

void TextReporter::ClearLine() {
  if (line_.empty()) return;
  line_.clear();
  std::fputs("\r\x1B[K", err_);
}

void TextReporter::Write(const Event& event) {
  if (event.kind == EventKind::Print) {
    ClearLine();
    out_.Write(PrintText(event));
  } else if (event.kind == EventKind::File && event.Text("result") != ResultName(job::Result::Written)) {
    const char* kind = event.Text("result") == ResultName(job::Result::Skipped) ? "略过" : "没有输出";
    if (withoutOutput_.size() >= kMostLines) {
      ++omitted_;
      return;
    }
    withoutOutput_.push_back(std::string(kind) + "：" + Shown(event.Text("source")) + "：" + Shown(event.Text("why")));
  }
}

void TextReporter::Show(const Progress& progress) {
  if (terminal_ == Terminal::No) return;
  const std::string text = Shown(ProgressText(progress));
  if (text == line_) return;
  ClearLine();
  line_ = text;
  std::fputs(line_.c_str(), err_);
  std::fflush(err_);
}

void TextReporter::List(const controls::Control& control) {
  const std::string line = Shown(control.FullName()) + "\t" + KindName(control.GetKind()) + "\t" +
                           Shown(control.Value()) + "\t" + Shown(control.Caption()) + "\n";
  out_.Write(line);
}

void TextReporter::Finish(const Summary& summary) {
  ClearLine();
  for (const std::string& line : withoutOutput_) std::fprintf(err_, "%s\n", line.c_str());
  if (omitted_ > 0) std::fprintf(err_, "……另有 %zu 个文件没有输出或略过\n", omitted_);
  if (summary.written + summary.none + summary.skipped > 0 || summary.stopped) {
    const std::string sums =
        fmt::format("写出 {}，没有输出 {}，略过 {}，用时 {:.1f} 秒{}\n", summary.written, summary.none, summary.skipped,
                    summary.seconds, summary.stopped ? "，已中止" : "");
    std::fputs(sums.c_str(), err_);
  }
  std::fflush(err_);
}

}  // namespace quillon::cli
