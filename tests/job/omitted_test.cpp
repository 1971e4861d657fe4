// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/omitted_folders.h"

#include "program_fixture.h"

namespace quillon::job {
namespace {

class OmittedTest : public ProgramTest {
 protected:
  OmittedFolders omitted{program};
  std::string Folder(const std::string& name) {
    const std::string path = world.folder.Path(name);
    EXPECT_TRUE(world.files.MakeFolders(path));
    return path;
  }
};

TEST_F(OmittedTest, LinesThatStillAreFoldersAreTaken) {
  const std::string here = Folder("here");
  const std::string there = Folder("with blank");
  const std::string file = world.folder.Write("file", "x");
  WriteApp("OmitSubfolds.dat", here + "\r\n/gone/away\r\n" + file + "\r\n\r\n" + there);
  omitted.Read();
  EXPECT_EQ(flags.OmittedFolders, here + "\r\n" + there + "\r\n");
  EXPECT_FALSE(omitted.Take(here));
  EXPECT_FALSE(omitted.Take(there));
  EXPECT_TRUE(omitted.Take(file));
}

TEST_F(OmittedTest, NoFileOmitsNothing) {
  omitted.Read();
  EXPECT_EQ(flags.OmittedFolders, "");
  EXPECT_TRUE(omitted.Take("/a"));
}

// A folder is a whole line, never the end of a longer one.
TEST_F(OmittedTest, PartsOfLinesDoNotCount) {
  EXPECT_TRUE(omitted.Take("/x/a/b"));
  EXPECT_TRUE(omitted.Take("/a/b"));
  EXPECT_FALSE(omitted.Take("/a/b"));
}

TEST_F(OmittedTest, WrittenBackAndEmptied) {
  omitted.Take("/a");
  omitted.Take("/b c");
  EXPECT_TRUE(omitted.WriteBack());
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), "/a\r\n/b c\r\n");
  EXPECT_FALSE(AppHas("OmitSubfolds.txt"));
  EXPECT_EQ(flags.OmittedFolders, "");
  EXPECT_TRUE(omitted.Take("/a"));
}

TEST_F(OmittedTest, AFailedWriteKeepsTheOldList) {
  WriteApp("OmitSubfolds.dat", "/old\r\n");
  omitted.Take("/a");
  world.faults.Set({.call = host::testing::DiskCall::Rename, .error = EIO});
  EXPECT_FALSE(omitted.WriteBack());
  EXPECT_EQ(world.faults.Fired(), 1);
  EXPECT_EQ(world.folder.Read("app/OmitSubfolds.dat"), "/old\r\n");
}

}  // namespace
}  // namespace quillon::job
