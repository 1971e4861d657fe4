// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/program_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "host/testing/test_host.h"

namespace quillon::host::posix {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::TestHost;

class ProgramFolderTest : public ::testing::Test {
 protected:
  std::string Chosen(const std::string& given, const std::string& executableFolder) {
    return ChooseProgramFolder(files, {given, executableFolder, folder.Path("data")});
  }

  TestHost world;
  testing::TempFolder& folder = world.folder;
  Files& files = world.files;
};

TEST_F(ProgramFolderTest, TheGivenFolderWins) {
  EXPECT_EQ(Chosen("/given/", folder.Path("app")), "/given");
  EXPECT_EQ(Chosen("given", folder.Path("app")), fs::current_path().native() + "/given");
}

TEST_F(ProgramFolderTest, APortableProgramUsesItsOwnFolder) {
  EXPECT_EQ(Chosen("", folder.Path("app")), folder.Path("app"));
}

TEST_F(ProgramFolderTest, AnInstalledProgramUsesTheUsersFolder) {
  for (const char* place : {"/usr/bin", "/usr/lib/quillon", "/usr/local/bin", "/bin", ""}) {
    EXPECT_EQ(Chosen("", place), folder.Path("data/quillon")) << place;
  }
  fs::create_directories(folder.Path("local/bin"));
  EXPECT_EQ(Chosen("", folder.Path("local/bin")), folder.Path("local/bin"));
  fs::create_directories(folder.Path("local/lib/quillon"));
  EXPECT_EQ(Chosen("", folder.Path("local/bin")), folder.Path("data/quillon"));
}

TEST_F(ProgramFolderTest, AFolderThatMayNotBeWrittenIsNotUsed) {
  EXPECT_EQ(Chosen("", folder.Path("none")), folder.Path("data/quillon"));
  if (geteuid() == 0) GTEST_SKIP() << "the administrator may write everywhere";
  fs::permissions(folder.Path("app"), fs::perms(0555));
  EXPECT_EQ(Chosen("", folder.Path("app")), folder.Path("data/quillon"));
}

TEST_F(ProgramFolderTest, HintsHaveTheFolderOfThisProgram) {
  const ProgramFolderHints hints = HintsOfThisProcess();
  EXPECT_EQ(hints.executableFolder, fs::read_symlink("/proc/self/exe").parent_path().native());
  EXPECT_FALSE(hints.dataHome.empty());
}

TEST_F(ProgramFolderTest, IsFilledFromInstalledFiles) {
  folder.Write("prefix/bin/quillon", "program");
  const std::string twin = folder.Write("prefix/lib/quillon/QxImgTool.dll", "twin");
  ASSERT_EQ(chmod(twin.c_str(), 0555), 0);
  folder.Write("prefix/share/quillon/Colors.ini", "colours");
  folder.Write("prefix/share/quillon/ColorConfigs/sRGB.icc", "profile");
  EXPECT_TRUE(PrepareProgramFolder(files, folder.Path("mine"), folder.Path("prefix/bin")));
  EXPECT_THAT(folder.Names("mine"), ElementsAre("ColorConfigs", "Colors.ini", "QxImgTool.dll"));
  EXPECT_EQ(folder.Read("mine/ColorConfigs/sRGB.icc"), "profile");
  EXPECT_EQ(access(folder.Path("mine/QxImgTool.dll").c_str(), X_OK), 0);
}

TEST_F(ProgramFolderTest, FollowsTheInstalledFilesAndKeepsTheUsers) {
  folder.Write("prefix/lib/quillon/QxImgTool.dll", "old twin");
  folder.Write("prefix/share/quillon/Colors.ini", "given");
  ASSERT_TRUE(PrepareProgramFolder(files, folder.Path("mine"), folder.Path("prefix/bin")));
  folder.Write("mine/Colors.ini", "the user's");
  folder.Write("mine/Tmp.jpg", "work");
  folder.Write("prefix/lib/quillon/QxImgTool.dll", "the new twin");
  const int copies = world.faults.Count(testing::DiskCall::OpenNew);
  EXPECT_TRUE(PrepareProgramFolder(files, folder.Path("mine"), folder.Path("prefix/bin")));
  EXPECT_EQ(world.faults.Count(testing::DiskCall::OpenNew), copies + 1);
  EXPECT_EQ(folder.Read("mine/QxImgTool.dll"), "the new twin");
  EXPECT_EQ(folder.Read("mine/Colors.ini"), "the user's");
  EXPECT_EQ(folder.Read("mine/Tmp.jpg"), "work");
}

TEST_F(ProgramFolderTest, APortableFolderSuppliesNoWorkFiles) {
  for (const char* name : {"QxImgTool.dll", "QxImgTool.exe", "QxBackImg.exe", "quillon", "Tmp.jpg", "Ops.txt",
                           "Colors.ini", "Images/1.jpg", "ColorConfigs/sRGB.icc", "quillon.lock"}) {
    folder.Write(std::string("portable/") + name, name);
  }
  EXPECT_TRUE(PrepareProgramFolder(files, folder.Path("mine"), folder.Path("portable")));
  EXPECT_THAT(folder.Names("mine"), ElementsAre("ColorConfigs", "Colors.ini", "QxBackImg.exe", "QxImgTool.dll"));
}

TEST_F(ProgramFolderTest, AProgramFolderOfItsOwnIsOnlySwept) {
  folder.Write("app/QxImgTool.dll", "twin");
  folder.Write("app/.Tmp.jpg.quillon-000000", "left");
  EXPECT_TRUE(PrepareProgramFolder(files, folder.Path("app"), folder.Path("app")));
  EXPECT_THAT(folder.Names("app"), ElementsAre("QxImgTool.dll"));
}

TEST_F(ProgramFolderTest, OneFileThatCannotBeCopiedDoesNotKeepTheOthersAway) {
  folder.Write("prefix/lib/quillon/A.dll", "a");
  folder.Write("prefix/lib/quillon/B.dll", "b");
  fs::create_directories(folder.Path("mine/A.dll"));
  EXPECT_FALSE(PrepareProgramFolder(files, folder.Path("mine"), folder.Path("prefix/bin")));
  EXPECT_EQ(folder.Read("mine/B.dll"), "b");
}

}  // namespace
}  // namespace quillon::host::posix
