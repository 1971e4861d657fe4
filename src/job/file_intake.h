// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace quillon::job {

class Program;

// How files enter the list: by dialog, by reading a folder, by drag and drop, all through one admission rule.
class FileIntake {
 public:
  explicit FileIntake(Program& program);

  // The dialog filter of the mode in CmbCutMode.
  std::string Filter() const;
  // True when the file's extension, with its point, stands in the filter of the mode.
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
  void Admit(const std::vector<std::string>& items);

 private:
  Program& program_;
};

}  // namespace quillon::job
