// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "tools/command_lines.h"
#include "tools/tools.h"

// QxBackImg, the server that loads and cuts pictures beside the program, so that a picture that breaks it does not
// break the program. It has no twin.
namespace quillon::tools {

// Sends a command and waits until the server has answered "1". The first one of a batch (startedFlag clear) starts the
// server with the command as its parameter text; later ones are written into the key. False, and the flag clear again,
// when the server did not start or is gone; false too when the user wants to end or the settings cannot be written.
bool SendToBackImg(Tools& tools, const std::string& command, const std::string& key, bool& startedFlag);

// The lane that imaging::Services::CreateImageFromClipBoard reads; the picture that the server has loaded lies there
// until the next one does.
std::string LanePath(const host::Host& host);

// Loads a picture through the server. Fine when it lies in the lane.
host::Status LoadThroughBackImg(Tools& tools, const std::string& file, bool& startedFlag);
// Cuts {App}/Tmp.jpg through the server, which must have been started. Fine when out is a new picture.
host::Status CutThroughBackImg(Tools& tools, const BackCut& cut, const std::string& out, const std::string& quality,
                               bool& startedFlag);

}  // namespace quillon::tools
