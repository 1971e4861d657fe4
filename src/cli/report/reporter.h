// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "cli/report/event.h"
#include "host/journal.h"

namespace quillon::cli {

// How far a run has come.
struct Progress {
  bool running = false;
  std::size_t done = 0;
  std::size_t planned = 0;  // 0: not known
  double seconds = 0;       // since the run began
  std::string status;       // what the program shows in front of its title
};

// Where everything that happens is told.
class Reporter {
 public:
  virtual ~Reporter() = default;
  void Tell(const Event& event);
  // Called often while something is under way.
  virtual void Show(const Progress&) {}
  // A file is taken up.
  virtual void Begun(const std::string& /*source*/) {}
  // An older file stands under the name of an output that could not be made.
  virtual void OlderLeft(const std::string& /*path*/) {}
  // The journal of a part of a job is asked for, and done with.
  virtual void JournalOpened(const host::JobPart&) {}
  virtual void JournalDone(const host::JobPart&) {}
  // One control of a list of all.
  virtual void List(const controls::Control& control) { Tell(PrintEvent(control)); }
  // The last call, before which the end event was told.
  virtual void Finish(const Summary&) {}
  // The text of the last box, "" before the first; Forget makes it "" again.
  const std::string& LastBox() const { return lastBox_; }
  void ForgetBox() { lastBox_.clear(); }

 protected:
  virtual void Write(const Event& event) = 0;

 private:
  std::string lastBox_;
};

// Every event as one line of JSON on out, handed on at once. Where that fails it is said once on err.
class JsonReporter : public Reporter {
 public:
  JsonReporter(std::FILE* out, std::FILE* err) : out_(out), err_(err) {}

 protected:
  void Write(const Event& event) override;
  void WriteLine(std::string line);

 private:
  std::FILE* out_;
  std::FILE* err_;
  bool failed_ = false;
};

// In a worker: what the one that started it has to know besides.
class WorkerReporter final : public JsonReporter {
 public:
  using JsonReporter::JsonReporter;

  void Show(const Progress& progress) override;
  void Begun(const std::string& source) override;
  void OlderLeft(const std::string& path) override;
  void JournalOpened(const host::JobPart& part) override;
  void JournalDone(const host::JobPart& part) override;

 protected:
  // All but titles, which nobody hears.
  void Write(const Event& event) override;
};

enum class Terminal { No, Yes };

// For people: printed controls on out; on err a progress line, where it is a terminal, and at the end the sums with the
// files that have no output.
class TextReporter final : public Reporter {
 public:
  TextReporter(std::FILE* out, std::FILE* err, Terminal terminal) : out_(out), err_(err), terminal_(terminal) {}

  void Show(const Progress& progress) override;
  // "Form1.TQuality", kind, value and caption, parted by tabs.
  void List(const controls::Control& control) override;
  void Finish(const Summary& summary) override;

 protected:
  void Write(const Event& event) override;

 private:
  void ClearLine();

  std::FILE* out_;
  std::FILE* err_;
  Terminal terminal_;
  std::string line_;
  std::vector<std::string> without_;  // one line for each file without output, the first of them
  std::size_t untold_ = 0;            // and how many more there are
};

// "处理中 12/300  4%  35.2 张/秒  剩余 0:08"; without a planned number only what is known.
std::string ProgressText(const Progress& progress);
// A control as people read it, several lines.
std::string PrintText(const Event& print);

}  // namespace quillon::cli
