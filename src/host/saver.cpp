// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/saver.h"

#include "base/path_text.h"
#include "base/utf8.h"

namespace quillon::host {
namespace {

constexpr int kRetryCancelStop = kRetryCancelButtons + kStopIcon;

// The first character of a path; a byte that is no text shows as the replacement character.
std::string DriveOf(const std::string& path) {
  for (std::size_t length = 1; length <= 4 && length <= path.size(); ++length) {
    const std::string head = path.substr(0, length);
    if (base::IsUtf8(head)) return base::ToUpperAscii(head);
  }
  return base::DisplayText(path.substr(0, 1));
}

}  // namespace

Box DiskFullBox(const std::string& path, const DiskFullQuestion& question) {
  const char* mark = question.wording == DiskFullWording::Comma ? "，" : "！";
  Box box{DriveOf(path) + "盘空间不足" + mark + "请释放空间后重试保存！", kRetryCancelStop};
  box.title = question.title;
  return box;
}

bool Saver::AskToRetry(const std::string& path, const DiskFullQuestion& question) const {
  if (boxes_.Show(DiskFullBox(path, question)) == Reply::Retry) return true;
  if (stop_) stop_();
  return false;
}

Status Saver::Copy(const std::string& from, const std::string& to, const DiskFullQuestion& question,
                   CopyTimes times) const {
  const auto copy = [&files = files_, from, to, times](const DiskThread::Job& job) {
    return files.Copy(from, to, job.Saving(), times);
  };
  return Save(
      to, [&] { return thread_ ? thread_->Run(copy) : files_.Copy(from, to, {}, times); }, question);
}

}  // namespace quillon::host
