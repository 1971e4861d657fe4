// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "base/path_text.h"
#include "host/host.h"
#include "host/journal.h"
#include "job/settings/flags.h"
#include "job/settings/run_report.h"
#include "job/settings/shard.h"

namespace quillon::controls {
class Windows;
}
namespace quillon::imaging {
class Services;
}

namespace quillon::job {

class DiskMonitor;
class FileList;

enum class Subfolders { No, Yes };

// What a walk does with symbolic links.
enum class Links {
  Followed,
  // For runs that replace their sources, so that they stay within the named folder and replace no file twice. Skips
  // links to folders, and links to files that the walk reaches by their own names.
  Refused
};

// What a driver may need before it runs.
enum class Need {
  ManualFrame,  // this and the next three are set by the libraries above the job; see Program
  Sheets,
  OutputTools,
  PageCounter,
  Files,  // rows in the list, or in large-capacity mode the input folder
  OutputFolder,
  NoPendingUpdate  // no update of the program waits to be installed
};

// State of the main window while MenuStop can end the work.
enum class WindowUse {
  Usable,   // as before
  Disabled  // parameters and menus are off
};

// The interface of the main window for lists and runs.
class RunWindow {
 public:
  virtual ~RunWindow() = default;

  // --- The present choices of the user.
  virtual std::string InputFolder() const = 0;   // LInDir
  virtual std::string OutputFolder() const = 0;  // LOutDir
  virtual std::string OutputType() const = 0;    // the text of CmbOutType
  virtual Subfolders SubfolderChoice() const = 0;
  virtual bool Overwrites() const = 0;    // ChOver
  virtual bool OmitsFolders() const = 0;  // ChOmitFolds
  // The dialog filter of the mode, which names the extensions that it accepts.
  virtual std::string Filter() const = 0;
  // Returns the text that identifies a job: folders and the parameters of these windows.
  virtual std::string Parameters(const std::vector<std::string>& windows) const = 0;

  // Returns whether the program has the part. If not, asks the user once.
  virtual bool Ensure(Need need) = 0;
  // Stores both folders in the settings, as every run does at its start.
  virtual void SaveFolders() = 0;

  // --- What a run shows.
  // Begin enables MenuStop and clears a stop request. End restores the title and disables MenuStop.
  virtual void Begin(WindowUse use) = 0;
  virtual void End(WindowUse use) = 0;
  // Shows the text in front of the title; "" shows the plain title.
  virtual void ShowStatus(const std::string& text) = 0;
  // Selects a row of the list, from 1; 0 selects none.
  virtual void SelectRow(std::size_t row) = 0;
  // Empties the list and the status panel.
  virtual void ClearList() = 0;
};

// What lists and runs need of the program, which owns all of it and outlives them.
struct RunContext {
  host::Host& host;
  imaging::Services& images;
  DiskMonitor& disks;
  controls::Windows& windows;
  RunWindow& window;
  FileList& files;
  Flags& flags;
  RunObserver*& observer;     // nullptr: nothing is reported
  host::Journals*& journals;  // nullptr: no run can be resumed
  Shard& shard;
  std::size_t& leftToOthers;
  DoneElsewhere& doneElsewhere;
  bool& recovering;
  std::set<std::string>& listedFolders;
  OnExisting& onExisting;

  bool Stopped() const { return flags.StopRequested; }
  // True if other processes walk the same folders and may find the results of this one.
  bool SharesFolders() const { return !shard.Whole() && (!listedFolders.empty() || flags.LargeCapacityMode); }
  // Shows a box titled "消息".
  host::Reply Ask(const std::string& text, int type = 0) const { return host.boxes.Show({text, type}); }
  // Returns the path of a file in the program folder.
  std::string AppPath(const std::string& name) const { return base::JoinPath(host.programFolder, name); }
};

}  // namespace quillon::job
