// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/disk_monitor.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "base/path_text.h"
#include "job/list/disk_timeout.h"
#include "job/program.h"

namespace quillon::job {
namespace {

constexpr double kFreshFor = 0.5;  // seconds
constexpr std::size_t kFoldersRemembered = 1000;
constexpr std::uint64_t kReadAtOnce = 1 << 20;  // bytes; larger files are only opened

constexpr const char* kSilentFolder = "没有响应";
constexpr const char* kSilentOutput = "输出目录没有响应，已跳过；请检查磁盘或网络连接后重新处理";

// The folder and all above it, from the top.
std::vector<std::string> FromTheTop(const std::string& folder) {
  std::vector<std::string> all;
  for (std::size_t end = folder.find('/', 1); end != std::string::npos; end = folder.find('/', end + 1)) {
    all.push_back(folder.substr(0, end));
  }
  all.push_back(folder);
  return all;
}

bool IsBelow(const std::string& folder, const std::string& place) {
  return folder == place || (folder.starts_with(place) && (place == "/" || folder[place.size()] == '/'));
}

}  // namespace

// Shared with the errand, which may outlive its caller.
struct DiskMonitor::Asking {
  std::vector<std::string> folders;
  std::string path;
  std::atomic<std::size_t> heard = 0;  // folders that have answered
  bool here = true;                    // see host::Files::IsLocalDisk
};

DiskMonitor::DiskMonitor(Program& program) : program_(program) {}

DiskMonitor::~DiskMonitor() = default;

host::Status DiskMonitor::AskFile(const std::string& path) {
  return Ask(base::SplitPath(path).folder, path, host::kDiskUnresponsive);
}

host::Status DiskMonitor::AskFolder(const std::string& folder) { return Ask(folder, folder, kSilentFolder); }

host::Status DiskMonitor::AskForCut(const std::string& source) {
  if (host::Status answered = AskFile(source); !answered || program_.form1.ChOver.On()) return answered;
  const std::string out = program_.form1.LOutDir.Value();
  return Ask(out, out, kSilentOutput);
}

bool DiskMonitor::Silent(const std::string& path) { return SilentBelow(base::SplitPath(path).folder); }

host::Status DiskMonitor::Ask(const std::string& folder, const std::string& path, const char* sentence) {
  if (SilentBelow(folder)) return {host::Problem::Other, sentence};
  if (Fresh(folder)) return host::Status::Ok();
  auto asking = std::make_shared<Asking>();
  asking->folders = FromTheTop(folder);
  asking->path = path;
  DiskTimeout patience(program_);
  auto errand =
      std::make_unique<host::BackgroundCall>([asking, &files = program_.host.files](const std::atomic<bool>& stop) {
        for (const std::string& place : asking->folders) {
          if (stop) return;
          static_cast<void>(files.Stat(place));
          ++asking->heard;
        }
        // What a network disk tells of a file may be from memory; it is asked anew when the file is opened.
        std::string begin;
        if (!stop) static_cast<void>(files.ReadFile(asking->path, begin, kReadAtOnce));
        if (!stop) asking->here = files.IsLocalDisk(asking->folders.back());
      });
  host::Status answered = patience.Await(*errand, asking->heard);
  if (answered) {
    Note(folder, asking->here);
  } else if (answered.GetProblem() != host::Problem::Stopped) {
    answered = {host::Problem::Other, sentence};
    silent_.push_back(
        {asking->folders[std::min<std::size_t>(asking->heard, asking->folders.size() - 1)], std::move(errand)});
    // What is planned may lie there as well.
    program_.images.PlanCrops({});
    program_.images.PlanMeasures({});
  }
  return answered;
}

bool DiskMonitor::Fresh(const std::string& folder) const {
  const auto found = answered_.find(folder);
  if (found == answered_.end() || !found->second.here) return false;
  return program_.host.clock.Seconds() - found->second.when < kFreshFor;
}

// A question that comes back in the end is the answer that was waited for.
bool DiskMonitor::SilentBelow(const std::string& folder) {
  std::erase_if(silent_, [](const Silence& silence) { return silence.errand->Done(); });
  return std::any_of(silent_.begin(), silent_.end(),
                     [&](const Silence& silence) { return IsBelow(folder, silence.place); });
}

void DiskMonitor::Note(const std::string& folder, bool here) {
  if (answered_.size() >= kFoldersRemembered) answered_.clear();
  answered_[folder] = {program_.host.clock.Seconds(), here};
}

}  // namespace quillon::job
