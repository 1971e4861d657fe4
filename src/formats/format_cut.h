// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "job/cut/cut_file.h"
#include "job/cut/cut_run.h"
#include "job/run/driver.h"
#include "job/run/run_prefetch.h"

namespace quillon::formats {

// Stores format and size of the source in file, or fails it if they cannot be read.
job::Step Measure(job::CutFile& file);
// Returns the box at the end of a run over the list. Unless the sources were replaced it offers the output folder.
job::RunEnd EndOfRun(const job::Program& program);

// What the drivers of the modes have in common that cut a file as a whole and keep its type: names of outputs, manual
// frame, rectangle, prefetch, and the delivery of a finished result. A source is replaced only by a finished one.
// The settings are read once at the start, because the window stays usable in large-capacity mode; the manual frame
// alone changes the margins of a file.
class FormatCut : public job::RunDriver {
 public:
  FormatCut(job::Program& program, job::CutMode mode) : program_(program), mode_(mode) {}

  job::RunNeeds Needs() const override;
  void UseJournal(job::RunJournal& journal) override { journal_ = &journal; }
  bool BesideSources() const override;
  std::vector<std::string> Outputs(const std::string& path) const override;
  void Begin(job::RunLedger& ledger) override;
  void PrefetchFrom(std::size_t row) override { prefetch_->Prefetch(row); }
  std::size_t Lookahead() const override { return prefetch_->Lookahead(); }
  void Prefetch(const std::vector<std::string>& paths) override { prefetch_->Prefetch(paths); }
  void Cut(const job::RunFile& file, const Report& report) override;
  void EndPrefetch() override { prefetch_.reset(); }
  job::RunEnd End(job::RunSource source) override;
  void Release() override;

 protected:
  job::Program& GetProgram() const { return program_; }

  // Called for a measured source, before its output is named. FileDone ends the file.
  virtual job::Step CheckSource(job::CutFile&) { return job::Step::Next; }
  // Changes the rectangle of the file as the format needs it. Returns why the file cannot be cut, "" if it can.
  virtual std::string FitRectangle(job::CutFile& file) const = 0;
  // Returns the request that CutPicture makes of the image services for a file with its names and its rectangle;
  // nothing if it makes none.
  virtual std::optional<imaging::FileRequest> RequestFor(const job::CutFile&) const { return std::nullopt; }
  // Cuts the source into a work file and stores its path, or saves it in place of Dst.
  virtual host::Status CutPicture(job::CutFile& file, std::string& made) = 0;
  // Why the manual frame can neither turn nor pad the picture.
  virtual const char* WhyNotTurned() const = 0;

 private:
  job::Step Steps(job::CutFile& file);
  // Handles "本图不裁剪": the output is a copy, and with ChOver the source stays as it is.
  job::Step LeaveUncut(job::CutFile& file) const;
  // Returns why the file cannot be cut, "" if it can.
  std::string FindRectangle(job::CutFile& file) const;
  // Returns the work of CutPicture as far as it is known before the file is handled.
  std::optional<imaging::FileWork> Foresee(std::size_t row, const std::string& path, base::Size size);
  job::Step MakeResult(job::CutFile& file);

  job::Program& program_;
  job::CutMode mode_;
  job::RunJournal* journal_ = nullptr;  // of the run
  std::unique_ptr<job::CutRun> run_;
  std::optional<job::RunPrefetch> prefetch_;
};

}  // namespace quillon::formats
