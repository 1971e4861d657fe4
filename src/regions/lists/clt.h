// SPDX-FileCopyrightText: 2026 The Quillon developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "regions/lists/region.h"

namespace quillon::regions {

// A region list as a .clt file holds it: a first line for the unit, then one region a line, in bytes as they stand.
struct CltFile {
  Unit unit = Unit::Percent;
  std::vector<std::string> lines;
};

// Lines end with CR LF.
std::string WriteClt(Unit unit, const std::vector<std::array<std::string, 4>>& rows);

// Any text is taken: lines end with CR LF, LF, CR or the end of the text, and a mark of UTF-8 at its beginning is no
// part of the first line. Pixels where that is exactly "R", else percent.
CltFile ReadClt(std::string_view text);

}  // namespace quillon::regions
