// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/status.h"
#include "job/list/file_walk.h"

namespace quillon::job {

class Program;

// Adds files to the list: from a dialog, a folder, drag and drop, or the command line, all by one rule. A file without
// a size does not end a listing; its message is shown once. The handlers beep and do nothing during a listing or a run.
class FileIntake {
 public:
  explicit FileIntake(Program& program);

  // Returns the dialog filter of the mode in CmbCutMode.
  std::string Filter() const;
  // Returns whether the filter of the mode contains the extension; see FitsFilter.
  bool Accepts(const std::string& path) const;

  void MenuAddFiles_Click();
  void MenuReadFiles_Click();
  void MenuInputDir_Click();
  void MenuOutDir_Click();
  void MenuClearList_Click();
  void MenuDelSelected_Click();
  void MSF_DblClick();
  // Lets the next runs handle the rows in that order; see FileList::Reorder.
  void ReorderList(const std::vector<std::size_t>& order);
  // Adds files and folders that were dropped on the list, after a question.
  void MSF_OLEDragDrop(const std::vector<std::string>& items);
  // Adds files and folders of a command line, like a drop answered with No but without the question and the last box.
  // Relative paths start at the current folder. Files that do not exist or are not accepted are reported to the
  // observer.
  void Admit(const std::vector<std::string>& items);

  // Returns whether a named file belongs to the shard of this process and was not handled by an earlier worker.
  bool IsOurs(const std::string& path) const;
  // As IsOurs, for an existing file: if sources are overwritten, one shard owns all names of it that differ by links.
  bool OwnsFile(const std::string& path) const;

  // --- The work of the handlers above, for callers that hold a RunGuard already.
  void AddFiles();
  // Empties the list and the status panel.
  void Clear();
  // Opens the dialog; stores a chosen folder in the label and the settings.
  void ChooseInputDir();
  void ChooseOutDir();
  // Return whether there is a row, or whether the folder in LInDir or LOutDir exists. If not, they show a box and open
  // the dialog once. Instead of the box about a missing output folder, they ask whether
  // to make it.
  bool EnsureListedFiles();
  bool EnsureInputDir();
  bool EnsureOutDir();
  // Show a box: the folder in LInDir or LOutDir does not exist, or its disk does not respond.
  void WarnInputDir();
  void WarnOutDir();
  // Also return false if the disk does not respond for half a minute.
  bool InputDirExists() const;
  bool OutDirExists() const;

 private:
  enum class Progress { Adding, Reading };

  // Returns true if everything was listed: not stopped, and without a file that has no size.
  bool List(const std::vector<std::string>& roots, Subfolders subfolders, Progress progress);
  // Returns Ok if the disk of a named file or folder responds.
  host::Status DiskAnswers(const std::string& item) const;
  bool FolderExists(const std::string& folder) const;
  // Asks whether to make the folder in LOutDir. Returns whether it was made, or nothing if it was not asked, because
  // something else has its name or no folder was chosen.
  std::optional<bool> OfferMissingOutDir();
  void WarnFolder(const char* what, const std::string& caption);
  WalkRule OwnShard() const;
  WalkRule Rule(Subfolders subfolders) const;
  // Records which roots are folders. Returns the roots without the folder that other processes write their results to;
  // it is reported as not listed.
  std::vector<std::string> Shareable(const std::vector<std::string>& roots);
  void ReportBegun(const std::string& path);
  void ReportNotListed(const std::string& path, const std::string& why);
  void ShowFirstRow();
  void ShowStatusPanel();

  Program& program_;
};

}  // namespace quillon::job
