// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <initializer_list>
#include <string>

#include "host/status.h"

namespace quillon::tools {

// How a parameter text holds its paths.
enum class Carrier {
  Fields,  // between tabs: no tab, no line break
  Bars,    // between tabs and bars: no bar either
  Value,   // between bars alone, in a value of the settings: no bar
  Quotes   // between quotes: no quote, no line break
};

// Fine when all paths can stand in such a text and be read back; else Unsupported, with the name that cannot and the
// helper that it was meant for.
host::Status MayStand(Carrier carrier, const std::string& helper, std::initializer_list<std::string> paths);

}  // namespace quillon::tools
