// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/list/disk_monitor.h"

#include <algorithm>
#include <set>
#include <utility>

#include "base/path_text.h"
#include "imaging/services.h"
#include "job/list/run_context.h"

namespace quillon::job {
namespace {

constexpr double kFreshFor = 0.5;  // seconds
constexpr std::size_t kFoldersRemembered = 1000;
constexpr double kAskedWhileFlushing = 5;  // seconds between two questions

// In seconds. Most disks answer at once, and a window that does not react for so short a time is not noticed.
constexpr double kFirstWait = 0.1;
constexpr double kPumpInterval = 0.01;

constexpr const char* kSilentFolder = "没有响应";
constexpr const char* kSilentOutput = "输出目录没有响应，已跳过；请检查磁盘或网络连接后重新处理";

// Returns the folder and all folders above it, from the top.
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

// --- DiskTimeout

DiskTimeout::DiskTimeout(const RunContext& context)
    : context_(context), stopped_(context.Stopped()), lastAnswer_(context.host.clock.Seconds()) {}

host::Status DiskTimeout::Await(const host::BackgroundCall& call, const std::atomic<std::size_t>& answers) {
  std::size_t before = 0;
  for (double wait = kFirstWait; !call.Done(wait); wait = kPumpInterval) {
    context_.host.pump.Turn();
    if (context_.Stopped() && !stopped_) return {host::Problem::Stopped, "已停止"};
    const double now = context_.host.clock.Seconds();
    if (const std::size_t newest = answers; newest != before) {
      before = newest;
      lastAnswer_ = now;
    }
    if (now - lastAnswer_ >= host::kDiskTimeoutSeconds) return {host::Problem::Other, "没有响应"};
  }
  return host::Status::Ok();
}

// --- FolderReader

// Shared with the call, which may outlive its caller.
struct FolderReader::Reading {
  FolderContent content;
  std::atomic<std::size_t> answers = 0;
};

FolderReader::FolderReader(const RunContext& context, const std::string& path)
    : timeout_(context), reading_(std::make_shared<Reading>()), call_(WorkOf(reading_, context.host.files, path)) {}

host::BackgroundCall::Work FolderReader::WorkOf(std::shared_ptr<Reading> reading, const host::Files& files,
                                                std::string path) {
  return [reading = std::move(reading), path = std::move(path), &files](const std::atomic<bool>& stop) {
    FolderContent& content = reading->content;
    content.facts = files.Stat(path);
    if (!content.facts || content.facts->kind != host::FileKind::Folder) return;
    content.listed = files.ListFolder(path, [&](const host::FolderEntry& entry) {
      if (stop) return false;
      content.entries.push_back(entry);
      ++reading->answers;
      return true;
    });
    for (const host::FolderEntry& entry : content.entries) {
      if (stop) return;
      if (!entry.link || entry.kind != host::FileKind::File) continue;
      if (content.realPath.empty()) content.realPath = files.RealPath(path).value_or("");
      content.targets[entry.name] = files.RealPath(base::JoinPath(path, entry.name)).value_or("");
      ++reading->answers;
    }
  };
}

FolderContent FolderReader::Await() {
  host::Status answered = timeout_.Await(call_, reading_->answers);
  if (answered) return std::move(reading_->content);
  FolderContent abandoned;
  abandoned.listed = std::move(answered);
  return abandoned;
}

// --- DiskMonitor

// Shared with the call, which may outlive its caller.
struct DiskMonitor::Asking {
  std::vector<std::string> folders;
  std::string path;
  std::atomic<std::size_t> answers = 0;  // folders that have answered
  bool local = true;                     // see host::Files::IsLocalDisk
};

DiskMonitor::DiskMonitor(const RunContext& context) : context_(context) {}

DiskMonitor::~DiskMonitor() = default;

host::Status DiskMonitor::AskFile(const std::string& path) {
  return Ask(base::SplitPath(path).folder, path, host::kDiskUnresponsive);
}

host::Status DiskMonitor::AskFolder(const std::string& folder) { return Ask(folder, folder, kSilentFolder); }

host::Status DiskMonitor::AskForCut(const std::string& source) {
  if (host::Status answered = AskFile(source); !answered || context_.window.Overwrites()) return answered;
  const std::string out = context_.window.OutputFolder();
  return Ask(out, out, kSilentOutput);
}

bool DiskMonitor::Silent(const std::string& path) { return SilentBelow(base::SplitPath(path).folder); }

host::Status DiskMonitor::Ask(const std::string& folder, const std::string& path, const char* sentence) {
  if (SilentBelow(folder)) return {host::Problem::Other, sentence};
  if (Fresh(folder)) return host::Status::Ok();
  auto asking = std::make_shared<Asking>();
  asking->folders = FromTheTop(folder);
  asking->path = path;
  DiskTimeout timeout(context_);
  auto call =
      std::make_unique<host::BackgroundCall>([asking, &files = context_.host.files](const std::atomic<bool>& stop) {
        for (const std::string& place : asking->folders) {
          if (stop) return;
          static_cast<void>(files.Stat(place));
          ++asking->answers;
        }
        // A network disk may answer a stat from its cache; it is asked again when the file is opened.
        if (!stop) static_cast<void>(files.TryOpen(asking->path));
        if (!stop) asking->local = files.IsLocalDisk(asking->folders.back());
      });
  host::Status answered = timeout.Await(*call, asking->answers);
  if (answered) {
    Note(folder, asking->local);
  } else if (answered.GetProblem() != host::Problem::Stopped) {
    answered = {host::Problem::Other, sentence};
    silent_.push_back(
        {asking->folders[std::min<std::size_t>(asking->answers, asking->folders.size() - 1)], std::move(call)});
    // Planned work may read files of the same disk.
    context_.images.PlanWork({});
    context_.images.PlanMeasures({});
  }
  return answered;
}

std::vector<host::LateFailure> DiskMonitor::Flush() {
  double asked = context_.host.clock.Seconds();
  return context_.host.files.Flush([&](const std::vector<std::string>& pending) {
    context_.host.pump.Turn();
    if (context_.host.clock.Seconds() - asked < kAskedWhileFlushing) return true;
    std::set<std::string> folders;
    for (const std::string& path : pending) folders.insert(base::SplitPath(path).folder);
    const bool answer = std::all_of(folders.begin(), folders.end(), [&](const std::string& folder) {
      const host::Status answered = Ask(folder, folder, kSilentOutput);
      return answered || answered.GetProblem() == host::Problem::Stopped;
    });
    asked = context_.host.clock.Seconds();
    return answer;
  });
}

bool DiskMonitor::Fresh(const std::string& folder) const {
  const auto found = answered_.find(folder);
  if (found == answered_.end() || !found->second.local) return false;
  return context_.host.clock.Seconds() - found->second.when < kFreshFor;
}

// If the abandoned call has returned after all, the disk is back.
bool DiskMonitor::SilentBelow(const std::string& folder) {
  std::erase_if(silent_, [](const Silence& silence) { return silence.call->Done(); });
  return std::any_of(silent_.begin(), silent_.end(),
                     [&](const Silence& silence) { return IsBelow(folder, silence.place); });
}

void DiskMonitor::Note(const std::string& folder, bool local) {
  if (answered_.size() >= kFoldersRemembered) answered_.clear();
  answered_[folder] = {context_.host.clock.Seconds(), local};
}

}  // namespace quillon::job
