// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

// Shows the window of DCTiffsMaker until it is closed and returns the exit code. note is the first sentence in its
// status line. This header is free of Qt, so that main() needs none of it.
// The window uses boxes and dialogs of its own instead of those of world. It makes each TIFF by starting this program
// again with the path of an order.
int ShowTiffsWindow(int count, char** arguments, host::Host& world, const tools::OkList& order,
                    const std::string& note);

}  // namespace quillon::helpers
