// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/report/out_stream.h"

#include <cerrno>
#include <chrono>
#include <string>
#include <thread>

#include "host/status.h"

namespace quillon::cli {
namespace {

constexpr std::chrono::milliseconds kFullPipePause{5};

}  // namespace

void OutStream::Write(std::string_view text) {
  while (!failed_ && !text.empty()) {
    errno = 0;
    const std::size_t written = std::fwrite(text.data(), 1, text.size(), out_);
    const int error = errno;
    std::clearerr(out_);
    text.remove_prefix(written);
    if (written > 0 || error == EINTR) continue;
    if (error == EAGAIN) {
      std::this_thread::sleep_for(kFullPipePause);
    } else {
      Fail(error);
    }
  }
}

void OutStream::Fail(int error) {
  failed_ = true;
  lost_ = error != EPIPE;
  const std::string why = lost_ ? "（" + host::Status::FromErrno(error).Why() + "）" : std::string();
  std::fputs(("quillon-batch: 标准输出无法写入" + why + "，以后的事件没有写出\n").c_str(), err_);
}

}  // namespace quillon::cli
