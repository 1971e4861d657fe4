// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/private_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "host/posix/posix_disk.h"
#include "host/posix/posix_instance.h"
#include "host/testing/faulty_disk.h"
#include "host/testing/temp_folder.h"

namespace quillon::cli {
namespace {

namespace fs = std::filesystem;

struct PrivateFolderTest : testing::Test {
  host::testing::TempFolder folder;
  host::posix::PosixDisk disk;
  host::Files files{disk};
  std::string base = folder.Path("tmp");

  void SetUp() override {
    fs::create_directories(base);
    fs::create_directories(folder.Path("bin"));
  }
  host::Status Make(PrivateFolder& own) { return own.Make(base, folder.Path("bin")); }
};

TEST_F(PrivateFolderTest, IsMadeForTheUserAloneAndRemoved) {
  std::string path;
  {
    PrivateFolder own(disk, files);
    ASSERT_TRUE(Make(own));
    path = own.Path();
    EXPECT_EQ(fs::path(path).parent_path(), base);
    struct stat facts {};
    ASSERT_EQ(stat(path.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700u);
    folder.Write("tmp/" + fs::path(path).filename().native() + "/deep/Tmp.bmp", "x");
  }
  EXPECT_FALSE(fs::exists(path));
}

// Helpers in it wait for as long as it is.
TEST_F(PrivateFolderTest, IsClaimed) {
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_TRUE(host::posix::IsClaimed(own.Path()));
}

TEST_F(PrivateFolderTest, EachIsItsOwn) {
  PrivateFolder one(disk, files);
  PrivateFolder two(disk, files);
  ASSERT_TRUE(Make(one));
  ASSERT_TRUE(Make(two));
  EXPECT_NE(one.Path(), two.Path());
  EXPECT_TRUE(fs::exists(one.Path()));
}

TEST_F(PrivateFolderTest, NothingAppearsAfterItsRemoval) {
  host::testing::FaultyDisk faults(disk);
  host::Files world{faults};
  PrivateFolder own(faults, world);
  ASSERT_TRUE(Make(own));
  const std::string work = own.Path() + "/Tmp.bmp";
  bool begun = false;
  faults.Before(host::testing::DiskCall::RemoveFolder, 1, [&] { begun = std::ofstream(work).is_open(); });
  own.Remove();
  EXPECT_FALSE(begun);
  EXPECT_TRUE(fs::is_empty(base));
}

TEST_F(PrivateFolderTest, HoldsWhatIsInstalledWithoutCopyingTheLargeThings) {
  folder.Write("bin/PicHandler.dll", "helper");
  folder.Write("bin/Colors.ini", "colours");
  folder.Write("bin/ColorConfigs/sRGB.icc", "profile");
  folder.Write("bin/Tmp.bmp", "work");
  fs::path path;
  {
    PrivateFolder own(disk, files);
    ASSERT_TRUE(Make(own));
    path = own.Path();
    EXPECT_TRUE(fs::is_symlink(path / "PicHandler.dll"));
    EXPECT_TRUE(fs::is_symlink(path / "ColorConfigs"));
    EXPECT_TRUE(fs::is_regular_file(path / "ColorConfigs/sRGB.icc"));
    EXPECT_TRUE(fs::is_regular_file(path / "Colors.ini"));
    EXPECT_FALSE(fs::is_symlink(path / "Colors.ini"));
    EXPECT_FALSE(fs::exists(path / "Tmp.bmp"));
  }
  EXPECT_FALSE(fs::exists(path));
  EXPECT_EQ(folder.Read("bin/PicHandler.dll"), "helper");
  EXPECT_EQ(folder.Read("bin/ColorConfigs/sRGB.icc"), "profile");
}

TEST_F(PrivateFolderTest, UsesTheFilesOfAnInstalledProgram) {
  folder.Write("lib/quillon/PicHandler.dll", "helper");
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_EQ(fs::read_symlink(own.Path() + "/PicHandler.dll"), folder.Path("lib/quillon/PicHandler.dll"));
}

TEST_F(PrivateFolderTest, SweepsWhatAKilledRunLeft) {
  folder.Write("tmp/quillon-batch-1-1/quillon.lock", "");
  folder.Write("tmp/quillon-batch-1-1/Tmp.bmp", "x");
  folder.Write("tmp/quillon-batch-2-1/Tmp.bmp", "just begun, without a lock yet");
  folder.Write("tmp/something/quillon.lock", "");
  PrivateFolder running(disk, files);
  ASSERT_TRUE(Make(running));
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_FALSE(folder.Exists("tmp/quillon-batch-1-1"));
  EXPECT_TRUE(folder.Exists("tmp/quillon-batch-2-1"));
  EXPECT_TRUE(folder.Exists("tmp/something"));
  EXPECT_TRUE(fs::exists(running.Path()));
}

// Killed before the lock file had its name, or was there at all.
TEST_F(PrivateFolderTest, SweepsWhatARunLeftThatWasKilledAtItsBeginning) {
  folder.Write("tmp/quillon-batch-1-1/quillon.lock.new", "");
  folder.Write("tmp/quillon-batch-2-1/quillon.lock.new", "");
  fs::create_directories(base + "/quillon-batch-3-1");
  const int beginning = disk.OpenOwn(base + "/quillon-batch-2-1/quillon.lock.new");
  ASSERT_EQ(disk.Lock(beginning), 0);
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_FALSE(folder.Exists("tmp/quillon-batch-1-1"));
  EXPECT_TRUE(folder.Exists("tmp/quillon-batch-2-1/quillon.lock.new"));
  EXPECT_FALSE(folder.Exists("tmp/quillon-batch-3-1"));
  disk.Close(beginning);
}

TEST_F(PrivateFolderTest, MakesAnotherIfASweepRemovedItBeforeItWasLocked) {
  for (const host::testing::DiskCall call : {host::testing::DiskCall::OpenNew, host::testing::DiskCall::Rename}) {
    host::testing::FaultyDisk watched(disk);
    host::Files watchedFiles(watched);
    watched.Before(call, 1, [this] {
      for (const std::string& name : folder.Names("tmp")) fs::remove_all(base + "/" + name);
    });
    PrivateFolder own(watched, watchedFiles);
    ASSERT_TRUE(Make(own));
    EXPECT_TRUE(own.Path().ends_with("-2")) << own.Path();
    EXPECT_TRUE(host::posix::IsClaimed(own.Path()));
  }
}

// The run removed the lock file, and was killed before the folder.
TEST_F(PrivateFolderTest, SweepsWhatAKilledRemovalLeft) {
  folder.Write("tmp/quillon-batch-1-1-removed/Tmp.bmp", "x");
  folder.Write("tmp/quillon-batch-2-1/Tmp.bmp", "not renamed");
  folder.Write("tmp/quillon-batch-3-1/Tmp.bmp", "just begun");
  const auto days = [](int count) { return fs::file_time_type::clock::now() - std::chrono::hours(24 * count); };
  fs::last_write_time(base + "/quillon-batch-2-1", days(2));
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_FALSE(folder.Exists("tmp/quillon-batch-1-1-removed"));
  EXPECT_FALSE(folder.Exists("tmp/quillon-batch-2-1"));
  EXPECT_TRUE(folder.Exists("tmp/quillon-batch-3-1"));
}

TEST_F(PrivateFolderTest, SweepsNothingThroughALink) {
  folder.Write("precious/quillon.lock", "");
  folder.Write("precious/work", "x");
  fs::create_directory_symlink(folder.Path("precious"), base + "/quillon-batch-1-1");
  PrivateFolder own(disk, files);
  ASSERT_TRUE(Make(own));
  EXPECT_EQ(folder.Read("precious/work"), "x");
}

TEST_F(PrivateFolderTest, FailsWithASentenceIfNoFolderCanBeCreated) {
  PrivateFolder own(disk, files);
  const host::Status made = own.Make(folder.Path("missing"), folder.Path("bin"));
  EXPECT_FALSE(made);
  EXPECT_FALSE(made.Why().empty());
  EXPECT_EQ(own.Path(), "");
}

TEST(TemporaryBase, FollowsTheEnvironment) {
  setenv("TMPDIR", "/var/tmp/", 1);
  EXPECT_EQ(TemporaryBase(), "/var/tmp");
  setenv("TMPDIR", "relative", 1);
  EXPECT_EQ(TemporaryBase(), "/tmp");
  unsetenv("TMPDIR");
  EXPECT_EQ(TemporaryBase(), "/tmp");
}

}  // namespace
}  // namespace quillon::cli
