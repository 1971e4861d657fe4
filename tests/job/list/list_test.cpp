// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/file_list.h"

#include <gtest/gtest.h>

#include <vector>

#include "controls/window.h"
#include "job/settings/lists.h"

namespace quillon::job {
namespace {

using Change = controls::Grid::Change;

class FileListTest : public ::testing::Test {
 protected:
  controls::Window window{"Form1", ""};
  controls::Grid grid{window, "MSF", {}, ListHeaders()};
  FileList list{grid};

  void Add(const std::string& path, int width = 10, int height = 20, std::uint64_t bytes = 2048) {
    FileRow row;
    row.width = width;
    row.height = height;
    row.bytes = bytes;
    row.dpi = 72;
    list.AppendPath(path, std::move(row));
  }
  std::vector<std::string> Cells(std::size_t row) {
    std::vector<std::string> cells;
    for (std::size_t column = 0; column < 8; ++column) cells.push_back(list.Cell(row, column));
    return cells;
  }
};

TEST_F(FileListTest, RowsHaveEightColumns) {
  Add("/pics/a.b.jpg", 300, 200, 85350);
  EXPECT_EQ(Cells(0), (std::vector<std::string>{"a.b", "jpg", "/pics", "300", "200", "83.35", "", "72"}));
  EXPECT_EQ(list.Cell(0, 8), "");
  EXPECT_EQ(grid.Rows(), 2u);
}

TEST_F(FileListTest, SizesAreInKbWithTwoDecimals) {
  EXPECT_EQ(KbText(0), "0");
  EXPECT_EQ(KbText(512), "0.5");
  EXPECT_EQ(KbText(1024), "1");
  EXPECT_EQ(KbText(1), "0");
  EXPECT_EQ(KbText(1029), "1");
  EXPECT_EQ(KbText(1034), "1.01");
}

TEST_F(FileListTest, PagesAreShownIfTheColumnIsHeadedByThem) {
  FileRow row;
  row.pages = 3;
  list.AppendPath("/pics/a.gif", std::move(row));
  EXPECT_EQ(list.Cell(0, 6), "");
  list.SetResult(0, Result::Written, "", 512);
  EXPECT_EQ(list.Cell(0, 6), "0.5");
  grid.SetHeaders(ListHeaders(CutMode::Gif));
  EXPECT_EQ(list.Cell(0, 6), "3");
}

TEST_F(FileListTest, AResultIsKeptWithItsReason) {
  Add("/pics/a.jpg");
  list.SetResult(0, Result::None, "坏了", 0);
  EXPECT_EQ(list.Row(0).result, Result::None);
  EXPECT_EQ(list.Row(0).why, "坏了");
  EXPECT_EQ(list.Cell(0, 6), "");
}

TEST_F(FileListTest, PathsComeBackByteForByte) {
  const std::vector<std::string> paths{"/a/b.jpg", "/b.jpg",         "/a/noextension", "/a/.hidden",
                                       "/a/ends.", "/a/x.tar.gz",    "/a/%d[1] -.png", "/a/new\nline.jpg",
                                       "/a/..jpg", "/a/\xD6\xD0.jpg"};
  for (const std::string& path : paths) Add(path);
  for (std::size_t i = 0; i < paths.size(); ++i) EXPECT_EQ(list.Row(i).Path(), paths[i]);
}

TEST_F(FileListTest, BytesThatAreNoTextAreShownAsSuch) {
  Add("/\xFF/\xD6\xD0.jpg");
  EXPECT_EQ(list.Cell(0, 0), "\uFFFD\uFFFD");
  EXPECT_EQ(list.Cell(0, 2), "/\uFFFD");
}

TEST_F(FileListTest, MaximaOnlyGrowUntilCleared) {
  EXPECT_EQ(list.StatusText(), "");
  Add("/a/1.jpg", 300, 20, 1024);
  Add("/a/2.jpg", 10, 400, 4096);
  EXPECT_EQ(list.StatusText(), "文件数：2  最大值：300x400像素  4kb");
  list.Remove(1);
  EXPECT_EQ(list.StatusText(), "文件数：1  最大值：300x400像素  4kb");
  list.Remove(0);
  EXPECT_EQ(list.StatusText(), "文件数：0  最大值：300x400像素  4kb");
  list.Clear();
  EXPECT_EQ(list.StatusText(), "");
  Add("/a/3.jpg", 1, 2, 1024);
  EXPECT_EQ(list.StatusText(), "文件数：1  最大值：1x2像素  1kb");
}

TEST_F(FileListTest, ObserversAreNotified) {
  std::vector<std::pair<Change, std::size_t>> notified;
  grid.SetRowObserver([&](Change change, std::size_t row) { notified.emplace_back(change, row); });
  Add("/a/1.jpg");
  Add("/a/2.jpg");
  list.SetResult(1, Result::Written, "", 1);
  list.Remove(0);
  list.Clear();
  const std::vector<std::pair<Change, std::size_t>> expected{
      {Change::Appended, 0}, {Change::Appended, 1}, {Change::Edited, 1}, {Change::Removed, 0}, {Change::Reset, 0}};
  EXPECT_EQ(notified, expected);
}

TEST_F(FileListTest, RowsOfAFolderShareItsText) {
  Add("/a/1.jpg");
  Add("/a/2.jpg");
  Add("/b/3.jpg");
  EXPECT_EQ(list.Row(0).folder.get(), list.Row(1).folder.get());
  EXPECT_NE(list.Row(1).folder.get(), list.Row(2).folder.get());
}

TEST_F(FileListTest, ThreeHundredThousandRows) {
  for (int i = 0; i < 300000; ++i) Add("/a/" + std::to_string(i) + ".jpg", i);
  EXPECT_EQ(grid.Rows(), 300001u);
  EXPECT_EQ(list.Cell(299999, 0), "299999");
  EXPECT_EQ(list.StatusText(), "文件数：300000  最大值：299999x20像素  2kb");
}

}  // namespace
}  // namespace quillon::job
