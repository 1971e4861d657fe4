// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "helpers/helper_process.h"

namespace quillon::helpers {
namespace {

class CmdTest : public ::testing::Test {
 protected:
  // A program that writes down what it was called with.
  void Program(const std::string& name, const std::string& exit = "0") {
    const std::string path = folder.Write(
        name, "#!/bin/sh\nprintf '%s:%s:%s' \"$(basename \"$0\")\" $# \"$1\" > called\nexit " + exit + "\n");
    chmod(path.c_str(), 0755);
  }

  HelperFolder folder;
};

TEST_F(CmdTest, RunsAProgramOfItsFolderWithItsParametersInOnePiece) {
  Program("X.exe");
  EXPECT_EQ(folder.Run("CMD", {"/c", "X.exe \"/a b\"  -q 1"}).exit, 0);
  EXPECT_EQ(folder.Read("called"), "X.exe:1:\"/a b\"  -q 1");
  EXPECT_EQ(folder.Run("CMD", {"/c", "X.exe"}).exit, 0);
  EXPECT_EQ(folder.Read("called"), "X.exe:0:");
}

TEST_F(CmdTest, RunsTheTwinOfAProgramThatIsMissingOrMayNotRun) {
  Program("X.dll");
  EXPECT_EQ(folder.Run("CMD", {"/c", "X.exe a"}).exit, 0);
  EXPECT_EQ(folder.Read("called"), "X.dll:1:a");
  Program("X.exe");
  chmod(folder.Path("X.exe").c_str(), 0644);
  EXPECT_EQ(folder.Run("CMD", {"/c", "X.exe b"}).exit, 0);
  EXPECT_EQ(folder.Read("called"), "X.dll:1:b");
}

TEST_F(CmdTest, DoesNotTryAFailedProgramAgain) {
  Program("X.exe", "3");
  Program("X.dll");
  EXPECT_EQ(folder.Run("CMD", {"/c", "X.exe a"}).exit, 1);
  EXPECT_EQ(folder.Read("called"), "X.exe:1:a");
}

TEST_F(CmdTest, RunsNothingFromElsewhere) {
  for (const std::string command : {"/bin/true", "../app/X.exe", "", "no.exe a"}) {
    EXPECT_EQ(folder.Run("CMD", {"/c", command}).exit, 1) << command;
  }
  EXPECT_EQ(folder.Run("CMD", {"X.exe"}).exit, 1);
  EXPECT_EQ(folder.Run("CMD", {}).exit, 1);
}

}  // namespace
}  // namespace quillon::helpers
