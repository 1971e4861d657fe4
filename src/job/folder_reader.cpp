// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/folder_reader.h"

#include <atomic>
#include <utility>

#include "job/program.h"

namespace quillon::job {
namespace {

constexpr double kPumpInterval = 0.01;  // seconds
constexpr double kLongestSilence = 30;

}  // namespace

// Shared with the errand, which may outlive its caller.
struct FolderReader::Reading {
  FolderContent content;
  std::atomic<std::size_t> seen = 0;
};

FolderReader::FolderReader(Program& program, const std::string& path)
    : program_(program),
      heard_(program.host.clock.Seconds()),
      reading_(std::make_shared<Reading>()),
      errand_(WorkOf(reading_, program.host.files, path)) {}

host::Errand::Work FolderReader::WorkOf(std::shared_ptr<Reading> reading, const host::Files& files, std::string path) {
  return [reading = std::move(reading), path = std::move(path), &files](const std::atomic<bool>& stop) {
    FolderContent& content = reading->content;
    content.facts = files.Look(path);
    if (!content.facts || content.facts->kind != host::FileKind::Folder) return;
    content.listed = files.ListFolder(path, [&](const host::FolderEntry& entry) {
      if (stop) return false;
      content.entries.push_back(entry);
      ++reading->seen;
      return true;
    });
  };
}

FolderContent FolderReader::Take() {
  std::size_t seen = 0;
  while (!errand_.Done(kPumpInterval)) {
    program_.host.pump.Turn();
    const double now = program_.host.clock.Seconds();
    if (const std::size_t newest = reading_->seen; newest != seen) {
      seen = newest;
      heard_ = now;
    }
    const bool silent = now - heard_ >= kLongestSilence;
    if (!program_.flags.StopRequested && !silent) continue;
    FolderContent given;
    given.listed =
        silent ? host::Status(host::Problem::Other, "没有响应") : host::Status(host::Problem::Stopped, "已停止");
    return given;
  }
  return std::move(reading_->content);
}

}  // namespace quillon::job
