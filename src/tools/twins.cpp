// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/twins.h"

#include <array>

#include "base/path_text.h"

namespace quillon::tools {
namespace {

// Programs are removed at exit in this order.
constexpr std::array kHelpers{
    Helper{"PicHandler", Copied::AtStart, Removed::AtExit},
    Helper{"TessaExifHandler", Copied::AtStart, Removed::AtExit},
    Helper{"SavePicsToTiff", Copied::AtStart, Removed::AfterRunAndAtExit},
    Helper{"QxImgTool", Copied::AtStart, Removed::AtExit},
    Helper{"DCTiffsMaker", Copied::Never, Removed::AtExit},
    Helper{"PicCutConverter", Copied::AtStart, Removed::AtExit},
    Helper{"QxBackImg", Copied::Never, Removed::Never},
    Helper{"CutMedia", Copied::WhenMissing, Removed::Never},
    Helper{"PicCirleCut", Copied::WhenMissing, Removed::Never},
    Helper{"QxBackOCRer", Copied::WhenMissing, Removed::Never},
    Helper{"DrawTranspText", Copied::WhenMissing, Removed::Never},
    Helper{"PicsToAniGif", Copied::WhenMissing, Removed::Never},
};

}  // namespace

std::span<const Helper> Helpers() { return kHelpers; }

std::string TwinPath(const host::Host& host, const std::string& name) {
  return base::JoinPath(host.programFolder, name, "dll");
}

std::string ProgramPath(const host::Host& host, const std::string& name) {
  return base::JoinPath(host.programFolder, name, "exe");
}

host::Status CopyTwin(host::Host& host, const std::string& name) {
  return host.files.CopyOwn(TwinPath(host, name), ProgramPath(host, name));
}

host::Status EnsureProgram(host::Host& host, const std::string& name) {
  return host.files.IsFile(ProgramPath(host, name)) ? host::Status::Ok() : CopyTwin(host, name);
}

void RemoveProgramsAtExit(host::Host& host) {
  for (const Helper& helper : kHelpers) {
    // A program that is still running or that does not exist is skipped.
    if (helper.removed != Removed::Never) static_cast<void>(host.files.RemoveOwn(ProgramPath(host, helper.name)));
  }
}

}  // namespace quillon::tools
