// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "helpers/runtime/helper.h"
#include "imaging/services.h"

namespace quillon::helpers {

// Loads and cuts pictures on commands that come one by one in a key of the store:
//
//   load|<file>|0                                     the picture is put on the lane
//   cut|<picture>|<x>|<y>|<width>|<height>|<out>|<quality>   out is written by its extension
//
// Each is answered with "1", done or not: what it leaves tells. The same commands may come in other orders of their
// words: 0|load|<file>, 0|<file>|load and <quality>|<picture>|cut|<x>|<y>|<width>|<height>|<out>.
class BackServer {
 public:
  explicit BackServer(Helper& helper);

  // The parameter text is the application, the key, the file and the first command, between tabs. Serves while a
  // program runs in the program folder, else until nothing has come for half an hour or the folder is gone.
  host::Status Serve();

 private:
  host::Status Obey(const std::string& command);
  host::Status Load(const std::string& file);
  host::Status Cut(const std::string& picture, const std::vector<std::string>& numbers, const std::string& out,
                   const std::string& quality);

  Helper& helper_;
  imaging::Services services_;
};

}  // namespace quillon::helpers
