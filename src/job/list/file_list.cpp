// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_list.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number_text.h"
#include "base/path_text.h"
#include "base/utf8.h"
#include "job/settings/lists.h"

namespace quillon::job {
namespace {

constexpr std::size_t kCounted = 6;  // the column that shows pages or frames in the modes that count them

// Returns what the header of the column says, since rows may have both.
std::string NewSizeOrPages(const FileRow& row, const std::vector<std::string>& headers) {
  static const std::string newSize = ListHeaders(CutMode::Normal)[kCounted];
  if (headers.size() <= kCounted || headers[kCounted] == newSize) {
    return row.newBytes > 0 ? KbText(row.newBytes) : std::string();
  }
  return row.pages > 0 ? std::to_string(row.pages) : std::string();
}

}  // namespace

std::string FileRow::Path() const { return base::JoinPath(*folder, name, extension); }

std::string KbText(std::uint64_t bytes) {
  return base::NumberText(std::round(static_cast<double>(bytes) / 1024 * 100) / 100);
}

FileList::FileList(controls::Grid& grid) : grid_(grid) { grid_.SetSource(this); }

std::string FileList::Cell(std::size_t row, std::size_t column) const {
  const FileRow& file = rows_[row];
  switch (column) {
    case 0:
      return base::DisplayText(file.name);
    case 1:
      return base::DisplayText(file.extension);
    case 2:
      return base::DisplayText(*file.folder);
    case 3:
      return std::to_string(file.width);
    case 4:
      return std::to_string(file.height);
    case 5:
      return KbText(file.bytes);
    case kCounted:
      return NewSizeOrPages(file, grid_.Headers());
    case 7:
      return std::to_string(file.dpi);
    default:
      return {};
  }
}

// Files are added folder by folder, so remembering the last folder is enough.
std::shared_ptr<const std::string> FileList::Shared(const std::string& folder) {
  if (!lastFolder_ || *lastFolder_ != folder) lastFolder_ = std::make_shared<const std::string>(folder);
  return lastFolder_;
}

void FileList::Append(FileRow row, const std::string& folder) {
  row.folder = Shared(folder);
  Grow({row.width, row.height}, row.bytes);
  rows_.push_back(std::move(row));
  grid_.Notify(controls::Grid::Change::Appended, rows_.size() - 1);
}

void FileList::AppendPath(std::string_view path, FileRow row) {
  base::PathParts parts = base::SplitPath(path);
  // A name that ends in a point has no extension, but the point belongs to the name.
  if (parts.extension.empty() && path.ends_with('.')) parts.name = path.substr(path.rfind('/') + 1);
  row.name = std::move(parts.name);
  row.extension = std::move(parts.extension);
  Append(std::move(row), parts.folder);
}

void FileList::Grow(base::Size size, std::uint64_t bytes) {
  maxWidth_ = std::max(maxWidth_, size.width);
  maxHeight_ = std::max(maxHeight_, size.height);
  maxBytes_ = std::max(maxBytes_, bytes);
}

void FileList::Remove(std::size_t row) {
  rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(row));
  grid_.Notify(controls::Grid::Change::Removed, row);
}

void FileList::Remove(const std::vector<std::size_t>& rows) {
  if (rows.size() == 1) return Remove(rows.front());
  std::vector<FileRow> left;
  left.reserve(rows_.size() - rows.size());
  auto next = rows.begin();
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (next != rows.end() && *next == row) {
      ++next;
    } else {
      left.push_back(std::move(rows_[row]));
    }
  }
  rows_ = std::move(left);
  grid_.Notify(controls::Grid::Change::Reset, 0);
}

void FileList::Reorder(const std::vector<std::size_t>& order) {
  std::vector<FileRow> ordered;
  ordered.reserve(rows_.size());
  for (const std::size_t row : order) ordered.push_back(std::move(rows_[row]));
  rows_ = std::move(ordered);
  grid_.Notify(controls::Grid::Change::Reset, 0);
}

void FileList::Clear() {
  std::vector<FileRow>().swap(rows_);
  lastFolder_.reset();
  maxWidth_ = 0;
  maxHeight_ = 0;
  maxBytes_ = 0;
  grid_.Notify(controls::Grid::Change::Reset, 0);
}

void FileList::ForgetResults() {
  if (rows_.empty()) return;
  for (FileRow& file : rows_) {
    file.result = Result::Written;
    file.why.clear();
    file.newBytes = 0;
  }
  grid_.Notify(controls::Grid::Change::Edited, 0);
  grid_.Notify(controls::Grid::Change::Edited, rows_.size() - 1);
}

void FileList::SetResult(std::size_t row, Result result, std::string why, std::uint64_t newBytes) {
  FileRow& file = rows_[row];
  file.result = result;
  file.why = std::move(why);
  file.newBytes = newBytes;
  grid_.Notify(controls::Grid::Change::Edited, row);
}

std::string FileList::StatusText() const {
  const bool cleared = rows_.empty() && maxWidth_ == 0 && maxHeight_ == 0 && maxBytes_ == 0;
  if (cleared) return {};
  return "文件数：" + std::to_string(rows_.size()) + "  最大值：" + std::to_string(maxWidth_) + "x" +
         std::to_string(maxHeight_) + "像素  " + KbText(maxBytes_) + "kb";
}

}  // namespace quillon::job
