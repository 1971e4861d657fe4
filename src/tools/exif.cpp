// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/exif.h"

#include "tools/carried.h"
#include "tools/command_lines.h"
#include "tools/expected_file.h"
#include "tools/keys.h"
#include "tools/pause.h"

namespace quillon::tools {
namespace {

constexpr const char* kName = "TessaExifHandler";
constexpr float kPause = 0.1F;
constexpr double kLimit = 20;

}  // namespace

host::Status CopyExif(Tools& tools, const std::string& source, const std::string& target) {
  if (host::Status fits = MayStand(Carrier::Value, kName, {source, target}); !fits) return fits;
  const ExpectedFile described(tools, target, {source});
  if (!WriteKey(tools.World(), key::kExif, ExifText(source, target))) return NotHeard(kName);
  PauseSeconds(tools.World(), kPause);
  const int started = tools.Start(kName, "");
  const Waited waited = tools.Wait(std::string(kName) + ".exe", {}, kLimit);
  WriteKey(tools.World(), key::kExif, "");
  if (described.Made()) return host::Status::Ok();
  if (started != host::kStarted) return NotStarted(kName);
  if (waited == Waited::Stopped) return Interrupted();
  return {host::Problem::Other,
          waited == Waited::Limit ? "TessaExifHandler 没有按时完成" : "TessaExifHandler 没有写入"};
}

}  // namespace quillon::tools
