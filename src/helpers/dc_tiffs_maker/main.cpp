// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/tiff_maker.h"

namespace quillon::helpers {
namespace {

// The parameter is the path of the order; a number of files, which a person's call has, stands for "OkList.txt" of the
// program folder.
host::Status Execute(Helper& helper) {
  const std::string& text = helper.Parameters();
  const bool path = text.find('/') != std::string::npos;
  const std::string list = path ? text : helper.AppPath("OkList.txt");
  if (!helper.Files().IsFile(list)) return {host::Problem::Missing, "没有待压制的任务"};
  return MakeTiffByList(helper, list);
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  return quillon::helpers::RunHelper("DCTiffsMaker", count, arguments, quillon::helpers::Execute);
}
