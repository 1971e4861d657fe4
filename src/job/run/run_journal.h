// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/files/file_stamp.h"
#include "host/files/files.h"
#include "host/journal.h"
#include "job/settings/run_report.h"

// How a run over a folder is resumed. A journal (host::Journal) is a small database for each job and shard. Two jobs
// are the same if their drivers, their folders and all their parameters are equal. Records are found by path:
//
//   begun  of a source: it is about to be overwritten; its stamp before that
//   done   of a source: its stamp, and the stamps and paths of all its outputs
//   from   of an output: its source
//   stamp  of an output with an origin: its stamp when it was written
//   partial
//          of an output: its source counts as one without a result, because another of its outputs could not be made
//   meant  of an output that is not finished: its source
//   beside of an output: its source; it was given this name because a file that is kept has the usual one
//   ended  of a source: it ended the run; its stamp, and why
//   decision, before, after
//          of a source that the user decided about by hand: the decision, as text that only the driver reads; the
//          source's stamp when it was made; the stamp after the cut that followed
//
// Before a file is handled, Begun records what could not be recognised afterwards: a source that its own result
// replaces, and results that the walk may find and would read as sources. It does so for up to kIntendedAtOnce files
// together, because each commit waits for the disk. After the file, Ended remembers its outputs in memory only. At a
// checkpoint the run first flushes its outputs to disk and then calls Commit, which writes a done record for each
// source whose outputs all exist. So a done record never promises more than what is on disk, and a run that is killed
// repeats at most the files since its last checkpoint.
//
// A resumed run calls Stands for each file. It returns true if the outputs of the done record are unchanged and the
// source is still the file they were made from. Files are compared by size and time of modification, and by inode or
// time of change, because some disks give their files new numbers at each mount. A completed job removes its journal.
// If no journal can be kept, nothing is remembered and no run can be resumed: a run that overwrites its sources asks
// before it starts, and one whose journal cannot be written any more stops before it replaces the next source.
//
// A decision is committed as soon as the user has made it, and is applied again while the source is unchanged. A run
// over the list keeps a journal only if the user decides by hand, and stores only the decisions in it. Two such jobs
// are the same if their lists, output folders and kinds of output are equal. A resumed one handles every row again.
//
// If the journal could not be read completely (host::kTornKey), a run that overwrites its sources asks before it
// starts, and does nothing unless the user agrees, because it would cut again the sources of the lost records. Any
// other run merely repeats those files.
namespace quillon::job {

class RunLedger;
struct RunContext;

// The records of a run, with which it can be resumed after a stop, a kill or a power failure.
class RunJournal {
 public:
  // Returns the outputs of a source that the walk might find later.
  using Foreseen = std::function<std::vector<std::string>(const std::string& source)>;

  // The largest number of sources that are recorded together before they are handled.
  static constexpr std::size_t kIntendedAtOnce = 256;

  // windows: those whose controls are parameters of the job.
  RunJournal(const RunContext& context, std::string driver, std::vector<std::string> windows);

  // Call one of these at the start of a run. They ask whether to resume an unfinished run of the same job, and forget
  // it if not. They return false if the user wants no run. Over a folder. A run that split its files into a different
  // number of shards cannot be resumed.
  bool BeginFolder();
  // Over the list, if the user decides by hand.
  bool BeginList();
  bool Kept() const { return journal_ != nullptr; }

  // Returns true if an earlier part of the job handled the source: its outputs are unchanged, and the source is still
  // the file they were made from, or there is nothing at its path any more.
  bool Stands(const std::string& source);
  // Calls visit for each handled source whose outputs exist and whose disk responds.
  void EachHandled(const std::function<void(const std::string& source)>& visit);
  // Returns why the source, as it is now, ended an earlier part of the job; nullopt if it did not.
  std::optional<std::string> WhyEnded(const std::string& source) const;
  // Returns the recorded outputs of source.
  std::vector<std::string> OutputsOf(const std::string& source);
  // Returns the source of path if path is an unchanged result of this job, or was made by a part that was killed; else
  // "".
  std::string MadeOf(const std::string& path);
  // Call before source is handled; next are the sources that follow it. Records what could not be recognised
  // afterwards: an overwritten source, and a result among the sources. Returns false if the record is not on disk.
  bool Begun(const std::string& source, const std::vector<std::string>& next, const Foreseen& foreseen);
  // Call after Begun, before the output of source is saved under a name that Foreseen cannot know, because a file that
  // is kept has the usual name. The record is on disk when the call returns.
  void NoteBeside(const std::string& source, const std::string& output);
  // Returns the source for which NoteBeside was called; "" if there is none.
  std::string BesideOf(const std::string& output) const;
  // Returns the outputs that an earlier part made from a source, after Begun.
  std::vector<std::string> StaleOutputs(const std::string& source) const;
  // Call after source was handled, with all its results.
  void Ended(const std::string& source, const std::vector<FileResult>& results);
  // Call after RunLedger::Flush. Records the files that have ended and whose outputs are on disk. If a result of a file
  // failed, or the parameters have changed since the run started, the file does not count as done, and only the origins
  // of its outputs are recorded.
  void Commit(const RunLedger& ledger);
  // Returns the source from which this job made output; "" if there is none. Another file may have the name now; see
  // StampOfOutput.
  std::string SourceOf(const std::string& output);
  // Returns the stamp of an output with a source when it was written; nothing if it was not recorded.
  std::optional<host::FileStamp> StampOfOutput(const std::string& output);
  // Returns whether the source of the output counts as one without a result, because another of its outputs could not
  // be made.
  bool IsPartial(const std::string& output) const;
  // Closes the journal, and removes it if the job is complete.
  void End(const RunLedger& ledger, bool complete);

  // --- Decisions by hand.
  // Returns the decision about source, if the source is as it was when the decision was made.
  std::optional<std::string> DecisionOn(const std::string& source);
  // Returns true if an earlier part of the run has replaced source by its cut, after the decision.
  bool CutAsDecided(const std::string& source) const;
  // Stores the decision; it survives a crash once the call returns.
  void StoreDecision(const std::string& source, const std::string& decision);
  // Call after a cut has replaced source. Does nothing unless its decision was stored or returned just before.
  void NoteDecidedCut(const std::string& source);

 private:
  struct Made {
    std::string source;
    std::optional<host::FileFacts> before;
    std::vector<std::string> outputs;
    bool complete = true;  // no result of the source failed
    bool written = false;  // the source counts as written
  };
  // What is recorded of a source that has not ended.
  struct Intent {
    bool inPlace = false;
    std::vector<std::string> fresh;         // outputs that did not exist
    std::vector<std::string> staleOutputs;  // outputs of an earlier part
  };

  std::string JobText() const;
  host::JobPart OwnPart(const std::string& job) const;
  bool OpenOwn();
  bool NoConflictingSplit();
  bool Empty();
  bool Torn() const;
  bool StopsForTorn() const;
  bool AskWithoutRecords();
  bool AskToResume(const std::string& question);
  std::string Interrupted(const std::string& unfinished) const;
  std::size_t CountDone();
  std::string FolderQuestion();
  bool IsMeant(const std::string& output) const;
  std::size_t Intend(const std::string& source, const std::vector<std::string>& outputs);
  void Drop(const std::string& source, const Intent& intent);
  void WriteDown(const Made& made, const RunLedger& ledger);
  void WriteOrigins(const Made& made, const RunLedger& ledger);
  void WriteOrigin(const Made& made, const std::string& output, const host::FileStamp& stamp);

  std::string DecisionJob(const std::string& files) const;
  std::string ListText() const;
  void AdoptDecisions();
  std::size_t Decisions() { return journal_->Count(kDecision); }
  std::size_t FirstUndecided();
  std::optional<std::string> StandingDecision(const std::string& source) const;
  std::string ListQuestion();
  void NoteEnding(const FileResult& result);
  std::optional<host::FileStamp> StampIn(const std::string& source, const char* key) const;
  void WriteStamp(const std::string& source, const char* key);

  static constexpr const char* kDecision = "decision";

  const RunContext& context_;
  std::string driver_;
  std::vector<std::string> windows_;
  std::string job_;
  std::unique_ptr<host::Journal> journal_;
  std::optional<host::FileFacts> before_;             // of the source that is handled now
  std::unordered_map<std::string, Intent> intended_;  // by source
  std::vector<Made> made_;                            // since the last Commit
  std::string decided_;                               // the only source that NoteDecidedCut accepts
};

}  // namespace quillon::job
