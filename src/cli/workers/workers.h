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

// Carries out a plan by several workers, each with its share of the files, and tells what they do as one run.
//
// Told are the files and boxes of all, and everything else of the first. The sums are those of all file events: an
// output that two workers made under one name counts once. A worker that dies costs the file that it had under way,
// which is told as one without output; the rest of its share is done by another in its place, which works on one file
// at a time. Where that cannot be done either, the named files and folders are told as left without output.
//
// An older file under the name of an output that could not be made goes to the trash once all have come to their end
// and none has made it or has it as a source; where one died or was stopped, or all are only a share themselves, it
// stays. So do the journals of all as long as one has not done its part. What is held in memory does not grow with the
// number of files.
class Workers {
 public:
  // arguments are those of the plan; folder is one of our own, for what is noted of the files; program is what the
  // workers run.
  Workers(const Plan& plan, std::vector<std::string> arguments, std::string folder, host::Files& files,
          host::Journals& journals, host::Clock& clock, Reporter& reporter, Stopping stopping,
          std::string program = kThisProgram);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Tells the end event and finishes the reporter. Lines that workers write on stderr are passed on, each once.
  Exit Run();
  // Asks all workers to stop; may be called from any thread, and a second time from one who insists.
  void Signal();

 private:
  struct Member;
  struct Older {
    std::string path;
    host::FileFacts facts;
  };

  // Before anything is begun.
  Exit GiveUp();
  void Start(Member& member, Recovering recovering);
  std::string LeftOutPath(const Member& member) const;
  bool SaveLeftOut(const Member& member);
  void WaitForSome();
  void ReadLine(Member& member, const std::string& line);
  void ReadEvent(Member& member, const Event& event);
  void ReadFileEvent(Member& member, const Event& event);
  void ReadLost(const Event& event);
  void ReadOutputs(const std::string& source, const Event& event);
  void ReadOlder(const std::string& path);
  void ReadEnd(Member& member);
  void ReportUnfinished(Member& member, const std::string& how);
  void Count(const std::string& result, int step);
  void ReportLost(const std::string& source, const std::string& why);
  void ShowProgress();
  void DropOlder();
  void RemoveJournals();
  bool Ending() const { return signalled_ || stopping_(); }
  Exit Sum() const;

  const Plan& plan_;
  std::vector<std::string> arguments_;
  std::string folder_;
  host::Files& files_;
  host::Journals& journals_;
  host::Clock& clock_;
  Reporter& reporter_;
  Stopping stopping_;
  std::string program_;
  std::mutex mutex_;  // over the processes, which a second signal looks at from another thread
  std::vector<std::unique_ptr<Member>> members_;
  FileRecords records_;
  std::vector<Older> staleOutputs_;
  std::set<host::JobPart> partsTaken_;  // whose journals workers have asked for
  std::set<host::JobPart> partsDone_;   // of these, those that their worker has done
  std::set<std::string> said_;          // lines on stderr
  Summary sums_;
  double begun_ = 0;
  double shown_ = 0;
  bool signalled_ = false;  // all were asked to stop
  bool someDied_ = false;
};

// The arguments of a worker: those given, without --json, --jobs and --shard, as the share of all that it is.
std::vector<std::string> WorkerArguments(const std::vector<std::string>& arguments, const job::Shard& shard);

}  // namespace quillon::cli
