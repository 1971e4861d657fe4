// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/exif/describe.h"
#include "helpers/runtime/helper.h"
#include "helpers/tessa_exif_handler/exif_order.h"

namespace quillon::helpers {
namespace {

constexpr const char* kApplication = "Quillon";
constexpr const char* kKey = "Exif";

// Without parameters; what to do stands in the store. From a shell, source and target may be given instead.
host::Status Execute(Helper& helper) {
  const std::vector<std::string> fields = helper.Fields();
  ExifOrder order;
  if (fields.size() == 2) {
    order = {fields[0], fields[1]};
  } else if (!ReadExifOrder(helper.Get(kApplication, kKey), order)) {
    return UsageError("没有要处理的文件");
  }
  return CopyDescription(helper.Files(), order.source, order.target);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("TessaExifHandler", count, arguments, quillon::helpers::Execute);
}
