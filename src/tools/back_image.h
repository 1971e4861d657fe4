// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "tools/command_lines.h"
#include "tools/tools.h"

// Calls to QxBackImg, a server process that loads and cuts pictures, so that a picture that crashes the decoder does
// not crash the program. The server has no twin.
namespace quillon::tools {

// Sends a command and waits until the server answers "1".
// The first command of a batch (startedFlag is false) starts the server with the command as its parameter text and sets
// the flag. Later commands are written into key.
// Returns false, and clears the flag, if the server did not start, has exited or was stopped by the user. Also returns
// false if the settings cannot be written.
bool SendToBackImg(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag);

// The path of the picture file that the server has loaded, which imaging::Services::CreateImageFromClipBoard reads. It
// stays until the next picture is loaded.
std::string LanePath(const host::Host& host);

// Loads a picture through the server. Succeeds if the file at LanePath was written.
host::Status LoadThroughBackImg(Tools& tools, const std::string& file, bool& startedFlag);
// Cuts {App}/Tmp.jpg through the server, which must be running. Succeeds if out is a new picture.
host::Status CutThroughBackImg(Tools& tools, const BackCut& cut, const std::string& out, const std::string& quality,
                               bool& startedFlag);

}  // namespace quillon::tools
