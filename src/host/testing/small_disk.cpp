// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/testing/small_disk.h"

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace quillon::host::testing {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPage = 4096;

}  // namespace

SmallDisk::SmallDisk(std::string folder, std::size_t pages, Access access) : folder_(std::move(folder)) {
  fs::create_directories(folder_);
  const std::string size = "size=" + std::to_string(pages * kPage);
  const unsigned long flags = access == Access::ReadOnly ? MS_RDONLY : 0;
  if (mount("tmpfs", folder_.c_str(), "tmpfs", flags, size.c_str()) != 0) why_ = std::strerror(errno);
}

SmallDisk::~SmallDisk() {
  if (Mounted()) umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::FillUntil(std::size_t pages) const {
  Free();
  struct statvfs facts {};
  statvfs(folder_.c_str(), &facts);
  const std::size_t free = facts.f_bavail * facts.f_bsize / kPage;
  if (free > pages) std::ofstream(Ballast()) << std::string((free - pages) * kPage, 'x');
}

void SmallDisk::Free() const { fs::remove(Ballast()); }

std::vector<std::string> SmallDisk::Names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder_)) {
    if (entry.path() != Ballast()) names.push_back(entry.path().filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace quillon::host::testing
