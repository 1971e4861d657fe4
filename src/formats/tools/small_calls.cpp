// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/small_calls.h"

#include "formats/tools/carried.h"
#include "formats/tools/command_lines.h"
#include "formats/tools/expected_file.h"
#include "formats/tools/keys.h"
#include "formats/tools/pause.h"

namespace quillon::formats {
namespace {

constexpr float kOcrPause = 0.5F;
constexpr float kCirclePause = 0.1F;

}  // namespace

std::string RecogniseText(Tools& tools, const std::string& picture) {
  if (!MayStand(Carrier::Fields, "QxBackOCRer", {picture})) return "";
  WriteKey(tools.World(), key::kOcrRes, "");
  if (tools.EnsureAndStart("QxBackOCRer", OcrText(picture)) != host::kStarted) return "";
  PauseSeconds(tools.World(), kOcrPause);
  tools.Wait("QxBackOCRer.exe");
  return ReadKey(tools.World(), key::kOcrRes);
}

host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box) {
  if (host::Status fits = MayStand(Carrier::Fields, "PicCirleCut", {source, target}); !fits) return fits;
  const ExpectedFile expected(tools, target, {source});
  const int started = tools.Start("PicCirleCut", CircleText(source, target, box));
  if (started != host::kStarted) return {host::Problem::Other, "无法启动 PicCirleCut"};
  PauseSeconds(tools.World(), kCirclePause);
  return expected.Result(tools.Wait("PicCirleCut.exe"), "没有得到圆形裁剪的结果");
}

Waited RunCutMedia(Tools& tools, const std::string& parameters) {
  if (tools.EnsureAndStart("CutMedia", parameters) != host::kStarted) return Waited::Gone;
  return tools.Wait("CutMedia.exe");
}

}  // namespace quillon::formats
