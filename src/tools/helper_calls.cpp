// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/helper_calls.h"

#include <algorithm>
#include <cerrno>

#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/processes.h"

namespace quillon::tools {
namespace {

constexpr const char* kExifHelper = "TessaExifHandler";
constexpr float kExifPause = 0.1F;
constexpr double kExifTimeout = 20;

constexpr const char* kTiffsMaker = "DCTiffsMaker";
constexpr const char* kTiffsMakerProgram = "DCTiffsMaker.exe";
constexpr const char* kDone = "True";
// Part of every progress text; any other report is an error message.
constexpr const char* kWorking = "压制";
constexpr double kSecondsPerPage = 2;

constexpr float kOcrPause = 0.5F;
constexpr float kCirclePause = 0.1F;

}  // namespace

host::Status CopyExif(Tools& tools, const std::string& source, const std::string& target) {
  if (host::Status fits = CheckPaths(TextFormat::Bars, kExifHelper, {source, target}); !fits) return fits;
  const ExpectedFile described(tools, target, {source});
  if (!WriteKey(tools.World(), key::kExif, ExifText(source, target))) return CommandNotWritten(kExifHelper);
  PauseSeconds(tools.World(), kExifPause);
  const int started = tools.Start(kExifHelper, "");
  const WaitResult waited = tools.Wait(std::string(kExifHelper) + ".exe", {}, kExifTimeout);
  WriteKey(tools.World(), key::kExif, "");
  if (described.Made()) return host::Status::Ok();
  if (started != host::kStarted) return NotStarted(kExifHelper);
  if (waited == WaitResult::Stopped) return Interrupted();
  return {host::Problem::Other,
          waited == WaitResult::TimedOut ? "TessaExifHandler 没有按时完成" : "TessaExifHandler 没有写入"};
}

host::Status RunTiffsMaker(Tools& tools, const std::string& list, const std::vector<std::string>& pictures,
                           const std::string& out, int pages, const std::function<void(const std::string&)>& show) {
  const ExpectedFile expected(tools, out, pictures);
  WriteKey(tools.World(), key::kMakeTiffProg, "");
  if (tools.Start(kTiffsMaker, list) != host::kStarted) return NotStarted(kTiffsMaker);
  std::string report;
  const auto poll = [&] {
    report = ReadKey(tools.World(), key::kMakeTiffProg);
    if (report == kDone) return true;
    show(report);
    return false;
  };
  const WaitResult waited = tools.Wait(kTiffsMakerProgram, poll, kSecondsPerPage * std::max(1, pages));
  EndProcess(tools.World(), kTiffsMakerProgram);
  if (report == kFullDisk) return host::Status::FromErrno(ENOSPC);
  const bool failure = !report.empty() && report.find(kWorking) == std::string::npos;
  return expected.Result(waited, failure ? report : "没有生成Tiff", IsPicture);
}

host::Status RecogniseText(Tools& tools, const std::string& picture, std::string& text) {
  text.clear();
  if (host::Status fits = CheckPaths(TextFormat::Tabs, "QxBackOCRer", {picture}); !fits) return fits;
  WriteKey(tools.World(), key::kOcrRes, "");
  if (tools.EnsureAndStart("QxBackOCRer", OcrText(picture)) != host::kStarted) return NotStarted("QxBackOCRer");
  PauseSeconds(tools.World(), kOcrPause);
  if (tools.Wait("QxBackOCRer.exe") == WaitResult::Stopped) return Interrupted();
  text = ReadKey(tools.World(), key::kOcrRes);
  return host::Status::Ok();
}

host::Status CutCircle(Tools& tools, const std::string& source, const std::string& target, const base::Rect& box) {
  if (host::Status fits = CheckPaths(TextFormat::Tabs, "PicCirleCut", {source, target}); !fits) return fits;
  const ExpectedFile expected(tools, target, {source});
  const int started = tools.Start("PicCirleCut", CircleText(source, target, box));
  if (started != host::kStarted) return NotStarted("PicCirleCut");
  PauseSeconds(tools.World(), kCirclePause);
  return expected.Result(tools.Wait("PicCirleCut.exe"), "没有得到圆形裁剪的结果", IsPicture);
}

host::Status RunCutMedia(Tools& tools, const std::string& parameters, std::initializer_list<std::string> paths) {
  if (host::Status fits = CheckPaths(TextFormat::Quotes, "CutMedia", paths); !fits) return fits;
  host::Host& host = tools.World();
  // Most runs leave no answer, so that the settings are seldom written.
  if (!ReadKey(host, key::kCutMedia).empty() && !WriteKey(host, key::kCutMedia, "")) {
    return CommandNotWritten("CutMedia");
  }
  if (tools.EnsureAndStart("CutMedia", parameters) != host::kStarted) return NotStarted("CutMedia");
  if (tools.Wait("CutMedia.exe") == WaitResult::Stopped) return Interrupted();
  const std::string why = ReadKey(host, key::kCutMedia);
  if (why == kFullDisk) return host::Status::FromErrno(ENOSPC);
  return why.empty() ? host::Status::Ok() : host::Status(host::Problem::Damaged, why);
}

}  // namespace quillon::tools
