// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/rect.h"
#include "controls/grid.h"
#include "job/settings/run_report.h"

namespace quillon::job {

// How a walk has reached a file.
enum class Reached { ByFolders, ByFolderLink };

// One listed file. The folder text is shared by all rows of a folder.
struct FileRow {
  std::shared_ptr<const std::string> folder;
  std::string name;
  std::string extension;
  int width = 0;
  int height = 0;
  int dpi = 0;
  std::uint64_t bytes = 0;
  std::uint64_t newBytes = 0;  // of the output, 0 before
  int pages = 0;               // 0 for a plain image
  Reached reached = Reached::ByFolders;
  Result result = Result::Written;
  std::string why;  // why the last run gave no output

  std::string Path() const;
};

// A length in kb with at most two decimals, "83.25".
std::string KbText(std::uint64_t bytes);

// The rows of MSF and the running maxima, which only grow until the list is cleared.
class FileList : public controls::GridSource {
 public:
  explicit FileList(controls::Grid& grid);

  std::size_t RowCount() const override { return rows_.size(); }
  // The eight columns of MSF: name, extension, folder, width, height, size in kb, new size in kb or page count, DPI.
  // Names and folders that are not UTF-8 are shown as readable text. Any other column is empty.
  std::string Cell(std::size_t row, std::size_t column) const override;
  const FileRow& Row(std::size_t row) const { return rows_[row]; }

  // Adds a row with that folder, and updates the maxima.
  void Append(FileRow row, const std::string& folder);
  // Adds the file at path; the row's name and extension are taken from it.
  void AppendPath(std::string_view path, FileRow row);
  // Updates the maxima with a file, even if it is not added.
  void Grow(base::Size size, std::uint64_t bytes);
  void Remove(std::size_t row);
  // Removes several rows, given ascending.
  void Remove(const std::vector<std::size_t>& rows);
  // Puts the rows into another order: row i becomes what row order[i] was. order names each row once.
  void Reorder(const std::vector<std::size_t>& order);
  void Clear();
  // Removes the results and new sizes that the last run left. Called at the start of a run.
  void ForgetResults();
  void SetResult(std::size_t row, Result result, std::string why, std::uint64_t newBytes);

  // "文件数：<n>  最大值：<w>x<h>像素  <largest size>kb"; "" for a cleared list.
  std::string StatusText() const;

 private:
  std::shared_ptr<const std::string> Shared(const std::string& folder);

  controls::Grid& grid_;
  std::vector<FileRow> rows_;
  std::shared_ptr<const std::string> lastFolder_;
  int maxWidth_ = 0;
  int maxHeight_ = 0;
  std::uint64_t maxBytes_ = 0;
};

}  // namespace quillon::job
