// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <string_view>

#include "base/path_text.h"
#include "helpers/qx_img_tool/operations.h"
#include "helpers/qx_img_tool/pages.h"

namespace quillon::helpers {
namespace {

// The files of each operation.
HandedFiles FilesOfFirstPage(const ToolOrder& order) {
  return {.sources = {order.input}, .results = {base::JoinPath(order.output, "Tmp.jpg")}};
}
HandedFiles InputAndOutput(const ToolOrder& order) { return {.sources = {order.input}, .results = {order.output}}; }
HandedFiles FilesOfSplit(const ToolOrder& order) {
  return {.sources = {order.input}, .results = {order.output, base::JoinPath(order.Field(0), PageName(1))}};
}
// The program names the sheets only while they are bound.
HandedFiles FilesOfBinding(const ToolOrder& order) { return {.sources = {"/"}, .results = {order.output}}; }

struct Operation {
  std::string_view name;
  host::Status (*run)(Helper& helper, const ToolOrder& order);
  unsigned seconds;
  HandedFiles (*files)(const ToolOrder& order);
};

// The first three handle one file; the others follow a batch of the program, which may last for hours.
constexpr std::array kOperations{
    Operation{"getpdfpages", GetPdfPages, kSecondsOfOneFile, FilesOfFirstPage},
    Operation{"gettiffpages", GetTiffPages, kSecondsOfOneFile, FilesOfFirstPage},
    Operation{"cutpdf", CutPdfPages, kSecondsOfOneFile, InputAndOutput},
    Operation{"splitpdf", SplitPdf, kSecondsOfABatch, FilesOfSplit},
    Operation{"maketiff", MakeTiff, kSecondsOfABatch, InputAndOutput},
    Operation{"bindpdf", BindSheets, kSecondsOfABatch, FilesOfBinding},
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
    helper.AllowOnly(operation.files(order));
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
