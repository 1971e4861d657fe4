// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

#include "host/files/files.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

// Why an order cannot be started yet and what the user is to do, one sentence; "" where nothing keeps it from that.
std::string Hindrance(const host::Files& files, const tools::OkList& order);

// Steps of an order that the window carries along without showing them; "" where there are none.
std::string FurtherSteps(const tools::OkList& order);

// The pictures that lie in a folder itself, in no order.
std::vector<std::string> PicturesIn(const host::Files& files, const std::string& folder);

// A target as it was typed, with ".tif" where it ends as no TIFF does; "" stays.
std::string TiffName(const std::string& typed);

// The last part of a path, as a sentence names it.
std::string NameOf(const std::string& path);

}  // namespace quillon::helpers
