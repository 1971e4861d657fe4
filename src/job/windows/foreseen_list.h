// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "job/cut/cut_outcome.h"

namespace quillon::job {

class Program;
struct FileRow;

// What a normal cut, or a cut in mode 1 or 2, with the present settings makes of the rows of the file list. It is
// computed when it is asked for, and the count goes over the list in portions, so that a list of any length never
// blocks the window for long.
//
// Reads no file. If results replace their sources, it matters how many pages a tif, gif or png has: the caller counts
// them (Unread, FindPages) and hands them over (Learn). A file counts as one page until then.
class ForeseenList {
 public:
  // How the size of a row is decided.
  enum class By { Settings, Hand, Others };

  explicit ForeseenList(const Program& program);

  // Reads the settings anew and begins to count again. Called after a setting or the list has changed.
  void Restart();
  // Hand: the user draws each frame in the run. Others: a region list or another driver makes the files.
  By DecidedBy() const { return by_; }
  // Returns what becomes of a row, counted from 0; nothing unless DecidedBy() is Settings.
  std::optional<CutOutcome> Of(std::size_t row) const;

  // Counts the next rows, at most that many. Returns true if the count is complete.
  bool CountMore(std::size_t rows);
  // Returns the number of rows counted, and of those that give no file.
  std::size_t Counted() const { return counted_; }
  std::size_t WithoutFile() const { return withoutFile_; }

  // Returns the files of the list whose pages matter and are not known.
  std::vector<std::string> Unread() const;
  // Stores the pages of files.
  void Learn(const std::unordered_map<std::string, PagesOfFile>& found);
  // Begins to count again with the same settings. Called after Learn.
  void CountAnew();

 private:
  // Returns whether the pages of a row decide about its outcome.
  bool PagesMatter(const FileRow& file) const;

  const Program& program_;
  By by_ = By::Settings;
  CutSettings settings_;
  std::unordered_map<std::string, PagesOfFile> pages_;  // by path
  std::size_t counted_ = 0;
  std::size_t withoutFile_ = 0;
};

}  // namespace quillon::job
