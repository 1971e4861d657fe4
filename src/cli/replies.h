// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/boxes.h"

namespace quillon::cli {

// The two names of a reply to a message box. --answer accepts both; events carry the English one.
struct ReplyName {
  host::Reply reply;
  const char* name;     // English: "Yes"
  const char* chinese;  // the caption of the button: "是"
};

// Returns the names of all replies, each reply once.
const std::vector<ReplyName>& ReplyNames();

// Returns the reply with that English name (upper and lower case do not matter) or Chinese name; nothing for any other
// text.
std::optional<host::Reply> ReplyNamed(const std::string& text);

// Returns the English name.
const char* NameOf(host::Reply reply);

}  // namespace quillon::cli
