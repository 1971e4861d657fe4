// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "formats/tools/exif.h"

#include "formats/tools/carried.h"
#include "formats/tools/command_lines.h"
#include "formats/tools/keys.h"
#include "formats/tools/pause.h"

namespace quillon::formats {
namespace {

constexpr const char* kName = "TessaExifHandler";
constexpr float kPause = 0.1F;
constexpr double kLimit = 20;

}  // namespace

host::Status CopyExif(Tools& tools, const std::string& source, const std::string& target) {
  if (host::Status fits = MayStand(Carrier::Bars, kName, {source, target}); !fits) return fits;
  WriteKey(tools.World(), key::kExif, ExifText(source, target));
  PauseSeconds(tools.World(), kPause);
  tools.Start(kName, "");
  tools.Wait(std::string(kName) + ".exe", {}, kLimit);
  WriteKey(tools.World(), key::kExif, "");
  return host::Status::Ok();
}

}  // namespace quillon::formats
