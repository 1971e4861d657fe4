// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/file_walk.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "program_fixture.h"

namespace quillon::job {
namespace {

using Paths = std::vector<std::string>;

class WalkTest : public ProgramTest {
 protected:
  std::string Path(const std::string& name) const { return world.folder.Path("tree/" + name); }
  void File(const std::string& name) { world.folder.Write("tree/" + name, "x"); }

  Paths Walk(const Paths& roots, Subfolders subfolders = Subfolders::Yes) {
    Paths seen;
    FileWalk walk(program, subfolders, [](const std::string& name) { return !name.ends_with(".txt"); });
    end = walk.Run(roots, [&](const std::string& path) {
      seen.push_back(path);
      return !visit || visit(path);
    });
    return seen;
  }
  static Paths Sorted(Paths paths) {
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  std::function<bool(const std::string&)> visit;
  WalkEnd end = WalkEnd::Complete;
};

TEST_F(WalkTest, FilesOfAFolderComeBeforeItsSubfolders) {
  for (const char* name : {"b/c/3.jpg", "b/2.jpg", "1.jpg", "b/c/4.jpg"}) File(name);
  const Paths seen = Walk({Path("")});
  ASSERT_EQ(seen.size(), 4u);
  EXPECT_EQ(seen[0], Path("1.jpg"));
  EXPECT_EQ(seen[1], Path("b/2.jpg"));
  EXPECT_EQ(Sorted({seen[2], seen[3]}), (Paths{Path("b/c/3.jpg"), Path("b/c/4.jpg")}));
  EXPECT_EQ(end, WalkEnd::Complete);
}

// Each subfolder is finished, with all below it, before the next one of its folder.
TEST_F(WalkTest, OrderIsThatOfTheFileSystem) {
  for (const char* name : {"x/1.jpg", "x/deep/2.jpg", "y/1.jpg", "y/deep/2.jpg", "z/1.jpg", "0.jpg", "9.jpg"}) {
    File(name);
  }
  Paths files;
  Paths folders;
  ASSERT_TRUE(world.files.ListFolder(Path(""), [&](const host::FolderEntry& entry) {
    (entry.kind == host::FileKind::Folder ? folders : files).push_back(entry.name);
    return true;
  }));
  Paths expected;
  for (const std::string& file : files) expected.push_back(Path("") + file);
  for (const std::string& folder : folders) {
    expected.push_back(Path("") + folder + "/1.jpg");
    if (folder != "z") expected.push_back(Path("") + folder + "/deep/2.jpg");
  }
  EXPECT_EQ(Walk({Path("")}), expected);
}

TEST_F(WalkTest, SubfoldersMayBeLeftOut) {
  for (const char* name : {"1.jpg", "b/2.jpg"}) File(name);
  EXPECT_EQ(Walk({Path("")}, Subfolders::No), Paths{Path("1.jpg")});
}

TEST_F(WalkTest, OnlyAcceptedFilesAndNoDrafts) {
  for (const char* name : {"1.jpg", "notes.txt", ".1.jpg.quillon-ab3de9"}) File(name);
  ASSERT_TRUE(host::IsDraftName(".1.jpg.quillon-ab3de9"));
  EXPECT_EQ(Walk({Path("")}), Paths{Path("1.jpg")});
}

TEST_F(WalkTest, AFolderWithThePatternOfAFileIsAFolder) {
  File("x.jpg/inside.jpg");
  EXPECT_EQ(Walk({Path("")}), Paths{Path("x.jpg/inside.jpg")});
  EXPECT_EQ(Walk({Path("")}, Subfolders::No), Paths{});
}

TEST_F(WalkTest, WhatIsNeitherFileNorFolderIsPassedOver) {
  File("1.jpg");
  ASSERT_EQ(mkfifo(Path("pipe.jpg").c_str(), 0600), 0);
  ASSERT_EQ(symlink("nowhere", Path("broken.jpg").c_str()), 0);
  EXPECT_EQ(Walk({Path("")}), Paths{Path("1.jpg")});
}

TEST_F(WalkTest, LinksInCirclesDoNotHang) {
  File("a/1.jpg");
  std::filesystem::create_directory_symlink("..", Path("a/up"));
  std::filesystem::create_directory_symlink("a", Path("again"));
  EXPECT_EQ(Walk({Path("")}).size(), 1u);
  EXPECT_EQ(end, WalkEnd::Complete);
}

TEST_F(WalkTest, LinkedFilesAndFoldersAreFollowed) {
  File("a/1.jpg");
  const std::string elsewhere = world.folder.Write("elsewhere/2.jpg", "x");
  std::filesystem::create_directory_symlink(world.folder.Path("elsewhere"), Path("linked"));
  EXPECT_EQ(Sorted(Walk({Path("")})), (Paths{Path("a/1.jpg"), Path("linked/2.jpg")}));
}

TEST_F(WalkTest, ASubfolderWithAnErrorIsSkipped) {
  for (const char* name : {"a/1.jpg", "bad/2.jpg", "c/3.jpg"}) File(name);
  world.faults.Set({.call = host::testing::DiskCall::List,
                    .error = EACCES,
                    .length = host::testing::Fault::Length::ForEver,
                    .pathHolds = "bad"});
  EXPECT_EQ(Sorted(Walk({Path("")})), (Paths{Path("a/1.jpg"), Path("c/3.jpg")}));
  EXPECT_EQ(end, WalkEnd::Complete);
  EXPECT_EQ(world.faults.Fired(), 1);
}

TEST_F(WalkTest, RootsInOrderFilesAsTheyAre) {
  for (const char* name : {"one.txt", "folder/2.jpg", "folder/2.txt"}) File(name);
  const Paths roots{Path("one.txt"), Path("folder"), Path("missing.jpg")};
  EXPECT_EQ(Walk(roots), (Paths{Path("one.txt"), Path("folder/2.jpg"), Path("missing.jpg")}));
}

TEST_F(WalkTest, VisitAndStopRequestEndIt) {
  for (const char* name : {"1.jpg", "2.jpg", "3.jpg", "b/4.jpg"}) File(name);
  int visits = 0;
  visit = [&](const std::string&) { return ++visits < 2; };
  EXPECT_EQ(Walk({Path("")}).size(), 2u);
  EXPECT_EQ(end, WalkEnd::Stopped);

  visit = [&](const std::string&) {
    flags.StopRequested = true;
    return true;
  };
  EXPECT_EQ(Walk({Path("")}).size(), 1u);
  EXPECT_EQ(end, WalkEnd::Stopped);
}

TEST_F(WalkTest, ThePumpHasATurnAtEachFileAndInLongFolders) {
  for (int i = 0; i < 600; ++i) File(std::to_string(i) + ".txt");
  File("1.jpg");
  const int before = world.pump.Turns();
  Walk({Path("")});
  EXPECT_GE(world.pump.Turns() - before, 3);
  flags.StopRequested = false;
  world.pump.OnTurn(1, [&] { flags.StopRequested = true; });
  EXPECT_EQ(Walk({Path("")}), Paths{});
  EXPECT_EQ(end, WalkEnd::Stopped);
}

TEST_F(WalkTest, ManyFoldersWithManyFiles) {
  Paths expected;
  for (int folder = 0; folder < 40; ++folder) {
    for (int file = 0; file < 7; ++file) {
      const std::string name = std::to_string(folder) + "/" + std::to_string(file) + ".jpg";
      File(name);
      expected.push_back(Path(name));
    }
  }
  const Paths seen = Walk({Path("")});
  EXPECT_EQ(Sorted(seen), Sorted(expected));
  for (std::size_t i = 0; i < seen.size(); i += 7) {
    const std::string folder = seen[i].substr(0, seen[i].rfind('/'));
    for (std::size_t k = 1; k < 7; ++k) EXPECT_TRUE(seen[i + k].starts_with(folder + "/"));
  }
}

}  // namespace
}  // namespace quillon::job
