// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/boxes.h"

namespace quillon::host {

std::vector<Reply> ButtonsOf(int type) {
  switch (type & 15) {
    case 1:
      return {Reply::Ok, Reply::Cancel};
    case 2:
      return {Reply::Abort, Reply::Retry, Reply::Ignore};
    case 3:
      return {Reply::Yes, Reply::No, Reply::Cancel};
    case 4:
      return {Reply::Yes, Reply::No};
    case 5:
      return {Reply::Retry, Reply::Cancel};
    default:
      return {Reply::Ok};
  }
}

Reply DefaultOf(int type) {
  const std::vector<Reply> buttons = ButtonsOf(type);
  const auto wanted = static_cast<std::size_t>((type >> 8) & 3);
  return wanted < buttons.size() ? buttons[wanted] : buttons.front();
}

}  // namespace quillon::host
