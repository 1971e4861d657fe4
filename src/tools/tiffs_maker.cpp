// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/tiffs_maker.h"

#include <algorithm>
#include <cerrno>

#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/processes.h"
#include "tools/sound_result.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "DCTiffsMaker";
constexpr const char* kProgram = "DCTiffsMaker.exe";
constexpr const char* kDone = "True";
constexpr const char* kFullDisk = "FullDisk";
constexpr const char* kWorking = "压制";  // part of what is said of progress
constexpr double kSecondsAPage = 2;

}  // namespace

host::Status RunTiffsMaker(Tools& tools, const std::string& list, const std::vector<std::string>& pictures,
                           const std::string& out, int pages, const std::function<void(const std::string&)>& show) {
  const ExpectedFile expected(tools, out, pictures);
  WriteKey(tools.World(), key::kMakeTiffProg, "");
  if (tools.Start(kName, list) != host::kStarted) return NotStarted(kName);
  std::string told;
  const auto look = [&] {
    told = ReadKey(tools.World(), key::kMakeTiffProg);
    if (told == kDone) return true;
    show(told);
    return false;
  };
  const Waited waited = tools.Wait(kProgram, look, kSecondsAPage * std::max(1, pages));
  EndProcess(tools.World(), kProgram);
  if (told == kFullDisk) return host::Status::FromErrno(ENOSPC);
  const bool failure = !told.empty() && told.find(kWorking) == std::string::npos;
  return expected.Result(waited, failure ? told : "没有生成Tiff", IsPicture);
}

}  // namespace quillon::tools
