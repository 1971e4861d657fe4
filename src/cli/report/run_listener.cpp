// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/run_listener.h"

namespace quillon::cli {
namespace {

constexpr double kShowEvery = 0.1;  // seconds

// Returns the part of a title before the program's name, without the blanks around it.
std::string StatusIn(const std::string& title) {
  const std::string name = job::kTitle;
  const bool named = title.size() >= name.size() && title.compare(title.size() - name.size(), name.size(), name) == 0;
  const std::string status = named ? title.substr(0, title.size() - name.size()) : title;
  const auto first = status.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : status.substr(first, status.find_last_not_of(' ') + 1 - first);
}

}  // namespace

RunListener::RunListener(job::Program& program, Reporter& reporter, Trace trace)
    : program_(program), reporter_(reporter) {
  program_.observer = this;
  for (controls::Window* window : program_.windows.All()) Observe(*window, trace);
}

RunListener::~RunListener() {
  program_.observer = nullptr;
  for (const auto& [window, token] : tokens_) window->Forget(token);
}

void RunListener::Observe(controls::Window& window, Trace trace) {
  titles_[&window] = window.Title();
  controls::Window::Observer onControl;
  if (trace == Trace::Yes) {
    onControl = [this](controls::Control& control, controls::Aspect aspect) {
      if (aspect == controls::Aspect::Value) reporter_.Report(ChangeEvent(control));
    };
  }
  const int token = window.Observe(std::move(onControl), [this](controls::Window& changed) { ReportTitle(changed); });
  tokens_.emplace_back(&window, token);
}

void RunListener::ReportTitle(const controls::Window& window) {
  std::string& last = titles_[&window];
  if (last == window.Title()) return;
  last = window.Title();
  reporter_.Report(TitleEvent(window.Name(), last));
  if (&window == &program_.form1) progress_.status = StatusIn(last);
}

void RunListener::Turn() {
  const double now = program_.host.clock.Seconds();
  if (now < nextShow_) return;
  nextShow_ = now + kShowEvery;
  progress_.seconds = now - runBegan_;
  reporter_.Show(progress_);
}

void RunListener::ReportFile(const job::FileResult& file) {
  Count(file.result);
  reporter_.Report(FileEvent(file));
}

void RunListener::Count(job::Result result) {
  if (result == job::Result::Written) ++sums_.written;
  if (result == job::Result::None) ++sums_.none;
  if (result == job::Result::Skipped) ++sums_.skipped;
}

void RunListener::RunStarted(std::size_t planned) {
  ++runs_;
  progress_ = {true, 0, planned, 0, progress_.status};
  runBegan_ = program_.host.clock.Seconds();
}

void RunListener::FileDone(const job::FileResult& file) {
  ++progress_.done;
  ReportFile(file);
}

// The file was counted as written; now it counts as one without output, so that the sums stay right.
void RunListener::FileLost(const job::FileResult& file, const std::string& output) {
  if (sums_.written > 0) --sums_.written;
  ++sums_.none;
  reporter_.Report(LostEvent(file, output));
}

void RunListener::FileNotListed(const std::string& source, const std::string& why) {
  ReportRefused(source, job::Result::None, why);
}

void RunListener::FileFilteredOut(const std::string& source, const std::string& why) {
  ReportRefused(source, job::Result::Skipped, why);
}

void RunListener::ReportRefused(const std::string& source, job::Result result, const std::string& why) {
  refused_.insert(source);
  ReportFile({0, source, "", result, why});
}

void RunListener::RunEnded(const job::RunTotals& totals) {
  progress_.running = false;
  sums_.seconds += totals.seconds;
  sums_.stopped = sums_.stopped || totals.stopped;
}

}  // namespace quillon::cli
