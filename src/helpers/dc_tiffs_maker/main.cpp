// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/tiff_maker.h"
#include "helpers/dc_tiffs_maker/visible_form.h"

namespace quillon::helpers {
namespace {

// The parameter is the path of the order; anything else, where no window can be shown, stands for "OkList.txt" of the
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
  namespace helpers = quillon::helpers;
  // Only the one without a window decodes pictures, and is shut in.
  if (helpers::WantsWindow(count, arguments)) return helpers::ShowWindow(count, arguments);
  return helpers::RunHelper("DCTiffsMaker", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
