// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string>
#include <string_view>

#include "helpers/exif/describe.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

struct ExifOrder {
  std::string source;
  std::string target;
};

constexpr std::string_view kMarker = "|Tessa批量处理系列软件";

// Parses "<source>|<target>|<marker>". Returns false for any other text.
bool ReadExifOrder(const std::string& text, ExifOrder& order) {
  if (!text.ends_with(kMarker)) return false;
  const std::string names = text.substr(0, text.size() - kMarker.size());
  const std::size_t bar = names.find('|');
  if (std::count(names.begin(), names.end(), '|') != 1 || bar == 0 || bar + 1 == names.size()) return false;
  order = {names.substr(0, bar), names.substr(bar + 1)};
  return true;
}

constexpr const char* kApplication = "Quillon";
constexpr const char* kKey = "Exif";

// The order is in the settings, and there are no parameters. In a shell, source and target may be given instead.
host::Status Execute(Helper& helper) {
  const std::vector<std::string> fields = helper.Fields();
  ExifOrder order;
  if (fields.size() == 2) {
    order = {fields[0], fields[1]};
  } else if (!ReadExifOrder(helper.Get(kApplication, kKey), order)) {
    return UsageError("没有要处理的文件");
  }
  helper.AllowOnly({.sources = {order.source}, .results = {order.target}});
  return CopyDescription(helper.Files(), order.source, order.target);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("TessaExifHandler", count, arguments, quillon::helpers::Execute);
}
