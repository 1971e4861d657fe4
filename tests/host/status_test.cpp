// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/status.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "base/utf8.h"

namespace quillon::host {
namespace {

TEST(Status, StartsFine) {
  const Status status;
  EXPECT_TRUE(status);
  EXPECT_EQ(status.GetProblem(), Problem::None);
  EXPECT_EQ(status.Why(), "");
  EXPECT_TRUE(Status::FromErrno(0));
}

TEST(Status, DistinguishesProblems) {
  struct Row {
    int error;
    Problem problem;
    const char* why;
  };
  const Row rows[] = {
      {ENOSPC, Problem::DiskFull, "磁盘空间不足"},
      {EDQUOT, Problem::DiskFull, "磁盘配额已用完"},
      {EFBIG, Problem::DiskFull, "文件超出磁盘允许的大小"},
      {EACCES, Problem::Denied, "没有访问权限"},
      {EPERM, Problem::Denied, "系统不允许此操作"},
      {EROFS, Problem::Denied, "磁盘是只读的"},
      {ENOENT, Problem::Missing, "文件或文件夹不存在"},
      {ENOTDIR, Problem::Missing, "路径中有一级不是文件夹"},
      {ENAMETOOLONG, Problem::Other, "文件名或路径太长"},
      {EISDIR, Problem::Other, "此路径是文件夹，不是文件"},
      {ELOOP, Problem::Other, "链接太多或互相指向"},
      {EIO, Problem::Other, "磁盘读写出错"},
      {ENOMEM, Problem::Other, "内存不足"},
      {EMFILE, Problem::Other, "打开的文件太多"},
      {EBADF, Problem::Other, "系统错误 9"},
      {9999, Problem::Other, "系统错误 9999"},
  };
  for (const Row& row : rows) {
    const Status status = Status::FromErrno(row.error);
    EXPECT_FALSE(status) << row.error;
    EXPECT_EQ(status.GetProblem(), row.problem) << row.error;
    EXPECT_EQ(status.Why(), row.why) << row.error;
    EXPECT_EQ(status.DiskFull(), row.problem == Problem::DiskFull) << row.error;
  }
}

TEST(Status, EveryNumberHasASentence) {
  for (int error = 1; error < 140; ++error) {
    const Status status = Status::FromErrno(error);
    EXPECT_FALSE(status) << error;
    EXPECT_FALSE(status.Why().empty()) << error;
    EXPECT_TRUE(base::IsUtf8(status.Why())) << error;
  }
}

}  // namespace
}  // namespace quillon::host
