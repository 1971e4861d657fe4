// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/back_image.h"

#include "base/path_text.h"
#include "imaging/services.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "QxBackImg";
constexpr const char* kProgram = "QxBackImg.exe";
constexpr const char* kDone = "1";

bool Begin(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag) {
  if (startedFlag) return WriteKey(tools.World(), key, command);
  // Clears the answer to the last command of an earlier batch.
  if (!WriteKey(tools.World(), key, "")) return false;
  startedFlag = tools.Start(kName, command) == host::kStarted;
  return startedFlag;
}

host::Status NoAnswer(Tools& tools) {
  return tools.Stopped() ? Interrupted() : host::Status(host::Problem::Other, "QxBackImg 没有回答");
}

}  // namespace

bool SendToBackImg(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag) {
  if (!Begin(tools, command, key, startedFlag)) return false;
  const WaitResult waited = tools.Wait(kProgram, [&] { return ReadKey(tools.World(), key) == kDone; });
  if (waited != WaitResult::Done) startedFlag = false;
  return waited == WaitResult::Done;
}

std::string LanePath(const host::Host& host) { return base::JoinPath(host.programFolder, imaging::kClipBoardLane); }

host::Status LoadThroughBackImg(Tools& tools, const std::string& file, bool& startedFlag) {
  if (host::Status fits = CheckPaths(TextFormat::TabsAndBars, kName, {file}); !fits) return fits;
  host::Files& files = tools.World().files;
  const std::string lane = LanePath(tools.World());
  static_cast<void>(files.RemoveOwn(lane));
  const std::string command = startedFlag ? LoadBackText(file) : FirstBackText(file);
  if (!SendToBackImg(tools, command, key::kQxBackImg, startedFlag)) return NoAnswer(tools);
  return files.IsFile(lane) ? host::Status::Ok() : host::Status(host::Problem::Other, "QxBackImg 没有读出图片");
}

host::Status CutThroughBackImg(Tools& tools, const BackCut& cut, const std::string& out, const std::string& quality,
                               bool& startedFlag) {
  if (host::Status fits = CheckPaths(TextFormat::TabsAndBars, kName, {out, tools.App()}); !fits) return fits;
  if (!startedFlag) return NoAnswer(tools);
  const ExpectedFile expected(tools, out, {tools.AppPath("Tmp.jpg")});
  const std::string command = CutBackText(tools.App(), cut, out, quality);
  if (!SendToBackImg(tools, command, key::kQxBackImg, startedFlag)) return NoAnswer(tools);
  return expected.Result(WaitResult::Done, "没有得到裁剪后的图片", IsPicture);
}

}  // namespace quillon::tools
