// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/replies.h"

#include "base/path_text.h"

namespace quillon::cli {

const std::vector<ReplyName>& ReplyNames() {
  using host::Reply;
  static const std::vector<ReplyName> names{{Reply::Ok, "Ok", "确定"},        {Reply::Cancel, "Cancel", "取消"},
                                            {Reply::Yes, "Yes", "是"},        {Reply::No, "No", "否"},
                                            {Reply::Retry, "Retry", "重试"},  {Reply::Abort, "Abort", "终止"},
                                            {Reply::Ignore, "Ignore", "忽略"}};
  return names;
}

std::optional<host::Reply> ReplyNamed(const std::string& text) {
  const std::string wanted = base::ToLowerAscii(text);
  for (const ReplyName& name : ReplyNames()) {
    if (wanted == base::ToLowerAscii(name.name) || text == name.chinese) return name.reply;
  }
  return std::nullopt;
}

const char* NameOf(host::Reply reply) {
  for (const ReplyName& name : ReplyNames()) {
    if (name.reply == reply) return name.name;
  }
  return "";
}

}  // namespace quillon::cli
