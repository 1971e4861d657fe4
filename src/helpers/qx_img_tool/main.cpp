// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <string_view>

#include "helpers/qx_img_tool/operations.h"

namespace quillon::helpers {
namespace {

struct Operation {
  std::string_view name;
  host::Status (*run)(Helper& helper, const ToolOrder& order);
  unsigned seconds;
};

// The first three handle one file; the others follow a batch of the program, which may last for hours.
constexpr std::array kOperations{
    Operation{"getpdfpages", GetPdfPages, kSecondsOfOneFile},
    Operation{"gettiffpages", GetTiffPages, kSecondsOfOneFile},
    Operation{"cutpdf", CutPdfPages, kSecondsOfOneFile},
    Operation{"splitpdf", SplitPdf, kSecondsOfABatch},
    Operation{"maketiff", MakeTiff, kSecondsOfABatch},
    Operation{"bindpdf", BindSheets, kSecondsOfABatch},
};

host::Status Execute(Helper& helper) {
  constexpr std::size_t kFixed = 5;
  std::vector<std::string> fields = helper.Fields();
  if (fields.size() < kFixed) return UsageError("字段太少");
  const std::string name = fields[4];
  const ToolOrder order{fields[0], fields[1], fields[2], fields[3], {fields.begin() + kFixed, fields.end()}};
  for (const Operation& operation : kOperations) {
    if (operation.name != name) continue;
    LimitTime(operation.seconds);
    return operation.run(helper, order);
  }
  return UsageError("未知的操作 " + name);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  return helpers::RunHelper("QxImgTool", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
