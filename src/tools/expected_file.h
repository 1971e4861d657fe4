// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/tools.h"

namespace quillon::tools {

// A file that a helper is to make. A failed helper leaves what stood under the name before, which must not be taken for
// its result. To be made before the helper is started.
class ExpectedFile {
 public:
  // sources are the files that the helper reads.
  ExpectedFile(Tools& tools, std::string path, const std::vector<std::string>& sources);

  // Whether a file stands there that did not before.
  bool Made() const;
  // After the wait: fine when it was made and is sound. Garbage goes like a file from before. Else missing is the
  // failure, and the file from before goes, into the trash or, from the program folder, for good; it stays when the
  // user stopped the helper and when it is one of the sources.
  using Sound = std::function<bool(const host::Files& files, const std::string& path)>;
  host::Status Result(Waited waited, const std::string& missing, const Sound& sound = {}) const;

 private:
  void Drop() const;

  Tools& tools_;
  std::string path_;
  std::optional<host::FileFacts> before_;
  bool isSource_;
};

}  // namespace quillon::tools
