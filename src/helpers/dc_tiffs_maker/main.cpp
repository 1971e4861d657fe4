// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <string>

#include "base/path_text.h"
#include "helpers/dc_tiffs_maker/ok_list.h"
#include "helpers/dc_tiffs_maker/tiff_maker.h"
#include "helpers/dc_tiffs_maker/window/show.h"
#include "helpers/runtime/headless_host.h"
#include "host/posix/environment.h"
#include "host/posix/posix_disk.h"
#include "host/posix/process_setup.h"
#include "host/posix/program_folder.h"

namespace quillon::helpers {
namespace {

// Returns the program folder that the program itself would use, regardless of the current folder.
std::string ProgramFolder() {
  host::posix::PosixDisk disk;
  const host::Files files(disk);
  std::string folder = host::posix::ChooseProgramFolder(files, host::posix::HintsOfThisProcess());
  // If it cannot be created, the first order reports the failure.
  (void)files.MakeFolders(folder);
  return folder;
}

// The initial values of a window without an order.
OkList FreshOrder() {
  OkList order;
  order.colour = true;
  order.compress = true;
  order.verify = true;
  return order;
}

// Returns true if a person started the program (with a number of files as its argument, or with none) and a display is
// available.
bool WantsWindow(int count, char** arguments) {
  const std::string parameter = count > 1 ? arguments[1] : "";
  const bool number = std::all_of(parameter.begin(), parameter.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (count > 2 || !number) return false;
  constexpr const char* kDisplays[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
  return std::any_of(std::begin(kDisplays), std::end(kDisplays),
                     [](const char* name) { return !host::posix::Environment(name).empty(); });
}

// Shows the window until it is closed, with the order of "OkList.txt" if there is a valid one. Returns the exit code.
int ShowWindow(int count, char** arguments) {
  host::posix::IgnoreSignals();
  HeadlessHost world(ProgramFolder());
  host::Host& host = world.Host();
  const std::string path = base::JoinPath(host.programFolder, "OkList.txt");
  OkList order;
  const host::Status read = ReadOkList(host.files, path, order);
  if (read) return ShowTiffsWindow(count, arguments, host, order, "已读入任务文件；点“开始”合成，或先修改。");
  const bool missing = read.GetProblem() == host::Problem::Missing;
  return ShowTiffsWindow(count, arguments, host, FreshOrder(),
                         missing ? "请添加图片，选择保存位置，再点“开始”。"
                                 : "任务文件不能用（" + read.Why() + "）：请添加图片，选择保存位置，再点“开始”。");
}

// The parameter text is the path of an order. If it is not a path, and no window can be shown, the order is
// "OkList.txt" in the program folder.
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
  // Only the process without a window decodes pictures, so only that one is sandboxed. The window needs the display,
  // the bus of the desktop and whatever folder its user opens.
  if (helpers::WantsWindow(count, arguments)) return helpers::ShowWindow(count, arguments);
  return helpers::RunHelper("DCTiffsMaker", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
