// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/dc_tiffs_maker/visible_form.h"

#include <algorithm>
#include <string>

#include "base/path_text.h"
#include "helpers/dc_tiffs_maker/ok_list.h"
#include "helpers/dc_tiffs_maker/window/show.h"
#include "helpers/runtime/headless_host.h"
#include "host/posix/environment.h"
#include "host/posix/posix_disk.h"
#include "host/posix/process_setup.h"
#include "host/posix/program_folder.h"

namespace quillon::helpers {
namespace {

// The one that the program itself would take, whatever folder a person starts this in.
std::string ProgramFolder() {
  host::posix::PosixDisk disk;
  const host::Files files(disk);
  std::string folder = host::posix::ChooseProgramFolder(files, host::posix::HintsOfThisProcess());
  // Where it cannot be made, the first order tells so.
  (void)files.MakeFolders(folder);
  return folder;
}

// What a window without an order begins with.
OkList FreshOrder() {
  OkList order;
  order.colour = true;
  order.compress = true;
  order.verify = true;
  return order;
}

}  // namespace

bool WantsWindow(int count, char** arguments) {
  const std::string parameter = count > 1 ? arguments[1] : "";
  const bool number = std::all_of(parameter.begin(), parameter.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (count > 2 || !number) return false;
  constexpr const char* kDisplays[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
  return std::any_of(std::begin(kDisplays), std::end(kDisplays),
                     [](const char* name) { return !host::posix::Environment(name).empty(); });
}

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

}  // namespace quillon::helpers
