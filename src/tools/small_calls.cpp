// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/small_calls.h"

#include "tools/carried.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/pause.h"
#include "tools/sound_result.h"

namespace quillon::tools {
namespace {

constexpr float kOcrPause = 0.5F;
constexpr float kCirclePause = 0.1F;

}  // namespace

host::Status RecogniseText(Tools& tools, const std::string& picture, std::string& text) {
  text.clear();
  if (host::Status fits = MayStand(Carrier::Fields, "QxBackOCRer", {picture}); !fits) return fits;
  WriteKey(tools.World(), key::kOcrRes, "");
  if (tools.EnsureAndStart("QxBackOCRer", OcrText(picture)) != host::kStarted) return NotStarted("QxBackOCRer");
  PauseSeconds(tools.World(), kOcrPause);
  if (tools.Wait("QxBackOCRer.exe") == Waited::Stopped) return Interrupted();
  text = ReadKey(tools.World(), key::kOcrRes);
  return host::Status::Ok();
}

host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box) {
  if (host::Status fits = MayStand(Carrier::Fields, "PicCirleCut", {source, target}); !fits) return fits;
  const ExpectedFile expected(tools, target, {source});
  const int started = tools.Start("PicCirleCut", CircleText(source, target, box));
  if (started != host::kStarted) return NotStarted("PicCirleCut");
  PauseSeconds(tools.World(), kCirclePause);
  return expected.Result(tools.Wait("PicCirleCut.exe"), "没有得到圆形裁剪的结果", IsPicture);
}

host::Status RunCutMedia(Tools& tools, const std::string& parameters, std::initializer_list<std::string> paths) {
  if (host::Status fits = MayStand(Carrier::Quotes, "CutMedia", paths); !fits) return fits;
  if (tools.EnsureAndStart("CutMedia", parameters) != host::kStarted) return NotStarted("CutMedia");
  return tools.Wait("CutMedia.exe") == Waited::Stopped ? Interrupted() : host::Status::Ok();
}

}  // namespace quillon::tools
