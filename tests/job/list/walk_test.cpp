// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_walk.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "base/path_text.h"
#include "host/testing/fakes.h"
#include "job/cut_fixture.h"
#include "job/list/dead_disk.h"
#include "job/list/file_count.h"

namespace quillon::job {
namespace {

using Paths = std::vector<std::string>;

class WalkTest : public ProgramTest {
 protected:
  std::string Path(const std::string& name) const { return world.folder.Path("tree/" + name); }
  void File(const std::string& name) { world.folder.Write("tree/" + name, "x"); }

  Paths Walk(const Paths& roots, Subfolders subfolders = Subfolders::Yes) {
    Paths seen;
    FileWalk walk(program.context, {subfolders, [](const std::string& name) { return !name.ends_with(".txt"); }, shard,
                                    leftOut, byFolder});
    end = walk.Run(roots, [&](const std::string& path) {
      seen.push_back(path);
      return !visit || visit(path);
    });
    reachedAll = walk.ReachedAll();
    return seen;
  }
  static Paths Sorted(Paths paths) {
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  Shard shard;
  std::string leftOut;
  bool byFolder = false;
  std::function<bool(const std::string&)> visit;
  WalkEnd end = WalkEnd::Complete;
  bool reachedAll = false;
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
  EXPECT_FALSE(std::filesystem::exists(Path(".1.jpg.quillon-ab3de9"))) << "a killed run left it";
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
  EXPECT_TRUE(reachedAll) << "what may not be read never will be";
}

TEST_F(WalkTest, AFolderThatVanishesIsSkippedSilently) {
  for (const char* name : {"a/1.jpg", "b/2.jpg", "c/3.jpg"}) File(name);
  Recorder recorder;
  program.observer = &recorder;
  visit = [&](const std::string&) {
    std::filesystem::remove_all(Path("b"));
    return true;
  };
  // All folders are found before the first file is visited, so the one that goes is begun before it is gone.
  world.faults.Before(host::testing::DiskCall::List, 3, [&] { std::filesystem::remove_all(Path("c")); });
  EXPECT_GE(Walk({Path("")}).size(), 1u);
  EXPECT_EQ(end, WalkEnd::Complete);
  EXPECT_TRUE(recorder.notListed.empty());
}

TEST_F(WalkTest, AFolderThatNeverAnswersIsGivenUp) {
  for (const char* name : {"a/1.jpg", "b/2.jpg", "c/3.jpg"}) File(name);
  Recorder recorder;
  program.observer = &recorder;
  DeadDisk dead;
  world.faults.Before(host::testing::DiskCall::List, 3, [&] { dead.Hang(); });
  world.pump.EveryTurn([&] {
    if (host::testing::OtherThreadsWait()) world.clock.Advance(1);
  });
  EXPECT_EQ(Walk({Path("")}).size(), 2u);
  EXPECT_EQ(end, WalkEnd::Complete);
  ASSERT_EQ(recorder.notListed.size(), 1u);
  EXPECT_EQ(recorder.notListed[0].second, "文件夹无法读取，已跳过：没有响应");
  dead.Answer();
}

TEST_F(WalkTest, WhatIsFoundDoesNotWaitForADeadFolder) {
  for (const char* name : {"0.jpg", "a/1.jpg"}) File(name);
  DeadDisk dead;
  world.faults.Before(host::testing::DiskCall::List, 2, [&] { dead.Hang(); });
  world.pump.EveryTurn([&] {
    if (host::testing::OtherThreadsWait()) world.clock.Advance(1);
  });
  double visited = -1;
  visit = [&](const std::string&) {
    visited = world.clock.Seconds();
    return true;
  };
  EXPECT_EQ(Walk({Path("")}), Paths{Path("0.jpg")});
  EXPECT_GE(visited, 0);
  EXPECT_LT(visited, 10);
  EXPECT_GE(world.clock.Seconds(), 30);
  EXPECT_FALSE(reachedAll);
  dead.Answer();
}

TEST_F(WalkTest, AStopIsObeyedWhileAFolderDoesNotAnswer) {
  File("a/1.jpg");
  DeadDisk dead;
  world.faults.Before(host::testing::DiskCall::List, 2, [&] { dead.Hang(); });
  int turns = 0;
  world.pump.EveryTurn([&] { flags.StopRequested = ++turns > 20; });
  EXPECT_TRUE(Walk({Path("")}).empty());
  EXPECT_EQ(end, WalkEnd::Stopped);
  dead.Answer();
}

TEST_F(WalkTest, TheLeftOutFolderIsPassedOver) {
  for (const char* name : {"a/1.jpg", "out/2.jpg", "out/deep/3.jpg"}) File(name);
  leftOut = Path("out");
  EXPECT_EQ(Walk({Path("")}), Paths{Path("a/1.jpg")});
}

TEST_F(WalkTest, ShowsWhatComesNext) {
  for (int i = 0; i < 10; ++i) File("d/" + std::to_string(i) + ".jpg");
  const Paths order = Walk({Path("d")});
  FileWalk walk(program.context, {Subfolders::Yes, [](const std::string&) { return true; }, {}, ""});
  std::size_t at = 0;
  walk.Run({Path("d")}, [&](const std::string& path) {
    EXPECT_EQ(path, order[at++]);
    EXPECT_EQ(walk.Upcoming(3), Paths(order.begin() + static_cast<std::ptrdiff_t>(at),
                                      order.begin() + static_cast<std::ptrdiff_t>(std::min(at + 3, order.size()))));
    return true;
  });
  EXPECT_EQ(at, 10u);
}

// The shard of a file does not depend on the place of its tree.
TEST_F(WalkTest, ShardsDependOnThePathBelowTheRoot) {
  for (int i = 0; i < 60; ++i) {
    for (const char* tree : {"one/", "far/away/two/"}) File(tree + std::to_string(i % 4) + "/" + std::to_string(i));
  }
  shard = {1, 3, ""};
  Paths one = Walk({Path("one")});
  Paths two = Walk({Path("far/away/two")});
  EXPECT_GT(one.size(), 5u);
  EXPECT_LT(one.size(), 40u);
  for (std::string& path : one) path = path.substr(Path("one").size());
  for (std::string& path : two) path = path.substr(Path("far/away/two").size());
  EXPECT_EQ(Sorted(one), Sorted(two));
}

TEST_F(WalkTest, ShardsMayDependOnTheFolder) {
  constexpr int kFolders = 20;
  for (int i = 0; i < 100; ++i) File("d/" + std::to_string(i % kFolders) + "/" + std::to_string(i));
  File("d/top");
  byFolder = true;
  std::map<std::string, std::size_t> files;
  for (const std::uint64_t index : {0, 1, 2}) {
    shard = {index, 3, ""};
    std::map<std::string, std::size_t> own;
    for (const std::string& path : Walk({Path("d")})) ++own[base::SplitPath(path).folder];
    EXPECT_LT(own.size(), 18u) << "each share has some";
    for (const auto& [folder, count] : own) {
      EXPECT_TRUE(files.emplace(folder, count).second) << folder;
      EXPECT_EQ(count, folder == Path("d") ? 1u : 5u) << folder;
    }
  }
  EXPECT_EQ(files.size(), kFolders + 1u);
}

TEST_F(WalkTest, TheCountIsThatOfTheWalk) {
  for (int i = 0; i < 300; ++i) File(std::to_string(i % 11) + "/" + std::to_string(i % 3) + "/" + std::to_string(i));
  File("note.txt");
  File("out/1.jpg");
  std::filesystem::create_directory_symlink("..", Path("1/up"));
  leftOut = Path("out");
  // By one that died.
  for (int i = 0; i < 300; i += 7) {
    program.doneElsewhere[Path(std::to_string(i % 11) + "/" + std::to_string(i % 3) + "/" + std::to_string(i))] =
        Wrote::Yes;
  }
  const auto accepts = [](const std::string& name) { return !name.ends_with(".txt"); };
  for (const Subfolders subfolders : {Subfolders::Yes, Subfolders::No}) {
    for (const std::uint64_t parts : {1u, 4u, 5u}) {
      shard = {parts - 1, parts, ""};
      byFolder = parts == 5;
      const FileCount count(world.files, base::TrimTrailingSeparator(Path("")),
                            {subfolders, accepts, shard, leftOut, byFolder}, program.doneElsewhere);
      const std::size_t walked = Walk({base::TrimTrailingSeparator(Path(""))}, subfolders).size();
      while (!count.Result()) {
      }
      EXPECT_EQ(*count.Result(), walked);
    }
  }
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
