// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cut_settings.h"

#include <string>

#include <gtest/gtest.h>

#include "host/testing/test_host.h"

namespace quillon::job {
namespace {

TEST(OutputName, FollowsTheRules) {
  host::testing::TestHost world;
  const std::string out = world.folder.Path("out");
  struct Case {
    std::string source;
    std::string folder;
    KeepFolders keep;
    Overwrite over;
    std::string type;
    ExtensionCase wanted;
    std::string expected;
  };
  const auto no = KeepFolders::No;
  const auto yes = KeepFolders::Yes;
  const auto fresh = Overwrite::No;
  const auto over = Overwrite::Yes;
  const auto as = ExtensionCase::Keep;
  const auto upper = ExtensionCase::Upper;
  const auto lower = ExtensionCase::Lower;
  const Case cases[] = {
      {"/in/shots/a.jpg", out, no, fresh, "png", as, out + "/shots.png"},
      {"/in/shots/b.x.jpg", out, no, fresh, "png", as, out + "/shots.png"},
      {"/in/shots/a.jpg", out, no, fresh, "png", upper, out + "/shots.PNG"},
      {"/in/shots/a.jpg", out, no, fresh, "PnG", lower, out + "/shots.png"},
      {"/in/shots/a.jpg", out, yes, fresh, "tif", as, out + "/shots/shots.tif"},
      {"/in/shots/a.jpg", "/", no, fresh, "tif", as, "/shots.tif"},
      {"/in/shots.v2/a.jpg", out, no, fresh, "tif", as, out + "/shots.v2.tif"},
      {"/in/shots/a.psd", out, no, fresh, "psd", as, out + "/shots.jpg"},
      {"/in/shots/a.b.jpg", out, no, over, "png", as, "/in/shots/a.b.jpg"},
      {"/in/shots/a.jpg", out, yes, over, "png", upper, "/in/shots/a.JPG"},
      {"/in/shots/a.JPG", out, no, over, "png", lower, "/in/shots/a.jpg"},
      {"/in/shots/a.psd", out, no, over, "png", as, "/in/shots/a.jpg"},
      {"/in/shots/a.PSD", out, no, over, "png", as, "/in/shots/a.JPG"},
      {"/in/shots/a.psd", out, no, over, "png", upper, "/in/shots/a.JPG"},
      {"/in/a.psd.d/b.jpg", out, no, over, "png", as, "/in/a.psd.d/b.jpg"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeOutputName(world.files, c.source, c.folder, c.keep, c.over, c.type, c.wanted), c.expected)
        << c.source;
  }
}

TEST(OutputName, MakesTheFolderItKeeps) {
  host::testing::TestHost world;
  const std::string out = world.folder.Path("out");
  MakeOutputName(world.files, "/in/shots/a.jpg", out, KeepFolders::No, Overwrite::No, "jpg", ExtensionCase::Keep);
  EXPECT_FALSE(world.folder.Exists("out"));
  MakeOutputName(world.files, "/in/shots/a.jpg", out, KeepFolders::Yes, Overwrite::No, "jpg", ExtensionCase::Keep);
  EXPECT_TRUE(world.files.IsFolder(out + "/shots"));
}

TEST(OutputName, CasesExtensions) {
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Keep), "Jpg");
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Upper), "JPG");
  EXPECT_EQ(CasedExtension("Jpg", ExtensionCase::Lower), "jpg");
}

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
  CutSettings options;
  options.keepFolders = true;
  for (const Row& row : kRows) {
    options.outFolder = row.outFolder;
    EXPECT_EQ(OutputPath(options, row.folder, "a", "jpg"), row.path);
  }
}

TEST(OutputPath, IsFlatOrBesideTheSource) {
  CutSettings options;
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
