// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/disk_full.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "host/testing/scripted_boxes.h"

namespace quillon::host {
namespace {

using testing::ScriptedBoxes;

// A save that meets a full disk so many times.
struct FullFor {
  int times;
  int saves = 0;

  Status operator()() { return ++saves <= times ? Status::FromErrno(ENOSPC) : Status::Ok(); }
};

TEST(DiskFull, BoxNamesTheDrive) {
  EXPECT_EQ(DiskFullBox("d:/out/a.jpg", DiskFullWording::Comma).text, "D盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("d:/out/a.jpg", DiskFullWording::Exclamation).text, "D盘空间不足！请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("/out/a.jpg", DiskFullWording::Comma).text, "/盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("盘/a.jpg", DiskFullWording::Comma).text, "盘盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("\xC5\xCC/a.jpg", DiskFullWording::Comma).text,
            "\xEF\xBF\xBD盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("", DiskFullWording::Comma).text, "盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("/a", DiskFullWording::Comma).type, 21);
  EXPECT_EQ(DiskFullBox("/a", DiskFullWording::Comma).title, "消息");
}

TEST(DiskFull, RetriesWithoutLimit) {
  ScriptedBoxes boxes;
  boxes.Answer("空间不足", Reply::Retry);
  FullFor save{500};
  bool stopped = false;
  const Status status = SaveAsking(
      boxes, "/a.jpg", DiskFullWording::Comma, [&] { stopped = true; }, [&] { return save(); });
  EXPECT_TRUE(status);
  EXPECT_EQ(save.saves, 501);
  EXPECT_EQ(boxes.Count("/盘空间不足，请释放空间后重试保存！"), 500);
  EXPECT_FALSE(stopped);
}

TEST(DiskFull, CancelStops) {
  ScriptedBoxes boxes;
  boxes.Answer("空间不足", Reply::Retry, 2);
  boxes.Answer("空间不足", Reply::Cancel);
  FullFor save{100};
  int stops = 0;
  const Status status = SaveAsking(
      boxes, "/a.jpg", DiskFullWording::Exclamation, [&] { ++stops; }, [&] { return save(); });
  EXPECT_TRUE(status.DiskFull());
  EXPECT_EQ(save.saves, 3);
  EXPECT_EQ(stops, 1);
}

TEST(DiskFull, OtherFailuresAreNotAskedAbout) {
  ScriptedBoxes boxes;
  int stops = 0;
  const Status status = SaveAsking(
      boxes, "/a.jpg", DiskFullWording::Comma, [&] { ++stops; }, [] { return Status::FromErrno(EIO); });
  EXPECT_FALSE(status);
  EXPECT_TRUE(boxes.All().empty());
  EXPECT_EQ(stops, 0);
}

TEST(DiskFull, AFailureAfterARetryComesBackUnasked) {
  ScriptedBoxes boxes;
  boxes.Answer("空间不足", Reply::Retry);
  int saves = 0;
  const Status status = SaveAsking(boxes, "/a.jpg", DiskFullWording::Comma, {},
                                   [&] { return Status::FromErrno(++saves == 1 ? EDQUOT : EIO); });
  EXPECT_EQ(status.GetProblem(), Problem::Other);
  EXPECT_EQ(boxes.All().size(), 1u);
}

}  // namespace
}  // namespace quillon::host
