// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/runtime/helper.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <utility>

#include "base/path_text.h"
#include "helpers/runtime/command_text.h"
#include "helpers/runtime/headless_host.h"
#include "host/posix/process_setup.h"

namespace quillon::helpers {
namespace {

constexpr const char* kSection = "Default";

host::Status Guarded(Helper& helper, Work work) {
  try {
    return work(helper);
  } catch (const std::bad_alloc&) {
    return {host::Problem::TooLarge, "内存不足"};
  } catch (const std::exception& failure) {
    return {host::Problem::Other, std::string("运行中断：") + failure.what()};
  }
}

}  // namespace

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

void Complain(const char* name, const std::string& why) { std::fprintf(stderr, "%s: %s\n", name, why.c_str()); }

host::Status UsageError(const std::string& why) { return {host::Problem::Other, "参数错误：" + why}; }

int RunHelper(const char* name, int count, char** arguments, Work work, const ResourceLimits& limits) {
  std::vector<std::string> texts(arguments + (count > 0), arguments + count);
  if (texts == std::vector<std::string>{"--version"}) {
    std::printf("%s %s\n", name, QUILLON_VERSION);
    return 0;
  }
  host::posix::IgnoreSignals();
  Sandbox(limits);
  std::error_code error;
  const std::string folder = std::filesystem::current_path(error).native();
  if (error) {
    Complain(name, "无法确定程序文件夹");
    return 1;
  }
  HeadlessHost world(folder);
  Helper helper(world.Host(), std::move(texts));
  const host::Status done = Guarded(helper, work);
  if (!done) Complain(name, done.Why());
  return done ? 0 : 1;
}

}  // namespace quillon::helpers
