// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/frame/helper.h"
#include "helpers/tessa_exif_handler/describe.h"
#include "helpers/tessa_exif_handler/exif_order.h"

namespace {

using namespace quillon;

constexpr const char* kApplication = "Quillon";
constexpr const char* kKey = "Exif";

// Without parameters; what to do stands in the store. From a shell, source and target may be given instead.
host::Status Work(helpers::Helper& helper) {
  const std::vector<std::string> fields = helper.Fields();
  helpers::ExifOrder order;
  if (fields.size() == 2) {
    order = {fields[0], fields[1]};
  } else if (!helpers::ReadExifOrder(helper.Get(kApplication, kKey), order)) {
    return helpers::WrongCall("没有要处理的文件");
  }
  return helpers::CopyDescription(helper.Files(), order.source, order.target);
}

}  // namespace

int main(int count, char** arguments) { return helpers::RunHelper("TessaExifHandler", count, arguments, Work); }
