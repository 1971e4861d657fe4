// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

#include "formats/tools/tools.h"

namespace quillon::formats {

// A file that a helper is to make. A failed helper leaves what stood under the name before, which must not be taken for
// its result. To be made before the helper is started.
class ExpectedFile {
 public:
  ExpectedFile(Tools& tools, std::string path);

  // Whether a file stands there that did not before.
  bool Made() const;
  // After the wait: fine when it was made. Else, unless the user stopped it, the file from before goes, into the trash
  // or, from the program folder, for good, and missing is the failure.
  host::Status Result(Waited waited, const std::string& missing) const;

 private:
  Tools& tools_;
  std::string path_;
  std::optional<host::FileFacts> before_;
};

}  // namespace quillon::formats
