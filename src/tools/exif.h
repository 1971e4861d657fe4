// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "tools/tools.h"

namespace quillon::tools {

// Has TessaExifHandler copy what describes source to target. Waits for it for at most 20 seconds; it is not ended then.
// Fine when target was written anew; else it is as it was, and the failure says as far as it can be known why.
host::Status CopyExif(Tools& tools, const std::string& source, const std::string& target);

}  // namespace quillon::tools
