// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/sound_result.h"

#include "imaging/codecs/open_picture.h"

namespace quillon::tools {

bool IsWholePdf(const host::Files& files, const std::string& path) {
  constexpr std::uint64_t kMost = 256U << 20;
  constexpr std::size_t kTail = 1024;
  const auto facts = files.Stat(path);
  if (facts && facts->size > kMost) return true;
  std::string bytes;
  if (!files.ReadFile(path, bytes) || !bytes.starts_with("%PDF-")) return false;
  return bytes.find("%%EOF", bytes.size() > kTail ? bytes.size() - kTail : 0) != std::string::npos;
}

bool IsPicture(const host::Files& files, const std::string& path) {
  const host::Status opened = imaging::Guarded({host::Problem::Damaged, ""}, [&] {
    imaging::OpenedPicture picture;
    return imaging::OpenPicture(files, path, {}, {}, picture);
  });
  // One that is too large for this process is one all the same.
  return opened || opened.GetProblem() == host::Problem::TooLarge;
}

}  // namespace quillon::tools
