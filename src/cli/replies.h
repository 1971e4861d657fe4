// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/boxes.h"

namespace quillon::cli {

// The names under which a reply may be given; the first is the one that events carry.
struct ReplyName {
  host::Reply reply;
  const char* name;
  const char* chinese;
};
const std::vector<ReplyName>& ReplyNames();

// Upper and lower case of the English names do not matter; nothing for any other text.
std::optional<host::Reply> ReplyNamed(const std::string& text);
const char* NameOf(host::Reply reply);

}  // namespace quillon::cli
