// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::job {

// Reported for a picture without a size.
inline constexpr const char* kNoSize = "本机异常，获取图片的尺寸数据为0，请以管理员权限重新运行安装包覆盖安装！";

// Reported if several processes would read each other's results as sources.
inline constexpr const char* kSharedOutput =
    "输出目录就是输入目录，由几个进程分担时，彼此的结果会被当作原文件再裁一次。"
    "请另选输出目录，或不带 --jobs 和 --shard 运行";

enum class Result { Written, None, Skipped };

// What a run does if a file that it has not written has the name of an output.
enum class OnExisting {
  Ask,      // the user, when the first such file of the run is met; the answer is one of the others
  Replace,  // the file goes to the trash
  Rename,   // the output gets another name
  Skip      // the source gets no output
};

// Whether a watch tries the same file again.
enum class Retry {
  Never,
  OnceChanged,  // the file may be incomplete: another program may still be writing it
  Soon          // it was not tried, because its disk did not respond
};

// What became of one file of a run.
struct FileResult {
  std::size_t row = 0;  // data row from 1; 0 if the run has no list
  std::string source;
  std::string output;  // "" if none was written and none of an earlier part of the run exists
  Result result = Result::None;
  std::string why;  // one Chinese sentence; "" if the output is complete
  // Further outputs, if one source gives several. If only some of them could be made, there is no result, output is ""
  // and these are the ones that were made.
  std::vector<std::string> more = {};
  Retry retry = Retry::Never;  // only counts if there is no output
  bool endedRun = false;       // this file ended a run over a folder
  bool reached = true;         // false if the run was stopped before this file
};

// Sums of a run: planned = written + none + skipped. Files that a stopped run did not reach are skipped.
struct RunTotals {
  std::size_t planned = 0;
  std::size_t written = 0;
  std::size_t none = 0;
  std::size_t skipped = 0;
  double seconds = 0;
  bool stopped = false;
};

// Notified of the progress of a run or listing. All calls come on the main thread.
class RunObserver {
 public:
  virtual ~RunObserver() = default;
  virtual void RunStarted(std::size_t planned) = 0;  // 0: not known beforehand
  // Called when the number of files is known, if it was not known at the start. It may still change.
  virtual void RunPlanned(std::size_t /*planned*/) {}
  // Called before a file is handled; "" after the last.
  virtual void FileBegun(const std::string& /*source*/) {}
  virtual void FileDone(const FileResult& file) = 0;
  // An output that was reported as written does not exist after all.
  virtual void FileLost(const FileResult& file, const std::string& output) = 0;
  // A stale output was left in place, because another shard may have written it.
  virtual void StaleOutputLeft(const std::string& /*path*/) {}
  virtual void RunEnded(const RunTotals& totals) = 0;
  // A named file was not listed or could not be measured, or a folder could not be read or was skipped.
  virtual void FileNotListed(const std::string& /*source*/, const std::string& /*why*/) {}
  // A file was not listed because of the filter of small pictures, because it is a link to a listed file, or because it
  // is a result of an earlier run.
  virtual void FileFilteredOut(const std::string& /*source*/, const std::string& /*why*/) {}
  // The user should know something about a folder that was listed.
  virtual void FolderNoted(const std::string& /*folder*/, const std::string& /*what*/) {}
};

}  // namespace quillon::job
