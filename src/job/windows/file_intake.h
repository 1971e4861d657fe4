// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/status.h"
#include "job/list/file_walk.h"

namespace quillon::job {

class Program;

// How files enter the list: by dialog, by reading a folder, by drag and drop, all through one admission rule. The
// handlers beep and do nothing while a listing or a run is under way.
class FileIntake {
 public:
  explicit FileIntake(Program& program);

  // The dialog filter of the mode in CmbCutMode.
  std::string Filter() const;
  // Whether the filter of the mode names the file's extension; see FitsFilter.
  bool Accepts(const std::string& path) const;

  void MenuAddFiles_Click();
  void MenuReadFiles_Click();
  void MenuInputDir_Click();
  void MenuOutDir_Click();
  void MenuClearList_Click();
  void MenuDelSelected_Click();
  void MSF_DblClick();
  // Files and folders dropped on the list, after the question.
  void MSF_OLEDragDrop(const std::vector<std::string>& items);
  // Files and folders named on a command line: as a drop answered with No, without the question and the closing box.
  // A file without a size does not end it: the others are listed, the message comes once. Relative paths start at the
  // current folder. Files that do not exist or are not accepted are reported to the observer.
  void Admit(const std::vector<std::string>& items);

  // Whether a file that was named belongs to this process and was not handled already.
  bool IsOurs(const std::string& path) const;

  // --- What the handlers above do, for drivers that need it within their own work.
  void AddFiles();
  // Empties the list and the status panel.
  void Clear();
  // Opens the dialog; stores a chosen folder in the label and the settings.
  void ChooseInputDir();
  void ChooseOutDir();
  // Whether there is a row, or the folder in LInDir or LOutDir exists. If not, says so and opens the dialog once.
  bool EnsureListedFiles();
  bool EnsureInputDir();
  bool EnsureOutDir();
  // Shows a box: the folder in LInDir or LOutDir does not exist, or its disk does not answer.
  void WarnInputDir();
  void WarnOutDir();
  // False also for a folder whose disk does not answer for half a minute.
  bool InputDirExists() const;
  bool OutDirExists() const;

 private:
  enum class Progress { Adding, Reading };
  enum class WithoutSize { EndsListing, PassedOver };

  // True if everything was listed: neither stopped nor ended by a file without a size.
  bool List(const std::vector<std::string>& roots, Subfolders subfolders, Progress progress,
            WithoutSize withoutSize = WithoutSize::EndsListing);
  // Whether the disk of something that a user named answers.
  host::Status DiskAnswers(const std::string& item) const;
  bool FolderExists(const std::string& folder) const;
  void WarnFolder(const char* what, const std::string& caption);
  WalkRule OwnShard() const;
  WalkRule Rule(Subfolders subfolders) const;
  // Without folders that results of other processes go to: those are reported as not listed.
  std::vector<std::string> Shareable(const std::vector<std::string>& roots);
  void ReportBegun(const std::string& path);
  void ReportNotListed(const std::string& path, const std::string& why);
  void ShowFirstRow();
  void ShowStatusPanel();

  Program& program_;
};

}  // namespace quillon::job
