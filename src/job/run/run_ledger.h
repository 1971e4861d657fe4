// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/files/file_stamp.h"
#include "host/files/files.h"
#include "host/status.h"
#include "job/run/discard_queue.h"
#include "job/settings/run_report.h"

namespace quillon::job {

struct RunContext;

// The results of the files of one run, kept true to what is on disk: a file counts as written while its output exists
// and no other source has replaced it. Rows and the observer are notified of every change.
class RunLedger {
 public:
  // Where an output comes from.
  struct Origin {
    std::size_t row = 0;
    std::string source;
    std::size_t several = 0;  // one number for all outputs of a result that has several; 0 if it has one
    bool counted = true;      // its source counts as written; false if another of its outputs could not be made
    std::optional<host::FileStamp> stamp = std::nullopt;  // of the output when it was written, if known
  };
  // Returns the origin of an output of this run; nothing for any other file.
  using Recall = std::function<std::optional<Origin>(const std::string& output)>;
  // Returns whether the existing file at path is a source of the run, already handled or not.
  using IsSource = std::function<bool(const std::string& path)>;

  // Records of names that were chosen beside existing files, in a run that can be resumed. A killed run must find its
  // outputs again, because they do not have the names that follow from their sources.
  struct BesideRecords {
    // Returns the source whose output got this name, now or in an earlier part of the run; "" if there is none.
    std::function<std::string(const std::string& output)> of;
    // Called before the output of source is saved under the name.
    std::function<void(const std::string& source, const std::string& output)> note;
  };

  // Called if a result was lost after it was added, or if its source could not be discarded.
  using LateNote = std::function<void(const std::string& source, const std::string& why)>;

  // planned: the number of results; 0 if it is not known, and then each result that is added counts as planned.
  RunLedger(const RunContext& context, std::size_t planned);

  // Sets what counts as a source in a run without a list.
  void ReadSourcesFrom(IsSource isSource) { isSource_ = std::move(isSource); }
  // Sets how outputs are looked up that Forget has dropped.
  void RecallBy(Recall recall) { recall_ = std::move(recall); }
  // Sets where names beside existing files are recorded; unless it is set, they are kept in memory.
  void RecordBesides(BesideRecords records) { besideRecords_ = std::move(records); }
  void NoteLateTo(LateNote note) { noteLate_ = std::move(note); }
  // Drops all outputs from memory. Call after Flush.
  void Forget() { outputs_.clear(); }

  void Add(const FileResult& result);
  // Returns true if this run has written a file of that name.
  bool Wrote(const std::string& output) const { return Find(output).has_value(); }
  // Returns true if this run has already made output from source and has not forgotten it. The file is then listed
  // twice.
  bool WroteFrom(const std::string& output, const std::string& source) const;
  // Returns the stamp that an output of this run had when it was written; nothing if it was forgotten.
  std::optional<host::FileStamp> StampOfOutput(const std::string& output) const;
  // Returns the source of an output of this run that was not forgotten; "" for any other file.
  std::string SourceOf(const std::string& output) const;
  // Returns true if the existing file at path is a source other than own.
  bool IsOtherSource(const std::string& path, const std::string& own);
  // Returns true if the file at output is neither the source itself nor a file that this run wrote and nobody has
  // changed since: it goes to the trash if it is replaced (host::Files::ReplacedToTrash).
  bool IsForeign(const std::string& source, const std::string& output) const;
  // Returns the path under which the output of source is saved. Unless a foreign file has the name, that is output. A
  // foreign file is replaced, or kept beside an output of another name; nothing is returned if it is kept and source
  // gets no output. The user decides when the first one of the run is met, unless RunContext::onExisting says it.
  // An output of another source that was given this name beside a foreign file is always kept.
  std::optional<std::string> PlaceFor(const std::string& source, const std::string& output);
  // Returns whether the user has decided to keep foreign files.
  bool KeepsForeign() const { return onExisting_ == OnExisting::Rename || onExisting_ == OnExisting::Skip; }
  // Returns whether the file at output stays, so that source gets another name or no output; see PlaceFor. False as
  // long as the user has not decided.
  bool KeepsExisting(const std::string& source, const std::string& output) const;
  // Moves a stale output to the trash: an older file under the name of an output that could not be made from source. It
  // stays if it is an output of this run or another source, if foreign files are kept, or if its disk is unresponsive.
  // A run of one shard only reports it, because another shard may have written it.
  void DiscardStaleOutput(const std::string& source, const std::string& output, const host::Status& failure);
  // Queues a source that Flush discards if its outputs are complete; see DiscardQueue. The result with its first output
  // must be added before the flush.
  void DiscardAtEnd(DiscardQueue::Source source) { discards_.Add(std::move(source)); }
  // Returns how many sources wait for the next flush.
  std::size_t Discards() const { return discards_.Size(); }

  // Waits until all outputs are synced, revokes those that failed, and then discards sources.
  void Flush();
  const RunTotals& Totals() const { return totals_; }
  void NoteEnd(double seconds, bool stopped);

 private:
  std::optional<Origin> Find(const std::string& output) const;
  bool IsListed(const std::string& path);
  void AskAboutExisting(const std::string& output);
  // Returns whether another source was given the name beside a foreign file.
  bool IsTaken(const std::string& source, const std::string& output) const;
  std::string FreeName(const std::string& source, const std::string& output);
  void Register(const std::string& output, const FileResult& result);
  // Changes the result of a lost output to one without output, even if its other outputs exist. Does nothing more if
  // it is one already.
  void Revoke(const std::string& output, const Origin& origin, const std::string& why);
  bool IsDue(const DiscardQueue::Source& source) const;
  void ReportKept(const DiscardQueue::Source& source, DiscardQueue::Kept reason, const host::Status& status);
  void ShowResult(const FileResult& result);

  const RunContext& context_;
  RunTotals totals_;
  bool open_;  // the number of results is not known
  OnExisting onExisting_;
  IsSource isSource_;
  Recall recall_;
  LateNote noteLate_;
  BesideRecords besideRecords_;
  std::unordered_map<std::string, std::string> besides_;  // sources by names; empty if they are recorded
  std::unordered_map<std::string, Origin> outputs_;
  std::size_t results_ = 0;
  // Sources, since the last Add: each of their outputs may be lost, but they count once.
  std::set<std::string> revoked_;
  DiscardQueue discards_;
  std::optional<std::set<host::FileId>> sources_;  // read at the first use
};

// Returns the note of a row whose output is at place, because another result of the run has the name of output.
std::string TakenNameText(const std::string& output, const std::string& place);

}  // namespace quillon::job
