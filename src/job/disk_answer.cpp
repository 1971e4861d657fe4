// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/disk_answer.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <sstream>
#include <utility>

#include "base/path_text.h"
#include "job/disk_patience.h"
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

// Kinds of disks that another machine or another program answers for.
bool AnswersFromElsewhere(const std::string& kind) {
  constexpr std::array<const char*, 9> kKinds = {"nfs", "cifs", "smb", "fuse", "9p", "ceph", "afs", "gluster", "vbox"};
  return std::any_of(kKinds.begin(), kKinds.end(), [&](const char* known) { return kind.starts_with(known); });
}

}  // namespace

// Shared with the errand, which may outlive its caller.
struct DiskAnswer::Asking {
  std::vector<std::string> folders;
  std::string path;
  std::atomic<std::size_t> heard = 0;  // folders that have answered
  std::uint64_t device = 0;            // of the last folder
};

DiskAnswer::DiskAnswer(Program& program, std::string mountTable)
    : program_(program), mountTable_(std::move(mountTable)) {}

DiskAnswer::~DiskAnswer() = default;

host::Status DiskAnswer::AskFile(const std::string& path) {
  return Ask(base::SplitPath(path).folder, path, host::kDiskSilent);
}

host::Status DiskAnswer::AskFolder(const std::string& folder) { return Ask(folder, folder, kSilentFolder); }

host::Status DiskAnswer::AskForCut(const std::string& source) {
  if (host::Status answered = AskFile(source); !answered || program_.form1.ChOver.On()) return answered;
  const std::string out = program_.form1.LOutDir.Value();
  return Ask(out, out, kSilentOutput);
}

bool DiskAnswer::Silent(const std::string& path) { return SilentBelow(base::SplitPath(path).folder); }

host::Status DiskAnswer::Ask(const std::string& folder, const std::string& path, const char* sentence) {
  if (SilentBelow(folder)) return {host::Problem::Other, sentence};
  if (Fresh(folder)) return host::Status::Ok();
  auto asking = std::make_shared<Asking>();
  asking->folders = FromTheTop(folder);
  asking->path = path;
  DiskPatience patience(program_);
  auto errand = std::make_unique<host::Errand>([asking, &files = program_.host.files](const std::atomic<bool>& stop) {
    for (const std::string& place : asking->folders) {
      if (stop) return;
      const auto facts = files.Look(place);
      asking->device = facts ? facts->device : 0;
      ++asking->heard;
    }
    // What a network disk tells of a file may be from memory; it is asked anew when the file is opened.
    std::string begin;
    if (!stop) static_cast<void>(files.ReadFile(asking->path, begin, kReadAtOnce));
  });
  host::Status answered = patience.Await(*errand, asking->heard);
  if (answered) {
    Note(folder, asking->device);
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

bool DiskAnswer::Fresh(const std::string& folder) const {
  const auto found = answered_.find(folder);
  if (found == answered_.end() || found->second.remote) return false;
  return program_.host.clock.Seconds() - found->second.when < kFreshFor;
}

// A question that comes back in the end is the answer that was waited for.
bool DiskAnswer::SilentBelow(const std::string& folder) {
  std::erase_if(silent_, [](const Silence& silence) { return silence.errand->Done(); });
  return std::any_of(silent_.begin(), silent_.end(),
                     [&](const Silence& silence) { return IsBelow(folder, silence.place); });
}

void DiskAnswer::Note(const std::string& folder, std::uint64_t device) {
  if (answered_.size() >= kFoldersRemembered) answered_.clear();
  answered_[folder] = {program_.host.clock.Seconds(), IsRemote(device)};
}

// Each line of the table holds the device as "major:minor" in its third place, and behind " - " the kind of disk.
bool DiskAnswer::IsRemote(std::uint64_t device) {
  const auto [known, unknown] = remote_.emplace(device, false);
  if (!unknown) return known->second;
  std::string table;
  static_cast<void>(program_.host.files.ReadFile(mountTable_, table));
  const std::string wanted = std::to_string(major(device)) + ":" + std::to_string(minor(device));
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string number;
    words >> number >> number >> number;
    const std::size_t kind = line.find(" - ");
    if (number != wanted || kind == std::string::npos) continue;
    known->second = AnswersFromElsewhere(line.substr(kind + 3, line.find(' ', kind + 3) - kind - 3));
  }
  return known->second;
}

}  // namespace quillon::job
