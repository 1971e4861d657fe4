// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "batch/file_records.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "host/testing/temp_folder.h"

namespace quillon::batch {
namespace {

const std::string kOdd("/in/\xFF\n.jpg");

class FileRecordsTest : public testing::Test {
 protected:
  host::testing::TempFolder folder_;
  std::string path_ = folder_.Path("records");
};

TEST_F(FileRecordsTest, KnowWhatWasTold) {
  FileRecords records(path_);
  EXPECT_FALSE(records.Handled(kOdd));
  EXPECT_TRUE(records.TellHandled(kOdd));
  EXPECT_FALSE(records.TellHandled(kOdd));
  EXPECT_TRUE(records.Handled(kOdd));
  EXPECT_EQ(records.SourceOf("/out/a.jpg"), std::nullopt);
  records.TellMade("/out/a.jpg", kOdd);
  EXPECT_EQ(records.SourceOf("/out/a.jpg"), kOdd);
  EXPECT_TRUE(records.Complete());
}

TEST_F(FileRecordsTest, HandOutEverySource) {
  FileRecords records(path_);
  records.TellHandled(kOdd);
  records.TellHandled("/in/b.jpg");
  records.TellMade("/out/a.jpg", kOdd);
  std::set<std::string> sources;
  records.EachSource([&](const std::string& source) { sources.insert(source); });
  EXPECT_EQ(sources, (std::set<std::string>{kOdd, "/in/b.jpg"}));
}

// A file may be a source and an output at once.
TEST_F(FileRecordsTest, PartSourcesFromOutputs) {
  FileRecords records(path_);
  records.TellMade("/a.jpg", "/b.jpg");
  EXPECT_TRUE(records.TellHandled("/a.jpg"));
  EXPECT_EQ(records.SourceOf("/a.jpg"), "/b.jpg");
  EXPECT_TRUE(records.Complete());
}

TEST_F(FileRecordsTest, LeaveNothingBehind) {
  { FileRecords(path_).TellHandled(kOdd); }
  EXPECT_TRUE(folder_.Names("").empty());
}

TEST_F(FileRecordsTest, WithoutAFileTheyAreNotComplete) {
  FileRecords records(folder_.Path("missing/records"));
  EXPECT_FALSE(records.Complete());
  records.TellHandled(kOdd);
  EXPECT_FALSE(records.Handled(kOdd));
  EXPECT_FALSE(records.Complete());
}

// Other bytes under the records stand for a disk that failed.
TEST_F(FileRecordsTest, WhatWasLostIsNoticed) {
  FileRecords records(path_);
  for (int i = 0; i < 20'000; ++i) records.TellHandled("/in/" + std::to_string(i));
  EXPECT_TRUE(records.Complete());
  std::fstream(path_, std::ios::in | std::ios::out | std::ios::binary).seekp(40'000) << std::string(400'000, 'x');
  EXPECT_FALSE(records.Complete());
}

}  // namespace
}  // namespace quillon::batch
