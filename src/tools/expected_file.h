// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/tools.h"

namespace quillon::tools {

// A file that a helper is expected to write. Construct it before the helper is started: a failed helper leaves an older
// file under the name, which must not be mistaken for its result.
class ExpectedFile {
 public:
  // sources are the files that the helper reads.
  ExpectedFile(Tools& tools, std::string path, const std::vector<std::string>& sources);

  // Returns true if the file is new or has changed since construction.
  bool Made() const;
  // Returns the result after the wait. Succeeds if the file was written and validate, if given, accepts it.
  // A file that validate rejects is discarded, and the result is Damaged.
  // If nothing was written, the result is a failure with the text missing, and an older file at path is discarded,
  // unless the user stopped the helper or the file is one of the sources.
  // Discarded files go to the trash; work files in the program folder are deleted.
  using Validator = std::function<bool(const host::Files& files, const std::string& path)>;
  host::Status Result(WaitResult waited, const std::string& missing, const Validator& validate = {}) const;

 private:
  void Discard() const;

  Tools& tools_;
  std::string path_;
  std::optional<host::FileFacts> before_;
  bool isSource_;
};

// Returns true if the file is a PDF with a header and an end marker. A file of more than 256 MB is not read and counts
// as valid.
bool IsWholePdf(const host::Files& files, const std::string& path);

// Returns true if the file is a picture of a format that the program reads, with a complete header. Its pixels are not
// decoded.
bool IsPicture(const host::Files& files, const std::string& path);

}  // namespace quillon::tools
