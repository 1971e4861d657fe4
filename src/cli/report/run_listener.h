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

// Looks on while a program works, tells its titles, files and (with a trace) changes, and keeps the sums.
class RunListener final : public job::RunObserver {
 public:
  RunListener(job::Program& program, Reporter& reporter, Trace trace);
  ~RunListener() override;
  RunListener(const RunListener&) = delete;
  RunListener& operator=(const RunListener&) = delete;

  // Shows how far things have come; to be called at every turn of the pump.
  void Turn();
  // Tells of a file that no run took up.
  void ReportFile(const job::FileResult& file);

  const Summary& Sums() const { return sums_; }
  std::size_t RunsStarted() const { return runs_; }
  // Whether a listing told of the file that it did not take it.
  bool Refused(const std::string& source) const { return refused_.contains(source); }

  void RunStarted(std::size_t planned) override;
  void FileBegun(const std::string& source) override { reporter_.Begun(source); }
  void RunPlanned(std::size_t planned) override { progress_.planned = planned; }
  void FileDone(const job::FileResult& file) override;
  void FileLost(const job::FileResult& file, const std::string& output) override;
  void OlderLeft(const std::string& path) override { reporter_.OlderLeft(path); }
  void RunEnded(const job::RunTotals& totals) override;
  void FileNotListed(const std::string& source, const std::string& why) override;
  void FileFilteredOut(const std::string& source, const std::string& why) override;

 private:
  void Observe(controls::Window& window, Trace trace);
  void ReportTitle(const controls::Window& window);
  void ReportRefused(const std::string& source, job::Result result, const std::string& why);
  void Count(job::Result result);

  job::Program& program_;
  Reporter& reporter_;
  std::vector<std::pair<controls::Window*, int>> tokens_;
  std::map<const controls::Window*, std::string> titles_;
  std::set<std::string> refused_;
  Summary sums_;
  std::size_t runs_ = 0;
  Progress progress_;
  double runBegan_ = 0;
  double nextShow_ = 0;
};

}  // namespace quillon::cli
