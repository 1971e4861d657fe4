// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "job/settings/cmyk_profiles.h"

#include <string>
#include <utility>

#include "base/path_text.h"
#include "job/program.h"

namespace quillon::job {

using Colours = imaging::Services::ProfileColours;

host::Status CheckCmykProfiles(Program& program) {
  for (const auto& [name, colours] : {std::pair("sRGB.icc", Colours::Rgb), std::pair("Default.icm", Colours::Cmyk)}) {
    const std::string relative = base::JoinPath(kColorConfigs, name);
    const host::Status status = program.images.CheckProfile(program.AppPath(relative), colours);
    if (!status) return {status.GetProblem(), "无法转CMYK，" + relative + "：" + status.Why()};
  }
  return host::Status::Ok();
}

}  // namespace quillon::job
