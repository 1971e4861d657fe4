// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <array>
#include <string_view>

#include "helpers/qx_img_tool/operations.h"

namespace {

using namespace quillon;

struct Operation {
  std::string_view name;
  host::Status (*run)(helpers::Helper& helper, const helpers::ToolOrder& order);
};

constexpr std::array kOperations{
    Operation{"getpdfpages", helpers::GetPdfPages}, Operation{"gettiffpages", helpers::GetTiffPages},
    Operation{"cutpdf", helpers::CutPdfPages},      Operation{"splitpdf", helpers::SplitPdf},
    Operation{"maketiff", helpers::MakeTiff},       Operation{"bindpdf", helpers::BindSheets},
};

host::Status Work(helpers::Helper& helper) {
  constexpr std::size_t kFixed = 5;
  std::vector<std::string> fields = helper.Fields();
  if (fields.size() < kFixed) return helpers::WrongCall("字段太少");
  const std::string name = fields[4];
  const helpers::ToolOrder order{fields[0], fields[1], fields[2], fields[3], {fields.begin() + kFixed, fields.end()}};
  for (const Operation& operation : kOperations) {
    if (operation.name == name) return operation.run(helper, order);
  }
  return helpers::WrongCall("未知的操作 " + name);
}

}  // namespace

int main(int count, char** arguments) {
  // Runs beside a whole batch, so that its time is the batch's.
  constexpr unsigned kSeconds = 24 * 3600;
  return helpers::RunHelper("QxImgTool", count, arguments, Work, {.seconds = kSeconds});
}
