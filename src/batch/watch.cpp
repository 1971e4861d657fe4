// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/watch.h"

namespace quillon::batch {
namespace {

constexpr double kShowEvery = 0.1;  // seconds

// What stands in front of the program's name in a title, without the blanks around it.
std::string StatusIn(const std::string& title) {
  const std::string name = job::kTitle;
  const bool named = title.size() >= name.size() && title.compare(title.size() - name.size(), name.size(), name) == 0;
  const std::string status = named ? title.substr(0, title.size() - name.size()) : title;
  const auto first = status.find_first_not_of(' ');
  return first == std::string::npos ? std::string() : status.substr(first, status.find_last_not_of(' ') + 1 - first);
}

}  // namespace

Watch::Watch(job::Program& program, Reporter& reporter, Trace trace) : program_(program), reporter_(reporter) {
  program_.observer = this;
  for (controls::Window* window : program_.windows.All()) Observe(*window, trace);
}

Watch::~Watch() {
  program_.observer = nullptr;
  for (const auto& [window, token] : tokens_) window->Forget(token);
}

void Watch::Observe(controls::Window& window, Trace trace) {
  titles_[&window] = window.Title();
  controls::Window::Observer onControl;
  if (trace == Trace::Yes) {
    onControl = [this](controls::Control& control, controls::Aspect aspect) {
      if (aspect == controls::Aspect::Value) reporter_.Tell(ChangeEvent(control));
    };
  }
  const int token = window.Observe(std::move(onControl), [this](controls::Window& changed) { TellTitle(changed); });
  tokens_.emplace_back(&window, token);
}

void Watch::TellTitle(const controls::Window& window) {
  std::string& last = titles_[&window];
  if (last == window.Title()) return;
  last = window.Title();
  reporter_.Tell(TitleEvent(window.Name(), last));
  if (&window == &program_.form1) progress_.status = StatusIn(last);
}

void Watch::Turn() {
  const double now = program_.host.clock.Seconds();
  if (now < nextShow_) return;
  nextShow_ = now + kShowEvery;
  progress_.seconds = now - runBegan_;
  reporter_.Show(progress_);
}

void Watch::TellFile(const job::FileResult& file) {
  Count(file.result);
  reporter_.Tell(FileEvent(file));
}

void Watch::Count(job::Result result) {
  if (result == job::Result::Written) ++sums_.written;
  if (result == job::Result::None) ++sums_.none;
  if (result == job::Result::Skipped) ++sums_.skipped;
}

void Watch::RunStarted(std::size_t planned) {
  ++runs_;
  progress_ = {true, 0, planned, 0, progress_.status};
  runBegan_ = program_.host.clock.Seconds();
}

void Watch::FileDone(const job::FileResult& file) {
  ++progress_.done;
  TellFile(file);
}

void Watch::FileLost(const job::FileResult& file, const std::string& output) {
  if (sums_.written > 0) --sums_.written;
  ++sums_.none;
  reporter_.Tell(LostEvent(file, output));
}

void Watch::FileNotListed(const std::string& source, const std::string& why) {
  TellRefused(source, job::Result::None, why);
}

void Watch::FileFilteredOut(const std::string& source, const std::string& why) {
  TellRefused(source, job::Result::Skipped, why);
}

void Watch::TellRefused(const std::string& source, job::Result result, const std::string& why) {
  refused_.insert(source);
  TellFile({0, source, "", result, why});
}

void Watch::RunEnded(const job::RunTotals& totals) {
  progress_.running = false;
  sums_.seconds += totals.seconds;
  sums_.stopped = sums_.stopped || totals.stopped;
}

}  // namespace quillon::batch
