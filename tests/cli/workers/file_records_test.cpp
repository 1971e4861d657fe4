// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/workers/file_records.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <utility>
#include <vector>

#include "host/testing/temp_folder.h"

namespace quillon::cli {
namespace {

using job::Wrote;

const std::string kOdd("/in/\xFF\n.jpg");

class FileRecordsTest : public testing::Test {
 protected:
  host::testing::TempFolder folder_;
  std::string path_ = folder_.Path("records");
};

TEST_F(FileRecordsTest, ReturnWhatWasRecorded) {
  FileRecords records(path_);
  EXPECT_FALSE(records.Handled(kOdd));
  EXPECT_TRUE(records.NoteHandled(kOdd, Wrote::No));
  EXPECT_FALSE(records.NoteHandled(kOdd, Wrote::No));
  EXPECT_TRUE(records.Handled(kOdd));
  EXPECT_EQ(records.SourceOf("/out/a.jpg"), std::nullopt);
  records.NoteOutput("/out/a.jpg", kOdd);
  EXPECT_EQ(records.SourceOf("/out/a.jpg"), kOdd);
  EXPECT_TRUE(records.Complete());
}

TEST_F(FileRecordsTest, ListEverySource) {
  FileRecords records(path_);
  const std::vector<std::pair<std::string, Wrote>> recorded{{kOdd, Wrote::Yes},        {"/in/b.jpg", Wrote::No},
                                                            {"/in/c.jpg", Wrote::No},  {"/in/c.jpg", Wrote::Yes},
                                                            {"/in/d.jpg", Wrote::Yes}, {"/in/d.jpg", Wrote::No}};
  for (const auto& [source, wrote] : recorded) records.NoteHandled(source, wrote);
  records.NoteOutput("/out/a.jpg", kOdd);
  std::map<std::string, Wrote> sources;
  records.EachSource([&](const std::string& source, Wrote wrote) { sources[source] = wrote; });
  EXPECT_EQ(sources,
            (std::map<std::string, Wrote>{
                {kOdd, Wrote::Yes}, {"/in/b.jpg", Wrote::No}, {"/in/c.jpg", Wrote::Yes}, {"/in/d.jpg", Wrote::Yes}}));
  EXPECT_TRUE(records.Complete());
}

// A file may be a source and an output at once.
TEST_F(FileRecordsTest, PartSourcesFromOutputs) {
  FileRecords records(path_);
  records.NoteOutput("/a.jpg", "/b.jpg");
  EXPECT_TRUE(records.NoteHandled("/a.jpg", Wrote::No));
  EXPECT_EQ(records.SourceOf("/a.jpg"), "/b.jpg");
  EXPECT_TRUE(records.Complete());
}

TEST_F(FileRecordsTest, LeaveNoFiles) {
  { FileRecords(path_).NoteHandled(kOdd, Wrote::No); }
  EXPECT_TRUE(folder_.Names("").empty());
}

TEST_F(FileRecordsTest, WithoutAFileTheyAreNotComplete) {
  FileRecords records(folder_.Path("missing/records"));
  EXPECT_FALSE(records.Complete());
  records.NoteHandled(kOdd, Wrote::No);
  EXPECT_FALSE(records.Handled(kOdd));
  EXPECT_FALSE(records.Complete());
}

// Other bytes under the records stand for a disk that failed.
TEST_F(FileRecordsTest, WhatWasLostIsNoticed) {
  FileRecords records(path_);
  for (int i = 0; i < 20'000; ++i) records.NoteHandled("/in/" + std::to_string(i), Wrote::No);
  EXPECT_TRUE(records.Complete());
  std::fstream(path_, std::ios::in | std::ios::out | std::ios::binary).seekp(40'000) << std::string(400'000, 'x');
  EXPECT_FALSE(records.Complete());
}

}  // namespace
}  // namespace quillon::cli
