// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "job/cut/cut_file.h"
#include "job/cut/cut_run.h"
#include "job/run/driver.h"

namespace quillon::formats {

// Stores format and size of the source in file, or fails it if they cannot be read.
job::Step Measure(job::CutFile& file);
// Returns the box at the end of a run over the list. Unless the sources were replaced it offers the output folder.
job::RunEnd EndOfRun(const job::Program& program);

// What the drivers of the modes have in common that cut a file as a whole and keep its type: names of outputs, manual
// frame, rectangle, and the delivery of a finished result. A source is replaced only by a finished one.
class FormatCut : public job::RunDriver {
 public:
  FormatCut(job::Program& program, job::CutMode mode) : program_(program), mode_(mode) {}

  job::RunNeeds Needs() const override;
  void UseJournal(job::RunJournal& journal) override { journal_ = &journal; }
  bool BesideSources() const override;
  std::vector<std::string> Outputs(const std::string& path) const override;
  void Begin(job::RunLedger& ledger) override;
  void Cut(const job::RunFile& file, const Report& report) override;
  job::RunEnd End(job::RunSource source) override;
  void Release() override;

 protected:
  job::Program& GetProgram() const { return program_; }

  // Called for a measured source, before its output is named. FileDone ends the file.
  virtual job::Step CheckSource(job::CutFile&) { return job::Step::Next; }
  // Changes the rectangle as the format needs it. Returns why the file cannot be cut, "" if it can.
  virtual std::string FitRectangle(base::Rect& rect, base::Size picture) const = 0;
  // Cuts the source into a work file and stores its path, or saves it in place of Dst.
  virtual host::Status CutPicture(job::CutFile& file, std::string& made) = 0;
  // Why the manual frame can neither turn nor pad the picture.
  virtual const char* WhyNotTurned() const = 0;

 private:
  job::Step Steps(job::CutFile& file);
  // Handles "本图不裁剪": the output is a copy, and with ChOver the source stays as it is.
  job::Step LeaveUncut(job::CutFile& file) const;
  job::Step FindRectangle(job::CutFile& file) const;
  job::Step MakeResult(job::CutFile& file);

  job::Program& program_;
  job::CutMode mode_;
  job::RunJournal* journal_ = nullptr;  // of the run
  std::unique_ptr<job::CutRun> run_;
};

}  // namespace quillon::formats
