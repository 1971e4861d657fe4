// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/report/reporter.h"
#include "job/program.h"

namespace quillon::cli {

enum class Trace { No, Yes };

// Observes a program and its windows, and turns what happens into events: titles, files and, with a trace, changes of
// controls. Also counts the results and shows the progress.
// The program must outlive the listener; there can be only one at a time.
class RunListener final : public job::RunObserver {
 public:
  RunListener(job::Program& program, Reporter& reporter, Trace trace);
  ~RunListener() override;
  RunListener(const RunListener&) = delete;
  RunListener& operator=(const RunListener&) = delete;

  // Shows the progress, at most ten times a second. Must be called at every turn of the message pump.
  void Turn();
  // Counts and reports a file that no run handles.
  void ReportFile(const job::FileResult& file);

  const Summary& Sums() const { return sums_; }
  // Returns the number of runs that have started so far.
  std::size_t RunsStarted() const { return runs_; }
  // Returns the sentences about listed folders.
  const std::vector<std::string>& Notes() const { return notes_; }
  // Returns true if a listing has reported that it did not accept the file.
  bool Refused(const std::string& source) const { return refused_.contains(source); }

  void RunStarted(std::size_t planned) override;
  void FileBegun(const std::string& source) override { reporter_.FileStarted(source); }
  void RunPlanned(std::size_t planned) override { progress_.planned = planned; }
  void FileDone(const job::FileResult& file) override;
  void FileLost(const job::FileResult& file, const std::string& output) override;
  void StaleOutputLeft(const std::string& path) override { reporter_.StaleOutputLeft(path); }
  void RunEnded(const job::RunTotals& totals) override;
  void FileNotListed(const std::string& source, const std::string& why) override;
  void FileFilteredOut(const std::string& source, const std::string& why) override;
  void FolderNoted(const std::string& folder, const std::string& what) override {
    notes_.push_back(folder + "：" + what);
  }

 private:
  void Observe(controls::Window& window, Trace trace);
  void ReportTitle(const controls::Window& window);
  void ReportRefused(const std::string& source, job::Result result, const std::string& why);
  void Count(job::Result result);

  job::Program& program_;
  Reporter& reporter_;
  std::vector<std::pair<controls::Window*, int>> tokens_;  // of the observed windows
  std::map<const controls::Window*, std::string> titles_;  // the title that was reported last
  std::set<std::string> refused_;                          // sources that a listing did not accept
  std::vector<std::string> notes_;
  Summary sums_;  // over all runs of the call
  std::size_t runs_ = 0;
  Progress progress_;
  double runBegan_ = 0;  // in seconds of the host's clock, as is nextShow_
  double nextShow_ = 0;
};

}  // namespace quillon::cli
