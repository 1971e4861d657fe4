// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/carried.h"

#include "base/utf8.h"

namespace quillon::tools {
namespace {

struct Refused {
  const char* signs;
  const char* called;
};

Refused RefusedBy(Carrier carrier) {
  switch (carrier) {
    case Carrier::Fields:
      return {"\t\r\n", "制表符或换行"};
    case Carrier::Bars:
      return {"\t\r\n|", "制表符、换行或“|”"};
    case Carrier::Value:
      return {"|", "“|”"};
    case Carrier::Quotes:
      return {"\"\r\n", "引号或换行"};
  }
  return {"", ""};
}

}  // namespace

host::Status MayStand(Carrier carrier, const std::string& helper, std::initializer_list<std::string> paths) {
  const auto [signs, called] = RefusedBy(carrier);
  for (const std::string& path : paths) {
    if (path.find_first_of(signs) == std::string::npos) continue;
    return {host::Problem::Unsupported,
            "文件名含有" + std::string(called) + "，无法交给 " + helper + " 处理：" + base::DisplayText(path)};
  }
  return host::Status::Ok();
}

}  // namespace quillon::tools
