// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/boxes.h"

namespace quillon::host {
namespace {

constexpr int kDefaultMask = kSecondIsDefault + kThirdIsDefault;

}  // namespace

std::vector<Reply> ButtonsOf(int type) {
  switch (type & kButtonsMask) {
    case kOkCancelButtons:
      return {Reply::Ok, Reply::Cancel};
    case kAbortRetryIgnoreButtons:
      return {Reply::Abort, Reply::Retry, Reply::Ignore};
    case kYesNoCancelButtons:
      return {Reply::Yes, Reply::No, Reply::Cancel};
    case kYesNoButtons:
      return {Reply::Yes, Reply::No};
    case kRetryCancelButtons:
      return {Reply::Retry, Reply::Cancel};
    default:
      return {Reply::Ok};
  }
}

Reply DefaultOf(int type) {
  const std::vector<Reply> buttons = ButtonsOf(type);
  const auto wanted = static_cast<std::size_t>((type & kDefaultMask) / kSecondIsDefault);
  return wanted < buttons.size() ? buttons[wanted] : buttons.front();
}

}  // namespace quillon::host
