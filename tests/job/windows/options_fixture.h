// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "job/collaborator_doubles.h"
#include "job/program_fixture.h"

namespace quillon::job {

// A started program with collaborators that do nothing and its advanced options open.
class OpenOptionsTest : public StartedTest {
 protected:
  IdleFrame manualFrame;
  IdleSheets sheets;
  IdleTools tools;

  void SetUp() override {
    StartedTest::SetUp();
    program.manualFrame = &manualFrame;
    program.sheets = &sheets;
    program.outputTools = &tools;
    options.Show();
  }
};

}  // namespace quillon::job
