// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

#include "host/host.h"
#include "tools/ok_list.h"

namespace quillon::helpers {

// Shows the window of DCTiffsMaker until it is closed; gives the exit code. The world's boxes and dialogs are not used.
// The TIFFs are made by this same program, started with the path of an order.
int ShowTiffsWindow(int count, char** arguments, host::Host& world, const tools::OkList& order,
                    const std::string& note);

}  // namespace quillon::helpers
