// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "cli/report/event.h"
#include "cli/report/out_stream.h"
#include "host/journal.h"

namespace quillon::cli {

// The progress of a run.
struct Progress {
  bool running = false;
  std::size_t done = 0;     // files
  std::size_t planned = 0;  // files; 0 if the number is not known
  double seconds = 0;       // since the start of the run
  std::string status;       // the part of the window title before the program's name
};

// Receives everything that a call of the program reports. The functions are called on the main thread only.
class Reporter {
 public:
  virtual ~Reporter() = default;
  void Report(const Event& event);
  // Called about ten times a second, with or without a run.
  virtual void Show(const Progress&) {}
  // Called before a file is handled; source is "" if none is being handled any more.
  virtual void FileStarted(const std::string& /*source*/) {}
  // Called by a run of one shard if an output could not be made and an older file of its name exists. The run leaves
  // that file in place, because another shard may have written it.
  virtual void StaleOutputLeft(const std::string& /*path*/) {}
  // Called in a worker when the journal of a part of a job is asked for, and when the part is done.
  virtual void JournalOpened(const host::JobPart&) {}
  virtual void JournalDone(const host::JobPart&) {}
  // Called for each control of --list-controls.
  virtual void List(const controls::Control& control) { Report(PrintEvent(control)); }
  // Called once, after the end event and after everything else.
  virtual void Finish(const Summary&) {}
  // True if an event could not be written although somebody may be reading.
  virtual bool EventsLost() const { return false; }
  // Returns the text of the last box that was reported; "" if there was none since ClearLastBox().
  const std::string& LastBox() const { return lastBox_; }
  void ClearLastBox() { lastBox_.clear(); }

 protected:
  virtual void Write(const Event& event) = 0;

 private:
  std::string lastBox_;
};

// --json: writes every event as one JSON line to out, at once.
class JsonReporter : public Reporter {
 public:
  JsonReporter(std::FILE* out, std::FILE* err) : out_(out, err) {}

  bool EventsLost() const override { return out_.Lost(); }

 protected:
  void Write(const Event& event) override;
  void WriteLine(const std::string& line) { out_.Write(line + "\n"); }

 private:
  OutStream out_;
};

// Used in a worker process: also writes the lines that only the parent process reads (workers/worker_lines.h).
class WorkerReporter final : public JsonReporter {
 public:
  using JsonReporter::JsonReporter;

  void Show(const Progress& progress) override;
  void FileStarted(const std::string& source) override;
  void StaleOutputLeft(const std::string& path) override;
  void JournalOpened(const host::JobPart& part) override;
  void JournalDone(const host::JobPart& part) override;

 protected:
  // Drops title events: the parent ignores them, and a run has many.
  void Write(const Event& event) override;
};

enum class Terminal { No, Yes };

// Without --json: writes printed controls to out. To err it writes a progress line if err is a terminal, and at the end
// the files without output and the sums. Control characters in names are replaced by '?'.
class TextReporter final : public Reporter {
 public:
  TextReporter(std::FILE* out, std::FILE* err, Terminal terminal) : out_(out, err), err_(err), terminal_(terminal) {}

  bool EventsLost() const override { return out_.Lost(); }
  void Show(const Progress& progress) override;
  // Writes name ("Form1.TQuality"), kind, value and caption with tabs between them.
  void List(const controls::Control& control) override;
  void Finish(const Summary& summary) override;

 protected:
  void Write(const Event& event) override;

 private:
  void ClearLine();

  OutStream out_;
  std::FILE* err_;
  Terminal terminal_;
  std::string line_;                        // the progress line on the terminal, "" if there is none
  std::vector<std::string> withoutOutput_;  // lines about the first files without output
  std::size_t omitted_ = 0;                 // further files without output, of which only the number is kept
};

// Returns "处理中 12/300  4%  35.2 张/秒  剩余 0:08". If the number of files is not known, it has no percentage and no
// time left. Returns the status text if no run goes on.
std::string ProgressText(const Progress& progress);
// Returns a print event as text for people: one to three lines.
std::string PrintText(const Event& print);

}  // namespace quillon::cli
