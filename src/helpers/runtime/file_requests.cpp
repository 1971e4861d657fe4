// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/file_requests.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace quillon::helpers {
namespace {

constexpr int kSocket = 0;

}  // namespace

std::optional<int> NextFile() {
  char byte = 0;
  iovec content{&byte, 1};
  int handle = -1;
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof handle)> control{};
  msghdr message{};
  message.msg_iov = &content;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  ssize_t count = 0;
  do {
    count = recvmsg(kSocket, &message, MSG_CMSG_CLOEXEC);
  } while (count < 0 && errno == EINTR);
  const cmsghdr* head = count == 1 ? CMSG_FIRSTHDR(&message) : nullptr;
  if (!head || head->cmsg_type != SCM_RIGHTS || head->cmsg_len != CMSG_LEN(sizeof handle)) return std::nullopt;
  std::memcpy(&handle, CMSG_DATA(head), sizeof handle);
  return handle;
}

void Answer(std::string_view text) {
  while (send(kSocket, text.data(), text.size(), MSG_NOSIGNAL) < 0 && errno == EINTR) {
  }
}

}  // namespace quillon::helpers
