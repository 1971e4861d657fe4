// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "host/testing/test_host.h"
#include "job/program.h"
#include "job/windows/file_intake.h"

namespace quillon::job {

// A whole program in a world of its own. It is not started; StartedTest starts it.
class ProgramTest : public ::testing::Test {
 protected:
  // Every mode can be chosen, as in a program with all drivers.
  ProgramTest() {
    program.modes = {CutMode::Normal, CutMode::Gif, CutMode::Png, CutMode::Pdf, CutMode::PenHui, CutMode::Tiff};
  }

  host::testing::TestHost world;
  Program program{world.host};
  Form1& form = program.form1;
  FBaseOpt& options = program.fBaseOpt;
  Flags& flags = program.flags;

  // What a user does who puts text into the control of that name; fails the test when the control refuses.
  void Put(std::string_view name, std::string_view text) {
    controls::Control* control = program.windows.Find(name);
    ASSERT_NE(control, nullptr) << name;
    const controls::EditResult result = control->UserEdit(text);
    ASSERT_TRUE(result.Accepted()) << result.refusal;
  }
  // What a user does who presses the button or chooses the menu entry of that name.
  void Click(std::string_view name) {
    controls::Control* control = program.windows.Find(name);
    ASSERT_NE(control, nullptr) << name;
    const controls::EditResult result = control->UserClick();
    ASSERT_TRUE(result.Accepted()) << result.refusal;
  }
  std::string Value(std::string_view name) const {
    const controls::Control* control = program.windows.Find(name);
    return control ? control->Value() : "no such control";
  }
  bool Enabled(std::string_view name) const {
    const controls::Control* control = program.windows.Find(name);
    return control && control->Enabled();
  }
  // Puts a file into the program folder.
  std::string WriteApp(const std::string& name, std::string_view content = "x") {
    return world.folder.Write("app/" + name, content);
  }
  bool AppHas(const std::string& name) const { return world.folder.Exists("app/" + name); }
};

class StartedTest : public ProgramTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(program.Start());
    world.boxes.Forget();
  }
};

}  // namespace quillon::job
