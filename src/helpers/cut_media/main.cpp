// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/cut_media/media_order.h"
#include "helpers/frame/child.h"
#include "helpers/frame/helper.h"

namespace {

using namespace quillon;

// Arguments of FFmpeg. The result, which is the last of them, is written aside in the program folder and takes its name
// when FFmpeg has ended well.
host::Status Work(helpers::Helper& helper) {
  const std::vector<std::string> words = helper.Words();
  const helpers::MediaOrder order = helpers::ReadMediaOrder(words);
  if (order.words.empty()) return helpers::WrongCall("没有FFmpeg的参数");
  std::vector<std::string> command{"ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error"};
  command.insert(command.end(), order.words.begin(), order.words.end());
  if (!order.output.empty()) command.push_back(order.aside);
  host::Files& files = helper.Files();
  const helpers::Ended ended = helpers::RunProgram(command);
  if (order.output.empty()) return ended ? host::Status::Ok() : host::Status{host::Problem::Other, ended.output};
  host::Status status;
  if (!ended) status = {host::Problem::Other, ended.output.empty() ? "无法运行 ffmpeg" : ended.output};
  if (status) status = files.Copy(helper.AppPath(order.aside), order.output);
  static_cast<void>(files.RemoveOwn(helper.AppPath(order.aside)));
  return status;
}

}  // namespace

int main(int count, char** arguments) { return quillon::helpers::RunHelper("CutMedia", count, arguments, Work); }
