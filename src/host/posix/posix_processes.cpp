// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "host/posix/posix_processes.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "base/path_text.h"

namespace quillon::host::posix {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

constexpr std::string_view kDeleted = " (deleted)";
// The kernel stores only this many bytes of a process name.
constexpr std::size_t kShortName = 15;

// Returns the text of a small file of /proc, "" if it cannot be read.
std::string Text(const std::string& path) {
  const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) return "";
  char bytes[4096];
  const ssize_t size = read(handle, bytes, sizeof bytes);
  close(handle);
  return size > 0 ? std::string(bytes, static_cast<std::size_t>(size)) : "";
}

std::string LinkTarget(const std::string& path) {
  char text[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), text, sizeof text);
  return length > 0 ? std::string(text, static_cast<std::size_t>(length)) : "";
}

// Returns the nth of several texts that each end with a zero byte, counted from 0; "" if there are fewer.
std::string Nth(std::string_view texts, int n) {
  for (; n > 0 && !texts.empty(); --n) {
    const std::size_t end = texts.find('\0');
    texts.remove_prefix(end == std::string_view::npos ? texts.size() : end + 1);
  }
  return std::string(texts.substr(0, texts.find('\0')));
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos) return "";
  return separator == 0 ? "/" : path.substr(0, separator);
}

// Returns the file that was started. For a script, /proc/<id>/exe is the interpreter, but the kernel names the process
// after the script, which is the first argument.
std::string StartedFile(const std::string& process) {
  std::string program = LinkTarget(process + "/exe");
  if (program.ends_with(kDeleted)) program.resize(program.size() - kDeleted.size());
  std::string called = Text(process + "/comm");
  if (called.ends_with('\n')) called.pop_back();
  if (!program.empty() && NameOf(program).substr(0, kShortName) == called) return program;
  const std::string arguments = Text(process + "/cmdline");
  const std::string script = Nth(arguments, 1);
  if (!called.empty() && NameOf(script).substr(0, kShortName) == called) return script;
  return program.empty() ? Nth(arguments, 0) : program;
}

std::optional<ProcessFacts> FactsOf(int id) {
  const std::string process = "/proc/" + std::to_string(id);
  struct stat info {};
  if (stat(process.c_str(), &info) < 0) return std::nullopt;
  const std::string file = StartedFile(process);
  if (file.empty()) return std::nullopt;
  return ProcessFacts{id, NameOf(file), FolderOf(file), info.st_uid == geteuid()};
}

}  // namespace

PosixProcesses::PosixProcesses(const std::string& onlyFolder) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(onlyFolder.c_str(), nullptr), &std::free);
  onlyFolder_ = real ? real.get() : base::TrimTrailingSeparator(onlyFolder);
}

bool PosixProcesses::Wanted(const ProcessFacts& facts) const {
  return onlyFolder_.empty() || facts.folder == onlyFolder_;
}

std::vector<ProcessFacts> PosixProcesses::Running() {
  std::vector<ProcessFacts> running;
  const std::unique_ptr<DIR, CloseFolder> processes(opendir("/proc"));
  if (!processes) return running;
  while (const dirent* entry = readdir(processes.get())) {
    const int id = std::atoi(entry->d_name);
    if (id <= 0) continue;
    if (auto facts = FactsOf(id); facts && Wanted(*facts)) running.push_back(std::move(*facts));
  }
  return running;
}

bool PosixProcesses::End(int id) {
  if (id <= 1) return false;
  const auto facts = FactsOf(id);
  return facts && facts->own && Wanted(*facts) && kill(id, SIGKILL) == 0;
}

}  // namespace quillon::host::posix
