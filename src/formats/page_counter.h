// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "job/program.h"

namespace quillon::formats {

// Counts the frames of a gif and the pages of a tiff by the structure of the file, and has QxImgTool count those of a
// pdf. It is the page counter of the program while it exists.
class PageCounter final : public job::PageCounter {
 public:
  explicit PageCounter(job::Program& program) : program_(program) { program.pageCounter = this; }
  ~PageCounter() override;
  PageCounter(const PageCounter&) = delete;
  PageCounter& operator=(const PageCounter&) = delete;

  job::Pages Count(int mode, const std::string& path, int dpi) override;

 private:
  job::Program& program_;
};

}  // namespace quillon::formats
