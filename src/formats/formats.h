// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "formats/gif/fgifcut.h"
#include "formats/page_counter.h"
#include "formats/png/fpngcut.h"
#include "job/program.h"

namespace quillon::formats {

// The cut modes for files of several frames or pages. The constructor adds their windows and modes to the program, and
// connects their menu entries. The program must outlive the object.
class Formats {
 public:
  explicit Formats(job::Program& program);
  Formats(const Formats&) = delete;
  Formats& operator=(const Formats&) = delete;

  PageCounter pageCounter;
  FGifCut fGifCut;
  FPngCut fPngCut;
};

}  // namespace quillon::formats
