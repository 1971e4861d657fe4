// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/media_info.h"

#include <chrono>
#include <limits>
#include <optional>
#include <string_view>

#include "base/number_text.h"
#include "base/path_text.h"
#include "tools/tools.h"

namespace quillon::tools {
namespace {

using host::Problem;
using host::Status;

constexpr const char* kName = "MediaInfoT";
// The helper gives up sooner, by its processor time. This is for a disk that does not answer it, and has to end before
// the prefetcher calls the disk unresponsive.
constexpr double kSecondsOfOneFile = 20;
constexpr auto kLockInterval = std::chrono::milliseconds(4);

Status Damaged() { return {Problem::Damaged, "无法读取图片的尺寸"}; }

// Reads "width height". The helper has read an untrusted file, so its answer is not trusted either.
Status SizeOfAnswer(std::string_view answer, base::Size& size) {
  if (answer == "none") return {Problem::Unsupported, "无法读取图片的尺寸"};
  const std::size_t blank = answer.find(' ');
  if (blank == std::string_view::npos) return Damaged();
  const std::optional<int> width = base::ParseInteger(std::string(answer.substr(0, blank)));
  const std::optional<int> height = base::ParseInteger(std::string(answer.substr(blank + 1)));
  if (!width || !height || *width < 1 || *height < 1) return Damaged();
  size = {*width, *height};
  return Status::Ok();
}

}  // namespace

MediaInfo::MediaInfo(host::Shell& shell, const std::string& programFolder)
    : shell_(shell), program_(base::JoinPath(programFolder, kName, "dll")) {}

Status MediaInfo::Measure(const std::string& path, const host::Companion::KeepWaiting& keepWaiting, base::Size& size) {
  std::string answer;
  const Status asked = Ask(path, keepWaiting, answer);
  if (asked) return SizeOfAnswer(answer, size);
  return asked.GetProblem() == Problem::Other ? Damaged() : asked;
}

// Another thread may use the helper for seconds, so the wait for it can be ended too. What keepWaiting does, such as a
// turn of the window, may ask for a further file, which has to wait for the end of this one.
Status MediaInfo::Ask(const std::string& path, const host::Companion::KeepWaiting& keepWaiting, std::string& answer) {
  if (asking_ == std::this_thread::get_id()) return Interrupted();
  std::unique_lock lock(mutex_, std::defer_lock);
  while (!lock.try_lock_for(kLockInterval)) {
    if (keepWaiting && !keepWaiting()) return Interrupted();
  }
  if (!helper_ || !helper_->Alive()) helper_ = shell_.StartCompanion(program_);
  if (!helper_) return NotStarted(kName);
  asking_ = std::this_thread::get_id();
  Status asked = helper_->Ask(path, kSecondsOfOneFile, keepWaiting, answer);
  asking_ = std::thread::id();
  return asked;
}

}  // namespace quillon::tools
