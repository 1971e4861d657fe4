// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon::job {

// Reported for a picture that has no size.
inline constexpr const char* kNoSize = "本机异常，获取图片的尺寸数据为0，请以管理员权限重新运行安装包覆盖安装！";

// Reported if several processes would read each other's results as sources.
inline constexpr const char* kSharedOutput =
    "输出目录就是输入目录，由几个进程分担时，彼此的结果会被当作原文件再裁一次。"
    "请另选输出目录，或不带 --jobs 和 --shard 运行";

enum class Result { Written, None, Skipped };

// Whether a run that comes upon the same file again, as a watch does, tries it once more.
enum class Retry {
  Never,
  OnceChanged,  // the file may not be whole: another program may still be writing it
  Soon          // it was not tried, because its disk did not respond
};

// What became of one file of a run.
struct FileResult {
  std::size_t row = 0;  // data row from 1, 0 where the run has no list
  std::string source;
  std::string output;  // "" when none was written and none of an earlier part of the run stands
  Result result = Result::None;
  std::string why;                     // one Chinese sentence; "" when written and nothing is missing in the output
  std::vector<std::string> more = {};  // further outputs, where one source gives several
  Retry retry = Retry::Never;          // if there is no output
  bool endedRun = false;               // this file ended a run over a folder
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

// Hears how a run or a listing goes on. All calls come on the one thread of control.
class RunObserver {
 public:
  virtual ~RunObserver() = default;
  virtual void RunStarted(std::size_t planned) = 0;  // 0: not known beforehand
  // The number that was not known when the run started, once it is; what goes on meanwhile may still change it.
  virtual void RunPlanned(std::size_t /*planned*/) {}
  // A file of a run is taken up; "": none is.
  virtual void FileBegun(const std::string& /*source*/) {}
  virtual void FileDone(const FileResult& file) = 0;
  // A file told as written with this output, which does not stand after all.
  virtual void FileLost(const FileResult& file, const std::string& output) = 0;
  // An older file stands under the name of an output that could not be made. It is left there by a run that has only a
  // share of the files: it may be an output of another share.
  virtual void StaleOutputLeft(const std::string& /*path*/) {}
  virtual void RunEnded(const RunTotals& totals) = 0;
  // A file that a listing did not take although it was named, or that it could not measure and so ended at; a folder
  // that could not be listed.
  virtual void FileNotListed(const std::string& /*source*/, const std::string& /*why*/) {}
  // A file that the filter of small pictures kept out of a listing.
  virtual void FileFilteredOut(const std::string& /*source*/, const std::string& /*why*/) {}
};

}  // namespace quillon::job
