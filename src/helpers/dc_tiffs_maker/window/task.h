// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/files/files.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

// Returns why an order cannot be started and what the user should do, in one sentence; "" if it can be started.
std::string WhyNotStartable(const host::Files& files, const tools::OkList& order);

// Returns the steps of an order that the window keeps but does not show; "" if there are none.
std::string FurtherSteps(const tools::OkList& order);

// Returns the pictures directly inside a folder, in no particular order.
std::vector<std::string> PicturesIn(const host::Files& files, const std::string& folder);

// Returns a typed target with ".tif" appended unless it has the extension of a TIFF. "" stays "".
std::string TiffName(const std::string& typed);

// Returns the last part of a path, for use in a sentence.
std::string NameOf(const std::string& path);

}  // namespace quillon::helpers
