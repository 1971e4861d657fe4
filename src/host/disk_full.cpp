// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/disk_full.h"

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

Box DiskFullBox(const std::string& path, DiskFullWording wording) {
  const char* mark = wording == DiskFullWording::Comma ? "，" : "！";
  return {DriveOf(path) + "盘空间不足" + mark + "请释放空间后重试保存！", kRetryCancelStop};
}

Status SaveAsking(Boxes& boxes, const std::string& path, DiskFullWording wording, const std::function<void()>& stop,
                  const std::function<Status()>& save, const std::string& title) {
  Status status = save();
  Box box = DiskFullBox(path, wording);
  box.title = title;
  while (status.DiskFull()) {
    if (boxes.Show(box) != Reply::Retry) {
      if (stop) stop();
      break;
    }
    status = save();
  }
  return status;
}

}  // namespace quillon::host
