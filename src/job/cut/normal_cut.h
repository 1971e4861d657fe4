// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::job {

class Program;
struct CutRun;

// The normal cut: takes the rows of the list one by one and turns each into one output file. In large-capacity mode it
// hands the files of the input folder over to a folder run instead.
class NormalCut {
 public:
  explicit NormalCut(Program& program);

  // A run from its first check to its last box. Beeps and does nothing while a run or a listing is under way.
  void Run();

 private:
  // --- Before the run; false gives up.
  bool ResourcesThere();
  bool InputThere();
  bool OutputThere();
  void PrepareCanvas(bool withArray);
  bool PrepareSheets();
  std::vector<std::string> HideWindows();

  // --- The run and its end.
  void RunList(CutRun& run, bool omits);
  // False when the user wants no run after all.
  bool RunFolder(CutRun& run, bool omits);
  void CutRows(CutRun& run);
  void ReportEnd(const CutRun& run);
  void EndHelpers();
  void WriteOmittedFolders(CutRun& run);
  void ShowWindows(const std::vector<std::string>& hidden);

  Program& program_;
};

}  // namespace quillon::job
