// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/list/run_context.h"

namespace quillon::job {

class Program;

// The interface of Form1 and FBaseOpt for lists and runs.
class ProgramWindow final : public RunWindow {
 public:
  explicit ProgramWindow(Program& program) : program_(program) {}

  std::string InputFolder() const override;
  std::string OutputFolder() const override;
  std::string OutputType() const override;
  Subfolders SubfolderChoice() const override;
  bool Overwrites() const override;
  bool OmitsFolders() const override;
  std::string Filter() const override;
  std::string Parameters(const std::vector<std::string>& windows) const override;
  bool Ensure(Need need) override;
  void SaveFolders() override;
  void Begin(WindowUse use) override;
  void End(WindowUse use) override;
  void ShowStatus(const std::string& text) override;
  void SelectRow(std::size_t row) override;
  void ClearList() override;

 private:
  bool HasPart(Need need) const;
  // Returns false, after a box, if an update must be installed first. The driver of the mode is then disabled.
  bool MayRunBeforeUpdate();

  Program& program_;
};

}  // namespace quillon::job
