// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/status.h"

#include <cerrno>

namespace quillon::host {
namespace {

struct Known {
  int error;
  Problem problem;
  const char* why;
};

constexpr Known kKnown[] = {
    {ENOSPC, Problem::DiskFull, "磁盘空间不足"},
    {EDQUOT, Problem::DiskFull, "磁盘配额已用完"},
    {EFBIG, Problem::DiskFull, "文件超出磁盘允许的大小"},
    {EACCES, Problem::Denied, "没有访问权限"},
    {EPERM, Problem::Denied, "系统不允许此操作"},
    {EROFS, Problem::Denied, "磁盘是只读的"},
    {ETXTBSY, Problem::Denied, "文件正在运行"},
    {EBUSY, Problem::Denied, "文件正被占用"},
    {ENOENT, Problem::Missing, "文件或文件夹不存在"},
    {ENOTDIR, Problem::Missing, "路径中有一级不是文件夹"},
    {ENAMETOOLONG, Problem::Other, "文件名或路径太长"},
    {EINVAL, Problem::Other, "磁盘不接受此文件名或操作"},
    {EILSEQ, Problem::Other, "磁盘不接受此文件名"},
    {EISDIR, Problem::Other, "此路径是文件夹，不是文件"},
    {EEXIST, Problem::Other, "同名文件已存在"},
    {ENOTEMPTY, Problem::Other, "文件夹不是空的"},
    {ELOOP, Problem::Other, "链接太多或互相指向"},
    {EXDEV, Problem::Other, "不在同一个磁盘上"},
    {EMLINK, Problem::Other, "链接数已达上限"},
    {EIO, Problem::Other, "磁盘读写出错"},
    {ENXIO, Problem::Other, "设备不存在"},
    {ENODEV, Problem::Other, "设备不存在"},
    {ENOMEM, Problem::Other, "内存不足"},
    {EMFILE, Problem::Other, "打开的文件太多"},
    {ENFILE, Problem::Other, "系统打开的文件太多"},
    {EAGAIN, Problem::Other, "系统资源暂时不足"},
    {ESTALE, Problem::Other, "网络文件夹已失效"},
    {ETIMEDOUT, Problem::Other, "网络连接超时"},
    {ENOTCONN, Problem::Other, "网络连接已断开"},
    {EHOSTDOWN, Problem::Other, "网络主机无响应"},
    {ENOTSUP, Problem::Unsupported, "磁盘不支持此操作"},
    {ENOSYS, Problem::Unsupported, "系统不支持此操作"},
};

}  // namespace

Status Status::FromErrno(int error) {
  if (error == 0) return Ok();
  for (const Known& known : kKnown) {
    if (known.error == error) return {known.problem, known.why};
  }
  return {Problem::Other, "系统错误 " + std::to_string(error)};
}

}  // namespace quillon::host
