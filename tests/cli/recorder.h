// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "cli/report/json_io.h"
#include "cli/report/reporter.h"

namespace quillon::cli {

// Keeps every event for the assertions of a test.
class Recorder final : public Reporter {
 public:
  const std::vector<Event>& Events() const { return events_; }
  // Returns the events as JSON lines, in order.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (const Event& event : events_) lines.push_back(JsonLine(event));
    return lines;
  }
  std::vector<Event> Of(EventKind kind) const {
    std::vector<Event> found;
    for (const Event& event : events_) {
      if (event.kind == kind) found.push_back(event);
    }
    return found;
  }
  const std::vector<Progress>& Shown() const { return shown_; }
  int Finished() const { return finished_; }
  const std::vector<std::string>& Journals() const { return journals_; }

  void Show(const Progress& progress) override { shown_.push_back(progress); }
  void Finish(const Summary&) override { ++finished_; }
  void JournalOpened(const host::JobPart& part) override { journals_.push_back("opened " + part.job); }
  void JournalDone(const host::JobPart& part) override { journals_.push_back("done " + part.job); }

 protected:
  void Write(const Event& event) override { events_.push_back(event); }

 private:
  std::vector<Event> events_;
  std::vector<Progress> shown_;
  std::vector<std::string> journals_;
  int finished_ = 0;
};

}  // namespace quillon::cli
