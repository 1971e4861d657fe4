// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/files/files.h"
#include "host/journal.h"
#include "job/settings/run_report.h"

namespace quillon::job {

class RunLedger;
struct RunContext;

// What a run remembers of its files, so that one that was stopped, killed or lost its power can be continued. A job is
// the same when its driver, its folders and all its parameters are. Where no journal can be kept nothing is remembered
// and a run is always a fresh one.
class RunJournal {
 public:
  // The files that a source is about to be made into, where the run could come upon them later; else none.
  using Foreseen = std::function<std::vector<std::string>(const std::string& source)>;

  // Sources, and their outputs, that are written down at once before they are handled.
  static constexpr std::size_t kIntendedAtOnce = 256;

  // The windows whose controls are parameters of the job.
  RunJournal(const RunContext& context, std::string driver, std::vector<std::string> windows);

  // Asks whether a run of the same job that did not come to its end is to be continued, and forgets it if not. One
  // whose files were parted otherwise cannot be. False when the user wants no run at all.
  bool Begin();
  bool Kept() const { return journal_ != nullptr; }

  // True when the result of an earlier part of the job stands unchanged, made of the source as it is now; also where
  // the source has gone.
  bool Stands(const std::string& source);
  // Hands out the sources that an earlier part of the job has handled, as far as what was made of them stands and its
  // disk answers.
  void EachHandled(const std::function<void(const std::string& source)>& take);
  // The outputs of that result, as far as they were written down.
  std::vector<std::string> OutputsOf(const std::string& source);
  // The source of path, where path is a result of this job and unchanged, or was made by a part that was killed; else
  // "".
  std::string MadeOf(const std::string& path);
  // Before source is handled; next are those that come behind it. An overwritten source cannot be told from a fresh one
  // afterwards, nor a result beside its source from one, so what there is before is written down first.
  void Begun(const std::string& source, const std::vector<std::string>& next, const Foreseen& foreseen);
  // What an earlier part has made of a source that is begun now.
  std::vector<std::string> Older(const std::string& source) const;
  // Behind it.
  void Ended(const std::string& source, const std::vector<FileResult>& results);
  // Writes down what has ended and stands on disk (the ledger has just settled). Nothing is written down of files that
  // were handled with parameters changed meanwhile.
  void Commit(const RunLedger& ledger);
  // The source that output was made of in this job, "" for none.
  std::string SourceOf(const std::string& output);
  // A job that came to its end is forgotten.
  void End(const RunLedger& ledger, bool complete);

  // --- Records of other parts, by source; the key is theirs. Kept with the next Commit.
  std::optional<std::string> Get(const std::string& source, const std::string& key);
  void Set(const std::string& source, const std::string& key, const std::string& value);

 private:
  struct Made {
    std::string source;
    host::FileFacts before;
    std::vector<std::string> outputs;
  };
  // What is written down of a source that is not ended.
  struct Intent {
    bool inPlace = false;
    std::vector<std::string> fresh;  // outputs that were not there
    std::vector<std::string> older;  // those of an earlier part
  };

  std::string JobText() const;
  bool NoConflictingSplit();
  bool Empty();
  bool IsMeant(const std::string& output) const;
  std::size_t Intend(const std::string& source, const std::vector<std::string>& outputs);
  void Drop(const std::string& source, const Intent& intent);
  void WriteDown(const Made& made);

  const RunContext& context_;
  std::string driver_;
  std::vector<std::string> windows_;
  std::string job_;
  std::unique_ptr<host::Journal> journal_;
  std::optional<host::FileFacts> before_;             // of the source under way
  std::unordered_map<std::string, Intent> intended_;  // by source
  std::vector<Made> made_;                            // since the last Commit
};

}  // namespace quillon::job
