// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/helper.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <utility>

#include "base/path_text.h"
#include "helpers/runtime/headless_host.h"
#include "host/posix/posix_instance.h"
#include "host/posix/process_setup.h"
#include "host/posix/sqlite_settings.h"

namespace quillon::helpers {
namespace {

constexpr const char* kSection = "Default";
constexpr double kIdleSeconds = 1800;

host::Status Guarded(Helper& helper, Work work) {
  try {
    return work(helper);
  } catch (const std::bad_alloc&) {
    return {host::Problem::TooLarge, "内存不足"};
  } catch (const std::exception& failure) {
    return {host::Problem::Other, std::string("运行中断：") + failure.what()};
  }
}

// Returns a failure if something that the helper saved did not reach the disk. Its file was removed then.
host::Status Flushed(host::Files& files) {
  const std::vector<host::LateFailure> lost = files.Flush();
  if (lost.empty()) return host::Status::Ok();
  const host::Status& first = lost.front().status;
  return {first.GetProblem(), "输出文件没有写到磁盘上：" + first.Why()};
}

}  // namespace

std::vector<std::string> Fields(std::string_view text) {
  std::vector<std::string> fields;
  if (text.empty()) return fields;
  for (std::size_t end; (end = text.find('\t')) != std::string_view::npos; text.remove_prefix(end + 1)) {
    fields.emplace_back(text.substr(0, end));
  }
  fields.emplace_back(text);
  return fields;
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  std::string word;
  bool begun = false;
  bool quoted = false;
  for (const char sign : text) {
    if (sign == '"') {
      quoted = !quoted;
      begun = true;
    } else if (sign != ' ' || quoted) {
      word += sign;
      begun = true;
    } else if (begun) {
      words.push_back(std::move(word));
      word.clear();
      begun = false;
    }
  }
  if (begun) words.push_back(std::move(word));
  return words;
}

Helper::Helper(host::Host& world, std::vector<std::string> arguments)
    : world_(world), arguments_(std::move(arguments)), text_(arguments_.empty() ? "" : arguments_.front()) {}

std::string Helper::AppPath(const std::string& name) const { return base::JoinPath(world_.programFolder, name); }

std::vector<std::string> Helper::Fields() const { return arguments_.size() > 1 ? arguments_ : helpers::Fields(text_); }

std::vector<std::string> Helper::Words() const { return arguments_.size() > 1 ? arguments_ : helpers::Words(text_); }

std::string Helper::Get(const std::string& application, const std::string& key) const {
  return world_.settings.Get(application, kSection, key);
}

void Helper::Set(const std::string& application, const std::string& key, const std::string& value) {
  world_.settings.Set(application, kSection, key, value);
}

void Helper::AllowOnly(const HandedFiles& handed) {
  const std::string& folder = world_.programFolder;
  // For what libvips and SQLite cannot keep in memory. Others use /tmp too, and it may itself be in memory.
  setenv("TMPDIR", folder.c_str(), 1);
  const std::string settings = host::posix::SettingsFolder(folder);
  // The folder must exist, or the settings could not be stored later. If it cannot be created, they cannot either.
  static_cast<void>(Files().MakeFolders(settings));
  helpers::AllowOnly(handed, {folder, settings});
}

IdleTimeout::IdleTimeout(Helper& helper) : world_(helper.World()), last_(world_.clock.Seconds()) {}

void IdleTimeout::Restart() { last_ = world_.clock.Seconds(); }

bool IdleTimeout::Expired() {
  if (world_.clock.Seconds() - last_ <= kIdleSeconds) return false;
  if (!host::posix::IsClaimed(world_.programFolder)) return true;
  Restart();
  return false;
}

void LogError(const char* name, const std::string& why) { std::fprintf(stderr, "%s: %s\n", name, why.c_str()); }

host::Status UsageError(const std::string& why) { return {host::Problem::Other, "参数错误：" + why}; }

host::Status Perform(Helper& helper, Work work) {
  const host::Status done = Guarded(helper, work);
  const host::Status flushed = Flushed(helper.Files());
  return done ? flushed : done;
}

int RunHelper(const char* name, int count, char** arguments, Work work, const Permissions& permissions) {
  std::vector<std::string> texts(arguments + (count > 0), arguments + count);
  if (texts == std::vector<std::string>{"--version"}) {
    std::printf("%s %s\n", name, QUILLON_VERSION);
    return 0;
  }
  host::posix::IgnoreSignals();
  Sandbox(permissions);
  std::error_code error;
  const std::string folder = std::filesystem::current_path(error).native();
  if (error) {
    LogError(name, "无法确定程序文件夹");
    return 1;
  }
  HeadlessHost world(folder);
  Helper helper(world.Host(), std::move(texts));
  const host::Status done = Perform(helper, work);
  if (!done) LogError(name, done.Why());
  return done ? 0 : 1;
}

}  // namespace quillon::helpers
