// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "job/program.h"
#include "job/settings/collaborators.h"

namespace quillon::formats {

// Runs PicHandler and TessaExifHandler on outputs. Options that need them are available while it exists and PicHandler
// is installed.
class OutputTools final : public job::OutputTools {
 public:
  explicit OutputTools(job::Program& program);
  ~OutputTools() override;
  OutputTools(const OutputTools&) = delete;
  OutputTools& operator=(const OutputTools&) = delete;

  host::Status ToCmyk(const std::string& file) override;
  host::Status CopyExif(const std::string& source, const std::string& target) override;
  host::Status ToPdf(const std::string& picture, const std::string& pdf) override;

 private:
  job::Program& program_;
};

}  // namespace quillon::formats
