// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/frame/helper.h"
#include "imaging/services.h"

namespace quillon::helpers {

// Loads and cuts pictures on commands that come one by one in a key of the store:
//
//   load|<file>|0                                     the picture is put on the lane
//   cut|<picture>|<x>|<y>|<width>|<height>|<out>|<quality>   out is written by its extension
//
// Each is answered with "1", done or not: what it leaves tells. A load may also come with its words turned round.
class BackServer {
 public:
  explicit BackServer(Helper& helper);

  // The parameter text is the application, the key, the file and the first command, between tabs. Serves until nothing
  // has come for half an hour, or the program folder is gone.
  host::Status Serve();

 private:
  host::Status Obey(const std::string& command);
  host::Status Load(const std::string& file);
  host::Status Cut(const std::vector<std::string>& words);

  Helper& helper_;
  imaging::Services services_;
};

}  // namespace quillon::helpers
