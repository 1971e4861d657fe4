// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tools/tools.h"

namespace quillon::tools {

// Has DCTiffsMaker make a tiff by the order in a file, and waits for it until it says "True", is gone, or has taken two
// seconds a page (at least one is counted); then it is ended. show gets what the helper says meanwhile. Fine when out
// is a new file; DiskFull where the helper says so. What stood at out before and was not replaced goes to the trash,
// unless it is one of pictures, those of the order.
host::Status RunTiffsMaker(Tools& tools, const std::string& list, const std::vector<std::string>& pictures,
                           const std::string& out, int pages, const std::function<void(const std::string&)>& show);

}  // namespace quillon::tools
