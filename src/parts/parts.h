// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "formats/output_tools.h"
#include "job/program.h"
#include "regions/regions.h"

namespace quillon::parts {

// A program with every part that is built above the job. What runs the program makes one beside it, before its start,
// and lets it go first.
class Parts {
 public:
  explicit Parts(job::Program& owner) : program(owner), outputTools(owner), regions(owner) {}

  job::Program& program;
  formats::OutputTools outputTools;
  regions::Regions regions;
};

}  // namespace quillon::parts
