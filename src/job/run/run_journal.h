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

// How a run over a folder is resumed. A journal (host::Journal) is a small database for each job and shard; a job is
// the same when its driver, its folders and all its parameters are. Records are found by path:
//
//   begun  of a source: it is about to be overwritten; its stamp before that
//   done   of a source: its stamp, and the stamps and paths of all that was made of it
//   from   of an output: the source that it was made of
//   meant  of an output that is not finished: the source that it is to be made of
//   ended  of a source: it ended the run; its stamp, and why
//   decision, before, after
//          of a source that the user decided about by hand: the decision, as text that only the driver reads; the
//          source's stamp when it was made; the stamp after the cut that followed
//
// Before a file is handled, Begun writes down what could not be recognised afterwards: a source that its own result
// replaces, and results that the walk may come upon and would read as sources. That is done for up to kIntendedAtOnce
// files at once, since each commit waits for the disk. After the file, Ended remembers its outputs in memory only. At a
// checkpoint the run first flushes its outputs to disk and then calls Commit, which writes a done record for each
// source whose outputs all stand. So a done record never promises more than what is on disk, and a run that is killed
// repeats at most the files since its last checkpoint.
//
// A resumed run asks Stands for each file: it does if the outputs of its done record are unchanged and the source is
// still the one they were made of. Files are compared by size and time of modification, and by inode or time of change,
// because some disks number their files anew each time they are mounted. A job that comes to its end removes its
// journal. If no journal can be kept nothing is remembered, and every run is a fresh one.
//
// A decision is committed as soon as the user has made it, and is applied again while the source is unchanged. A run
// over the list keeps a journal only if the user decides by hand, and nothing but the decisions in it: such a job is
// the same when its list, its output folder and its kind of output are, and a resumed one handles every row again.
//
// If the journal could not be read whole (host::kTornKey), a run that overwrites its sources asks before it begins, and
// does nothing unless the user wants it: it would cut again what the lost records said was cut. Any other run merely
// repeats those files.
namespace quillon::job {

class RunLedger;
struct RunContext;

// What a run remembers of its files, so that one that was stopped, killed or lost its power can be resumed.
class RunJournal {
 public:
  // The files that a source is about to be made into, if the walk could come upon them later; else none.
  using Foreseen = std::function<std::vector<std::string>(const std::string& source)>;

  // Sources, and their outputs, that are written down at once before they are handled.
  static constexpr std::size_t kIntendedAtOnce = 256;

  // The windows whose controls are parameters of the job.
  RunJournal(const RunContext& context, std::string driver, std::vector<std::string> windows);

  // Call one of these at the start of a run. They ask whether an unfinished run of the same job is to be resumed, and
  // forget it if not. False if the user wants no run at all.
  // Over a folder. A run that split its files into a different number of shards cannot be resumed.
  bool BeginFolder();
  // Over the list, if the user decides by hand.
  bool BeginList();
  bool Kept() const { return journal_ != nullptr; }

  // True if the result of an earlier part of the job stands unchanged, made of the source as it is now; also if nothing
  // stands at the source's path any more. Anything but a file there is not the source.
  bool Stands(const std::string& source);
  // Calls take for each source that an earlier part of the job has handled, if its outputs stand and its disk answers.
  void EachHandled(const std::function<void(const std::string& source)>& visit);
  // Returns why the source, as it is now, ended an earlier part of the job; nullopt if it did not.
  std::optional<std::string> WhyEnded(const std::string& source) const;
  // The outputs of that result, as far as they were written down.
  std::vector<std::string> OutputsOf(const std::string& source);
  // The source of path if path is a result of this job and unchanged, or was made by a part that was killed; else "".
  std::string MadeOf(const std::string& path);
  // Call before source is handled; next are the sources that follow it. Writes down what could not be recognised
  // afterwards: an overwritten source, and a result that lies among the sources.
  void Begun(const std::string& source, const std::vector<std::string>& next, const Foreseen& foreseen);
  // What an earlier part has made of a source that is begun now.
  std::vector<std::string> StaleOutputs(const std::string& source) const;
  // Call after source was handled, with all its results.
  void Ended(const std::string& source, const std::vector<FileResult>& results);
  // Call after RunLedger::Flush. Writes down the files that have ended and stand on disk. If a result of a file failed,
  // or the parameters have changed since the run began, the file does not count as done: only the origin of its outputs
  // is written down.
  void Commit(const RunLedger& ledger);
  // The source that output was made of in this job, "" for none.
  std::string SourceOf(const std::string& output);
  // Closes the journal. A job that came to its end is forgotten.
  void End(const RunLedger& ledger, bool complete);

  // --- Decisions by hand.
  // Returns the decision about source, if the source is as it was when the decision was made.
  std::optional<std::string> DecisionOn(const std::string& source);
  // True if an earlier part has cut source in its place: it is not as it was when it was decided about, but as that
  // part left it.
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
  };
  // What is written down of a source that is not ended.
  struct Intent {
    bool inPlace = false;
    std::vector<std::string> fresh;         // outputs that were not there
    std::vector<std::string> staleOutputs;  // those of an earlier part
  };

  std::string JobText() const;
  host::JobPart OwnPart(const std::string& job) const;
  bool NoConflictingSplit();
  bool Empty();
  bool Torn() const;
  bool StopsForTorn() const;
  bool AskToResume(const std::string& question);
  std::string Interrupted(const std::string& unfinished) const;
  std::size_t CountDone();
  std::string FolderQuestion();
  bool IsMeant(const std::string& output) const;
  std::size_t Intend(const std::string& source, const std::vector<std::string>& outputs);
  void Drop(const std::string& source, const Intent& intent);
  void WriteDown(const Made& made);
  void WriteOrigins(const Made& made, const RunLedger& ledger);

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
  std::optional<host::FileFacts> before_;             // of the source under way
  std::unordered_map<std::string, Intent> intended_;  // by source
  std::vector<Made> made_;                            // since the last Commit
  std::string decided_;                               // the source that NoteDecidedCut waits for
};

}  // namespace quillon::job
