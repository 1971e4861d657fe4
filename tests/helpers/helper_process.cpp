// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/helper_process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "build_paths.h"
#include "host/posix/sqlite_settings.h"

namespace quillon::helpers {
namespace {

constexpr const char* kSection = "Default";

}  // namespace

std::string BuiltHelper(const std::string& helper) {
  const std::string path = std::string(QUILLON_BINARY_DIR "/bin/") + helper;
  return std::filesystem::exists(path + ".dll") ? path + ".dll" : path + ".exe";
}

HelperFolder::HelperFolder() : path_(folder_.Path("app")) {
  std::filesystem::create_directories(path_);
  // A store in the program folder is the one that helpers use.
  host::posix::SqliteSettings(path_).Set("test", kSection, "made", "1");
}

std::string HelperFolder::Write(const std::string& entry, const std::string& content) const {
  return folder_.Write("app/" + entry, content);
}

std::string HelperFolder::Read(const std::string& entry) const { return folder_.Read("app/" + entry); }

bool HelperFolder::Exists(const std::string& entry) const { return folder_.Exists("app/" + entry); }

std::vector<std::string> HelperFolder::Names() const {
  std::vector<std::string> names = folder_.Names("app");
  std::erase_if(names, [](const std::string& name) { return name.starts_with("settings."); });
  return names;
}

std::string HelperFolder::Get(const std::string& key, const std::string& application) const {
  return host::posix::SqliteSettings(path_).Get(application, kSection, key);
}

void HelperFolder::Set(const std::string& key, const std::string& value, const std::string& application) const {
  host::posix::SqliteSettings(path_).Set(application, kSection, key, value);
}

pid_t HelperFolder::Start(const std::string& helper, const std::vector<std::string>& arguments) const {
  std::string program = BuiltHelper(helper);
  std::vector<std::string> texts = arguments;
  std::vector<char*> words{program.data()};
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);
  const std::string out = folder_.Path("out");
  const std::string err = folder_.Path("err");
  const pid_t process = fork();
  if (process == 0) {
    dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), STDOUT_FILENO);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600), STDERR_FILENO);
    if (chdir(path_.c_str()) == 0) execv(program.c_str(), words.data());
    _exit(127);
  }
  return process;
}

Ran HelperFolder::Wait(pid_t process) const {
  int status = 0;
  waitpid(process, &status, 0);
  Ran ran;
  if (WIFEXITED(status)) ran.exit = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) ran.signal = WTERMSIG(status);
  ran.out = folder_.Read("out");
  ran.err = folder_.Read("err");
  return ran;
}

Ran HelperFolder::Run(const std::string& helper, const std::vector<std::string>& arguments) const {
  return Wait(Start(helper, arguments));
}

}  // namespace quillon::helpers
