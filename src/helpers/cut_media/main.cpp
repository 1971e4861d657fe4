// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "helpers/cut_media/media_order.h"
#include "helpers/runtime/child.h"
#include "helpers/runtime/helper.h"

namespace quillon::helpers {
namespace {

host::Status Run(Helper& helper, const MediaOrder& order) {
  host::Files& files = helper.Files();
  for (const Aside& input : order.inputs) {
    if (host::Status put = files.CopyOwn(input.path, helper.AppPath(input.name)); !put) return put;
  }
  std::vector<std::string> command{"ffmpeg", "-nostdin", "-hide_banner", "-loglevel", "error"};
  command.insert(command.end(), order.words.begin(), order.words.end());
  const Ended ended = RunProgram(command);
  if (!ended) return {host::Problem::Other, ended.started ? ended.output : "无法运行 ffmpeg"};
  if (order.output.path.empty()) return host::Status::Ok();
  return files.Copy(helper.AppPath(order.output.name), order.output.path);
}

// Arguments of FFmpeg. The result, which is the last of them, is made aside and takes its name when FFmpeg has ended
// well.
host::Status Execute(Helper& helper) {
  const MediaOrder order = ReadMediaOrder(helper.Words());
  if (order.words.empty()) return UsageError("没有FFmpeg的参数");
  if (!order.stray.empty()) return UsageError("不能直接读写 " + order.stray);
  const host::Status status = Run(helper, order);
  for (const Aside& input : order.inputs) {
    static_cast<void>(helper.Files().RemoveOwn(helper.AppPath(input.name)));
  }
  if (!order.output.path.empty()) static_cast<void>(helper.Files().RemoveOwn(helper.AppPath(order.output.name)));
  return status;
}

}  // namespace
}  // namespace quillon::helpers

int main(int count, char** arguments) {
  namespace helpers = quillon::helpers;
  // All threads of FFmpeg count, and a film may be long.
  return helpers::RunHelper("CutMedia", count, arguments, helpers::Execute, {.seconds = helpers::kSecondsOfABatch});
}
