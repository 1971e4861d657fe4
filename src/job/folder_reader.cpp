// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/folder_reader.h"

#include <atomic>
#include <memory>
#include <utility>

#include "host/errand.h"
#include "job/program.h"

namespace quillon::job {
namespace {

constexpr double kPumpInterval = 0.01;  // seconds
constexpr double kLongestSilence = 30;

// Shared with the errand, which may outlive its caller.
struct Reading {
  FolderContent content;
  std::atomic<std::size_t> seen = 0;
};

void Read(const host::Files& files, const std::string& path, Reading& reading, const std::atomic<bool>& stop) {
  FolderContent& content = reading.content;
  content.facts = files.Look(path);
  if (!content.facts || content.facts->kind != host::FileKind::Folder) return;
  content.listed = files.ListFolder(path, [&](const host::FolderEntry& entry) {
    if (stop) return false;
    content.entries.push_back(entry);
    ++reading.seen;
    return true;
  });
}

}  // namespace

FolderContent ReadFolder(Program& program, const std::string& path) {
  const auto reading = std::make_shared<Reading>();
  const host::Files& files = program.host.files;
  const host::Errand errand(
      [reading, path, &files](const std::atomic<bool>& stop) { Read(files, path, *reading, stop); });
  double heard = program.host.clock.Seconds();
  std::size_t seen = 0;
  while (!errand.Done(kPumpInterval)) {
    program.host.pump.Turn();
    const double now = program.host.clock.Seconds();
    if (const std::size_t newest = reading->seen; newest != seen) {
      seen = newest;
      heard = now;
    }
    const bool silent = now - heard >= kLongestSilence;
    if (!program.flags.StopRequested && !silent) continue;
    FolderContent given;
    given.listed =
        silent ? host::Status(host::Problem::Other, "没有响应") : host::Status(host::Problem::Stopped, "已停止");
    return given;
  }
  return std::move(reading->content);
}

}  // namespace quillon::job
