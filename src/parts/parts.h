// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "formats/formats.h"
#include "formats/output_tools.h"
#include "job/program.h"
#include "regions/regions.h"

namespace quillon::parts {

// A program with every feature library. job::Program knows the features only through the interfaces of
// job/settings/collaborators.h; each part sets its pointer in the program and adds its windows.
//
// Construct it after the program and before Program::Start(); destroy it before the program. A new feature library is
// added here as one member, and is then part of the window, of quillon-batch and of the tests.
class Parts {
 public:
  // owner must outlive the object; `program` is the same object.
  explicit Parts(job::Program& owner) : program(owner), outputTools(owner), formats(owner), regions(owner) {}

  job::Program& program;
  formats::OutputTools outputTools;
  formats::Formats formats;
  regions::Regions regions;
};

}  // namespace quillon::parts
