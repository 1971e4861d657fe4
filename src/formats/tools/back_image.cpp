// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/back_image.h"

#include "base/path_text.h"
#include "formats/tools/carried.h"
#include "formats/tools/expected_file.h"
#include "formats/tools/keys.h"

namespace quillon::formats {
namespace {

constexpr const char* kName = "QxBackImg";
constexpr const char* kProgram = "QxBackImg.exe";
constexpr const char* kDone = "1";

bool Begin(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag) {
  if (startedFlag) {
    WriteKey(tools.World(), key, command);
    return true;
  }
  // The answer to the last command of an earlier batch.
  WriteKey(tools.World(), key, "");
  startedFlag = tools.Start(kName, command) == host::kStarted;
  return startedFlag;
}

}  // namespace

bool SendToBackImg(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag) {
  if (!Begin(tools, command, key, startedFlag)) return false;
  const Waited waited = tools.Wait(kProgram, [&] { return ReadKey(tools.World(), key) == kDone; });
  if (waited != Waited::Done) startedFlag = false;
  return waited == Waited::Done;
}

std::string LanePath(const host::Host& host) { return base::JoinPath(host.programFolder, "ClipBoard.lane"); }

bool LoadThroughBackImg(Tools& tools, const std::string& file, bool& startedFlag) {
  if (!MayStand(Carrier::Bars, kName, {file})) return false;
  host::Files& files = tools.World().files;
  const std::string lane = LanePath(tools.World());
  static_cast<void>(files.RemoveOwn(lane));
  const std::string command = startedFlag ? LoadBackText(file) : FirstBackText(file);
  return SendToBackImg(tools, command, key::kQxBackImg, startedFlag) && files.IsFile(lane);
}

bool CutThroughBackImg(Tools& tools, const BackCut& cut, const std::string& out, const std::string& quality,
                       bool& startedFlag) {
  if (!startedFlag || !MayStand(Carrier::Bars, kName, {out, tools.App()})) return false;
  const ExpectedFile expected(tools, out, {tools.AppPath("Tmp.jpg")});
  const std::string command = CutBackText(tools.App(), cut, out, quality);
  return SendToBackImg(tools, command, key::kQxBackImg, startedFlag) && expected.Made();
}

}  // namespace quillon::formats
