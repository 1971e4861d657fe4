// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/keys.h"

namespace quillon::tools {
namespace {

constexpr const char* kSection = "Default";

}  // namespace

std::string ReadKey(host::Host& host, const std::string& key, const std::string& application) {
  return host.settings.Get(application, kSection, key);
}

bool WriteKey(host::Host& host, const std::string& key, const std::string& value, const std::string& application) {
  return host.settings.Set(application, kSection, key, value);
}

host::Status NotHeard(const std::string& helper) {
  return {host::Problem::Other, "设置无法写入，不能把命令交给 " + helper};
}

}  // namespace quillon::tools
