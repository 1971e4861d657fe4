// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/saver.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "host/posix/posix_disk.h"
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

TEST(SaverBox, BoxNamesTheDrive) {
  EXPECT_EQ(DiskFullBox("d:/out/a.jpg").text, "D盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("d:/out/a.jpg", {.wording = DiskFullWording::Exclamation}).text,
            "D盘空间不足！请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("/out/a.jpg").text, "/盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("盘/a.jpg").text, "盘盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("\xC5\xCC/a.jpg").text, "\xEF\xBF\xBD盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("").text, "盘空间不足，请释放空间后重试保存！");
  EXPECT_EQ(DiskFullBox("/a").type, 21);
  EXPECT_EQ(DiskFullBox("/a").title, "消息");
}

class SaverTest : public ::testing::Test {
 protected:
  ScriptedBoxes boxes;
  posix::PosixDisk disk;
  Files files{disk};
  int stops = 0;
  Saver saver{boxes, files, [this] { ++stops; }};
};

TEST_F(SaverTest, RetriesWithoutLimit) {
  boxes.Answer("空间不足", Reply::Retry);
  FullFor save{500};
  const Status status = saver.Save("/a.jpg", [&] { return save(); });
  EXPECT_TRUE(status);
  EXPECT_EQ(save.saves, 501);
  EXPECT_EQ(boxes.Count("/盘空间不足，请释放空间后重试保存！"), 500);
  EXPECT_EQ(stops, 0);
}

TEST_F(SaverTest, CancelStops) {
  boxes.Answer("空间不足", Reply::Retry, 2);
  boxes.Answer("空间不足", Reply::Cancel);
  FullFor save{100};
  const Status status = saver.Save("/a.jpg", [&] { return save(); }, {.wording = DiskFullWording::Exclamation});
  EXPECT_TRUE(status.DiskFull());
  EXPECT_EQ(save.saves, 3);
  EXPECT_EQ(stops, 1);
  EXPECT_EQ(boxes.Count("/盘空间不足！请释放空间后重试保存！"), 3);
}

TEST_F(SaverTest, ACancelMayStopNothing) {
  boxes.Answer("空间不足", Reply::Cancel);
  const Saver quiet(boxes, files, {});
  EXPECT_TRUE(quiet.Save("/a.jpg", [] { return Status::FromErrno(EFBIG); }).DiskFull());
}

TEST_F(SaverTest, OtherFailuresAreNotAskedAbout) {
  const Status status = saver.Save("/a.jpg", [] { return Status::FromErrno(EIO); });
  EXPECT_FALSE(status);
  EXPECT_TRUE(boxes.All().empty());
  EXPECT_EQ(stops, 0);
}

TEST_F(SaverTest, AFailureAfterARetryComesBackUnasked) {
  boxes.Answer("空间不足", Reply::Retry);
  int saves = 0;
  const Status status = saver.Save("/a.jpg", [&] { return Status::FromErrno(++saves == 1 ? EDQUOT : EIO); });
  EXPECT_EQ(status.GetProblem(), Problem::Other);
  EXPECT_EQ(boxes.All().size(), 1u);
}

}  // namespace
}  // namespace quillon::host
