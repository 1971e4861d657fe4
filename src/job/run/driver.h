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
  std::vector<Need> ensured;          // asked for in this order before the run; one that stays missing gives it up
  std::size_t resultsPerFile = 1;     // how many results Cut reports for each file
  bool decisions = false;             // the user decides about each file by hand, and that is to be resumed too
  std::vector<std::string> hidden;    // windows that are hidden meanwhile
  std::vector<std::string> disabled;  // windows whose controls are disabled meanwhile
  // The main window in large-capacity mode; it is always disabled during a run over the list.
  WindowUse inFolderRun = WindowUse::Usable;
};

// What the user sees at the end of a run.
struct RunEnd {
  enum class Then { Nothing, RevealFolder, OfferFolder };
  enum class Shown { InRun, AfterRun };

  std::string text;            // of the box, "" for none
  Then then = Then::Nothing;   // OfferFolder: the box is a question, Yes opens the folder
  std::string folder;          // the one to reveal or to open
  Shown shown = Shown::InRun;  // while the window is still disabled, or afterwards
};

// Where the files of a run come from: the list, or in large-capacity mode the input folder.
enum class RunSource { List, Folder };

// One file of a run.
struct RunFile {
  std::size_t row = 0;  // of the list, from 1; 0 if no row stands for the file
  std::string path;
  std::size_t number = 0;                       // running number, from 1
  std::optional<host::FileStamp> settled = {};  // of a watch: the file as it was when it had stopped changing
};

// What is done to one file after another. All calls come on the one thread of control, in the order in which the
// functions stand here.
class FileDriver {
 public:
  using Report = std::function<void(FileResult result)>;

  virtual ~FileDriver() = default;

  // Called before the first file. The ledger outlives all other calls.
  virtual void Begin(RunLedger& ledger) = 0;

  // --- Prefetch, before each Cut.
  // In a run over the list: the row that is handled next.
  virtual void PrefetchFrom(std::size_t /*row*/) {}
  // Without a list: how many of the next files are wanted, and those files, the one handled next first. Fewer come
  // near the end.
  virtual std::size_t Lookahead() const { return 0; }
  virtual void Prefetch(const std::vector<std::string>& /*paths*/) {}

  // Handles the file and reports what became of it.
  virtual void Cut(const RunFile& file, const Report& report) = 0;

  // No file follows, or in a watch none for now.
  virtual void EndPrefetch() {}
};

// A driver of runs over the list and over the input folder: the part in which one kind of cut differs from another.
// Cut reports as many results as Needs says, all with its row and path. StartRun calls the functions in the order in
// which they stand here, those of FileDriver between Prepare and End.
class RunDriver : public FileDriver {
 public:
  // --- Before the run.
  // Read again whenever the window has had a turn: what the user chooses meanwhile counts.
  virtual RunNeeds Needs() const = 0;
  // Everything needed is there. False gives up the run without a box.
  virtual bool Prepare() { return true; }
  // Where the run keeps what must outlast its interruption. Called before Begin; the journal outlives all other calls.
  virtual void UseJournal(RunJournal& /*journal*/) {}

  // --- In large-capacity mode, for the journal.
  // The name tells this driver's jobs from those of others; the windows hold the parameters.
  virtual std::string Name() const = 0;
  virtual std::vector<std::string> Windows() const { return {"Form1", "FBaseOpt"}; }
  // Whether results go beside their sources, and not into the output folder.
  virtual bool BesideSources() const { return false; }
  // The files that Cut would write for path, as far as it can be predicted.
  virtual std::vector<std::string> Outputs(const std::string& path) const = 0;
  // An earlier part of the run has handled the source: Cut is not called for it.
  virtual void HandledBefore(const std::string& /*path*/) {}

  // --- The files.
  // The user wants the run; the first file follows.
  virtual void Start() {}
  // Whether Cut reports its progress itself. Otherwise the title counts the rows of the list.
  virtual bool ShowsProgress() const { return false; }

  // --- After the run.
  // All results stand on disk.
  virtual RunEnd End(RunSource source) = 0;
  // The box of RunEnd::Shown::InRun is closed; the window is still as it was during the run.
  virtual void Leave() {}
  // The main window is usable again.
  virtual void Finish() {}
  // All windows are as before, also if the user did not want the run after all.
  virtual void Release() {}
};

}  // namespace quillon::job
