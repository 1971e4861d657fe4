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

#include "host/files/files.h"
#include "host/status.h"
#include "job/run/discard_queue.h"
#include "job/settings/run_report.h"

namespace quillon::job {

struct RunContext;

// What became of the files of one run, kept true to what is on disk: a file counts as written while its output stands
// under its name and is its own. Rows and the observer are notified of every change.
class RunLedger {
 public:
  // Returns the source that an output was made of in this run, "" for any other file.
  using Recall = std::function<std::string(const std::string& output)>;
  // Whether the existing file at path is one that the run is still to read or has read.
  using IsSource = std::function<bool(const std::string& path)>;

  // Called for what turns out after the result of a source was added: it is lost, or the source could not be discarded.
  using LateNote = std::function<void(const std::string& source, const std::string& why)>;

  // planned 0: not known beforehand; what is added was planned.
  RunLedger(const RunContext& context, std::size_t planned);

  // In a run without a list: what counts as a source.
  void ReadSourcesFrom(IsSource isSource) { isSource_ = std::move(isSource); }
  // In a run of any length: looks up outputs that were forgotten.
  void RecallBy(Recall recall) { recall_ = std::move(recall); }
  void NoteLateTo(LateNote note) { noteLate_ = std::move(note); }
  // Call after Flush: no output is kept in memory any more.
  void Forget() { outputs_.clear(); }

  void Add(const FileResult& result);
  // True if this run has written a file of that name.
  bool Wrote(const std::string& output) const { return Find(output).has_value(); }
  // True if this run has already made output from source, and has not forgotten it: a file that is listed twice.
  bool WroteFrom(const std::string& output, const std::string& source) const;
  // The source of an output of this run that was not forgotten, "" for any other file.
  std::string SourceOf(const std::string& output) const;
  // True if the existing file at path is a source other than own.
  bool IsOtherSource(const std::string& path, const std::string& own);
  // Returns true if the file at output is neither of this run nor the source itself: it goes to the trash if it is
  // replaced (host::Files::ReplacedToTrash).
  bool IsForeign(const std::string& source, const std::string& output) const;
  // The output could not be made of source, and an older file under its name would pass for it: moves that file to the
  // trash. It stays if it is an output of this run or another source, or if its disk is unresponsive. A run with a
  // share of the files reports it instead: it may be an output of another share.
  void DiscardStaleOutput(const std::string& source, const std::string& output, const host::Status& failure);
  // Queues a source that is discarded by Flush once its outputs stand; see DiscardQueue. Its result is that of the
  // first output, and must be added before the flush.
  void DiscardAtEnd(DiscardQueue::Source source) { discards_.Add(std::move(source)); }
  // How many sources wait for the next flush.
  std::size_t Discards() const { return discards_.Size(); }

  // Waits until outputs stand on disk, revokes those that do not, and then discards sources.
  void Flush();
  const RunTotals& Totals() const { return totals_; }
  void NoteEnd(double seconds, bool stopped);

 private:
  struct Origin {
    std::size_t row = 0;
    std::string source;
    std::size_t several = 0;  // the same for all outputs of one result that has several, else 0
  };

  std::optional<Origin> Find(const std::string& output) const;
  bool IsListed(const std::string& path);
  void Register(const std::string& output, const FileResult& result);
  // A result one of whose outputs is lost counts as without output.
  void Revoke(const std::string& output, const Origin& origin, const std::string& why);
  bool IsDue(const DiscardQueue::Source& source) const;
  void ReportKept(const DiscardQueue::Source& source, DiscardQueue::Kept reason, const host::Status& status);
  void ShowResult(const FileResult& result);

  const RunContext& context_;
  RunTotals totals_;
  bool open_;  // not planned beforehand
  IsSource isSource_;
  Recall recall_;
  LateNote noteLate_;
  std::unordered_map<std::string, Origin> outputs_;
  std::size_t results_ = 0;
  DiscardQueue discards_;
  std::optional<std::set<host::FileId>> sources_;  // read when first needed
};

}  // namespace quillon::job
