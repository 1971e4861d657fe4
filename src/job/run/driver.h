// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/files/file_stamp.h"
#include "job/list/run_context.h"
#include "job/settings/run_report.h"

namespace quillon::job {

class RunJournal;
class RunLedger;

// What a driver needs of the program for a run.
struct RunNeeds {
  std::vector<Need> ensured;          // asked for in this order; if one is still missing, there is no run
  bool decisions = false;             // the user decides about each file by hand; the journal keeps the decisions
  std::vector<std::string> hidden;    // windows that are hidden during the run
  std::vector<std::string> disabled;  // windows whose controls are disabled during the run
  // The main window in large-capacity mode; it is always disabled during a run over the list.
  WindowUse inFolderRun = WindowUse::Usable;
};

// What the user sees at the end of a run.
struct RunEnd {
  enum class Then { Nothing, RevealFolder, OfferFolder };
  enum class Shown { InRun, AfterRun };

  std::string text;            // of the box, "" for none
  Then then = Then::Nothing;   // OfferFolder: the box is a question, Yes opens the folder
  std::string folder;          // to reveal or to open
  Shown shown = Shown::InRun;  // while the window is still disabled, or after that
};

// The source of the files of a run: the list, or in large-capacity mode the input folder.
enum class RunSource { List, Folder };

// One file of a run.
struct RunFile {
  std::size_t row = 0;  // of the list, from 1; 0 if the file is not listed
  std::string path;
  std::size_t number = 0;                       // running number, from 1
  std::optional<host::FileStamp> settled = {};  // of a watch: the stamp at which the file had stopped changing
};

// Does the work on one file after another. All calls come on the main thread, in the order of the declarations.
class FileDriver {
 public:
  using Report = std::function<void(FileResult result)>;

  virtual ~FileDriver() = default;

  // Called before the first file. The ledger must outlive all other calls.
  virtual void Begin(RunLedger& ledger) = 0;

  // --- Prefetch, before each Cut.
  // Called in a run over the list with the row that is handled next.
  virtual void PrefetchFrom(std::size_t /*row*/) {}
  // Returns how many files Prefetch wants in a run without a list.
  virtual std::size_t Lookahead() const { return 0; }
  // Called in a run without a list with the file that is handled next and those that follow it. Near the end there are
  // fewer than Lookahead.
  virtual void Prefetch(const std::vector<std::string>& /*paths*/) {}

  // Handles the file and reports its result; a watch may report none.
  virtual void Cut(const RunFile& file, const Report& report) = 0;

  // Called when no file follows, or in a watch none for now.
  virtual void EndPrefetch() {}
};

// A driver of runs over the list and over the input folder. It is the part in which one kind of cut differs from
// another. Cut reports one result, with its row and path. StartRun calls the functions in the order of the
// declarations, those of FileDriver between Prepare and End.
class RunDriver : public FileDriver {
 public:
  // --- Before the run.
  // Called again after each question, because the user may have changed options meanwhile.
  virtual RunNeeds Needs() const = 0;
  // Called when all needs are met. Returns false, without a box, to cancel the run.
  virtual bool Prepare() { return true; }
  // Stores the journal of the run, for data that must survive an interruption. Called before Begin; the journal must
  // outlive all other calls.
  virtual void UseJournal(RunJournal& /*journal*/) {}

  // --- In large-capacity mode, for the journal.
  // The name distinguishes the jobs of this driver from those of others; the windows hold the parameters.
  virtual std::string Name() const = 0;
  virtual std::vector<std::string> Windows() const { return {"Form1", "FBaseOpt"}; }
  // Returns whether results go beside their sources, and not into the output folder.
  virtual bool BesideSources() const { return false; }
  // Returns the files that Cut would write for path, as far as they can be predicted.
  virtual std::vector<std::string> Outputs(const std::string& path) const = 0;
  // Called for each source that an earlier part of the run handled. Cut is not called for it.
  virtual void HandledBefore(const std::string& /*path*/) {}

  // --- The files.
  // Called before the first file, after the user has confirmed the run.
  virtual void Start() {}
  // Returns whether Cut shows its progress itself. If not, the title counts the rows of the list.
  virtual bool ShowsProgress() const { return false; }

  // --- After the run.
  // Called when all results are synced. Returns what the user sees.
  virtual RunEnd End(RunSource source) = 0;
  // Called after the box of RunEnd::Shown::InRun; the window is still as it was during the run.
  virtual void Leave() {}
  // Called when the main window is usable again.
  virtual void Finish() {}
  // Called when all windows are as before, even if the user has cancelled the run.
  virtual void Release() {}
};

}  // namespace quillon::job
