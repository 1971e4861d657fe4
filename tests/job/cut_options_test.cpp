// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/cut_options.h"

#include <gtest/gtest.h>

namespace quillon::job {
namespace {

TEST(OutputPath, KeepsTheFoldersOfTheSourceBelowTheOutputFolder) {
  struct Row {
    const char* outFolder;
    const char* folder;
    const char* path;
  };
  constexpr Row kRows[] = {
      {"/o", "/in/b", "/o/in/b/a.jpg"},
      {"/", "/in", "/in/a.jpg"},
      {"/o", "C:/in", "/o/in/a.jpg"},
  };
  CutOptions options;
  options.keepFolders = true;
  for (const Row& row : kRows) {
    options.outFolder = row.outFolder;
    EXPECT_EQ(OutputPath(options, row.folder, "a", "jpg"), row.path);
  }
}

TEST(OutputPath, IsFlatOrBesideTheSource) {
  CutOptions options;
  options.outFolder = "/o";
  EXPECT_EQ(OutputPath(options, "/in", "a", "jpg"), "/o/a.jpg");
  options.outFolder = "/";
  EXPECT_EQ(OutputPath(options, "/in", "a", "jpg"), "/a.jpg");
  options.keepFolders = true;
  options.over = true;
  EXPECT_EQ(OutputPath(options, "/in", "a", "jpg"), "/in/a.jpg");
}

}  // namespace
}  // namespace quillon::job
