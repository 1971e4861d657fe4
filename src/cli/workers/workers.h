// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "cli/hosts.h"
#include "cli/plan.h"
#include "cli/report/reporter.h"
#include "cli/workers/file_records.h"
#include "cli/workers/worker.h"
#include "host/files/files.h"
#include "host/journal.h"
#include "job/settings/shard.h"

namespace quillon::cli {

inline constexpr const char* kThisProgram = "/proc/self/exe";

// Carries out a plan with several worker processes, each with its shard of the files, and reports them as one run.
// workers.cpp begins with a description of how this works.
//
// - Events: all file and box events, and of the other events those of the first worker; no titles.
// - Sums: over all file events. An output that two workers wrote under one name counts once.
// - A worker that dies costs the file that it was handling, which is reported as left without output. A new worker with
//   the same shard handles the rest. If that is impossible, the named files and folders are reported as left without
//   output.
// - Stale outputs (older files under the name of an output that could not be made) go to the trash at the end, if no
//   worker has written them or has them as a source. They stay if a worker died, if the run was stopped, or if the call
//   is itself a shard.
// - The journals of all workers are removed when every worker has done its part, else all of them stay.
// - Memory does not grow with the number of files.
class Workers {
 public:
  // arguments are those that plan was parsed from. folder is a folder of the program's own, for records about the
  // files. program is the executable that the workers run. The references must outlive the object.
  Workers(const Plan& plan, std::vector<std::string> arguments, std::string folder, host::Files& files,
          host::Journals& journals, host::Clock& clock, Reporter& reporter, Stopping stopping,
          std::string program = kThisProgram);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Runs the workers to their end, reports the end event and calls Reporter::Finish(). Lines that workers write to
  // stderr are printed, equal ones once. Returns exit code 1 without starting a worker if the records cannot be
  // written. Call at most once.
  Exit Run();
  // Sends SIGTERM to all workers, which asks them to stop. Can be called from any thread. Called a second time, it
  // makes them end at once.
  void Signal();

 private:
  struct Member;
  struct StaleOutput {
    std::string path;
    host::FileFacts facts;
  };

  Exit GiveUp();
  void Start(Member& member, Recovering recovering);
  std::string DoneListPath(const Member& member) const;
  bool SaveDoneList(const Member& member);
  void PollWorkers();
  void HandleLine(Member& member, const std::string& line);
  void HandleEvent(Member& member, const Event& event);
  void HandleFileEvent(Member& member, const Event& event);
  void HandleLostEvent(const Event& event);
  void RecordOutputs(const std::string& source, const Event& event);
  void AddStaleOutput(const std::string& path);
  void HandleExit(Member& member);
  void ReportUnfinished(Member& member, const std::string& how);
  void Count(const std::string& result, int step);
  void ReportLost(const std::string& source, const std::string& why);
  void ShowProgress();
  void DiscardStaleOutputs();
  void RemoveJournals();
  bool Ending() const { return stopRequested_ || stopping_(); }
  Exit FinalExit() const;

  const Plan& plan_;
  std::vector<std::string> arguments_;
  std::string folder_;
  host::Files& files_;
  host::Journals& journals_;
  host::Clock& clock_;
  Reporter& reporter_;
  Stopping stopping_;
  std::string program_;
  std::mutex mutex_;  // guards Member::worker, which Signal() reads from the signal thread
  std::vector<std::unique_ptr<Member>> members_;
  FileRecords records_;
  std::vector<StaleOutput> staleOutputs_;
  std::set<host::JobPart> openedJournals_;  // parts whose journals workers have asked for
  std::set<host::JobPart> doneJournals_;    // of these, the parts that are done
  std::set<std::string> printedLines_;      // lines on stderr
  Summary sums_;
  double startedAt_ = 0;
  double lastShown_ = 0;
  bool stopRequested_ = false;  // all were asked to stop
  bool someWorkerDied_ = false;
};

// Returns the arguments of a worker: the given ones with --json and the worker's own --shard, without --jobs.
std::vector<std::string> WorkerArguments(const std::vector<std::string>& arguments, const job::Shard& shard);

}  // namespace quillon::cli
